// The zip component as the backup window drives it.
#include "zip/pkzip.h"
#include "tests/support/error_of.h"

#include "tests/zip/writer_fixture.h"

namespace vantrel::test {
namespace {

using namespace zip::zip_id;
using zip::Value;

class PkZip : public WriterTest {
  protected:
    PkZip() : machine_(Machine()), component(machine_) {
        files.Put("C:\\Data\\a.txt", "x");
        files.Put("C:\\Data\\Sub\\b.txt", "y");
        component.OverallProgress = [this](std::int32_t& percent, bool& cancel) {
            overall.push_back(percent);
            cancel = cancel_at != 0 && overall.size() >= cancel_at;
        };
        component.FileProgress = [this](std::int32_t& percent) { of_file.push_back(percent); };
        component.Message = [this](const zip::ComponentMessage& m) { messages.push_back(m); };
        component.FatalStop = [this] { happened.push_back("fatal stop"); };
    }
    void SetAll() {
        component.Set(kLevel, std::int16_t{9});
        component.Set(kMultiVolume, std::int32_t{0});
        component.Set(kSubFolders, true);
        component.Set(kArchive, options.archive);
        component.Set(kVolumeOption, true);
        component.Set(kOption3, true);
        component.Set(kFileSpec, std::string("\"C:\\Data\\*.*\""));
        component.Set(kOption4, true);
        component.Set(kOption5, true);
        component.Set(kOption32, true);
    }
    platform::Machine machine_;
    zip::PKZIP component;
    std::vector<std::int32_t> overall;
    std::vector<std::int32_t> of_file;
    std::vector<zip::ComponentMessage> messages;
    Strings happened;
    std::size_t cancel_at = 0;
};

TEST_F(PkZip, ActionRunsToItsEndInsideTheAssignment) {
    SetAll();
    component.Set(kAction, kActionAdd);
    EXPECT_EQ(Archive().Names(), (Strings{"a.txt", "Sub/b.txt"}));
    EXPECT_EQ(overall.back(), 100);
    EXPECT_FALSE(of_file.empty());
    EXPECT_EQ(messages.size(), 3u) << "one of them about the missing earlier archive";
    EXPECT_EQ(component.SkippedFiles(), 0);
    EXPECT_TRUE(happened.empty());
}

TEST_F(PkZip, ReadsBackWhatWasSet) {
    SetAll();
    EXPECT_EQ(component.Get(kArchive), Value(options.archive));
    EXPECT_EQ(component.Get(kFileSpec), Value(std::string("\"C:\\Data\\*.*\"")));
    EXPECT_EQ(component.Get(kLevel), Value(std::int16_t{9}));
    EXPECT_EQ(component.Get(kMultiVolume), Value(std::int32_t{0}));
    EXPECT_EQ(component.Get(kOption32), Value(true));
}

TEST_F(PkZip, NeverSetReadsAsFalseZeroOrEmpty) {
    EXPECT_EQ(component.Get(kArchive), Value(std::string()));
    EXPECT_EQ(component.Get(kFileSpec), Value(std::string()));
    for (const int id : {kOption3, kOption4, kOption5, kOption32, kSubFolders, kVolumeOption}) {
        EXPECT_EQ(component.Get(id), Value(false)) << id;
    }
    EXPECT_EQ(component.Get(kLevel), Value(std::int16_t{0}));
    EXPECT_EQ(component.Get(kMultiVolume), Value(std::int32_t{0}));
    EXPECT_EQ(component.Get(kAction), Value(std::int16_t{0}));
}

TEST_F(PkZip, WrongTypesAndUnknownPropertiesAreRefused) {
    EXPECT_EQ(ErrorOf([&] { component.Set(kLevel, std::int32_t{9}); }), 380);
    EXPECT_EQ(ErrorOf([&] { component.Set(kMultiVolume, std::int16_t{0}); }), 380);
    EXPECT_EQ(ErrorOf([&] { component.Set(kArchive, true); }), 380);
    EXPECT_EQ(ErrorOf([&] { component.Set(kLevel, std::int16_t{10}); }), 380);
    EXPECT_EQ(ErrorOf([&] { component.Set(kLevel, std::int16_t{-1}); }), 380);
    EXPECT_EQ(ErrorOf([&] { component.Set(kAction, std::int16_t{5}); }), 380);
    EXPECT_EQ(ErrorOf([&] { component.Set(6, true); }), 380);
    EXPECT_EQ(ErrorOf([&] { component.Get(6); }), 380);
    EXPECT_EQ(component.Get(kAction), Value(std::int16_t{0}));
}

TEST_F(PkZip, SubFoldersOff) {
    SetAll();
    component.Set(kSubFolders, false);
    component.Set(kAction, kActionAdd);
    EXPECT_EQ(Archive().Names(), (Strings{"a.txt"}));
}

TEST_F(PkZip, FileSpecWithSpaces) {
    files.Put("C:\\My Data\\my file.txt", "x");
    SetAll();
    component.Set(kFileSpec, std::string("\"C:\\My Data\\my*.txt\""));
    component.Set(kAction, kActionAdd);
    EXPECT_EQ(Archive().Names(), (Strings{"my file.txt"}));
}

TEST_F(PkZip, CancelFromAnEventIsNoFailure) {
    SetAll();
    files.Put(options.archive, "earlier");
    cancel_at = 1;
    component.Set(kAction, kActionAdd);
    EXPECT_EQ(files.Content(options.archive), "earlier");
    EXPECT_TRUE(happened.empty());
}

TEST_F(PkZip, UnattendedFailureIsAnErrorMessageThenTheFatalStop) {
    SetAll();
    component.Set(kFileSpec, std::string("\"C:\\Nowhere\\*.*\""));
    component.Message = [this](const zip::ComponentMessage& m) {
        if (m.kind == MessageKind::kError) {
            happened.push_back("error message");
            EXPECT_FALSE(files.Exists("C:\\Backup\\Weekly.zip.vantrel-new")) << "removed before";
        }
    };
    component.Set(kAction, kActionAdd);
    EXPECT_EQ(happened, (Strings{"error message", "fatal stop"}));
}

TEST_F(PkZip, AttendedFailureIsAQuestionAndCancelComesFromTheNextEvent) {
    SetAll();
    component.Set(kFileSpec, std::string("\"C:\\Nowhere\\*.*\""));
    component.questions = &questions;
    questions.answers = {[this] {
        cancel_at = 1;
        return false;
    }};
    component.Set(kAction, kActionAdd);
    EXPECT_EQ(questions.asked.size(), 1u);
    EXPECT_TRUE(happened.empty());
    for (const zip::ComponentMessage& message : messages) {
        EXPECT_EQ(message.kind, MessageKind::kInformation) << message.text;
    }
}

TEST_F(PkZip, SkippedFilesAreCountedForEachAction) {
    SetAll();
    FailCalls(files, {.name = "Open", .path = "C:\\Data\\a.txt"}, error_number::kPermissionDenied);
    component.Set(kAction, kActionAdd);
    EXPECT_EQ(component.SkippedFiles(), 1);
    files.before = nullptr;
    component.Set(kAction, kActionAdd);
    EXPECT_EQ(component.SkippedFiles(), 0);
}

TEST_F(PkZip, PathsWithoutADriveAreOnTheApplicationsDrive) {
    machine.process.application_folder = "D:\\Vantrel";
    files.Put("D:\\SRC\\a.txt", "of drive D");
    SetAll();
    component.Set(kArchive, std::string("\\OUT\\A.zip"));
    component.Set(kFileSpec, std::string("\"\\SRC\\*.*\""));
    component.Set(kAction, kActionAdd);
    ASSERT_TRUE(files.Exists("D:\\OUT\\A.zip"));
    EXPECT_EQ(ReadArchive(files.Content("D:\\OUT\\A.zip")).Names(), (Strings{"a.txt"}));
    EXPECT_EQ(component.Get(kArchive), Value(std::string("\\OUT\\A.zip")));
    EXPECT_EQ(component.Get(kFileSpec), Value(std::string("\"\\SRC\\*.*\"")));
}

TEST_F(PkZip, RootOfTheApplicationsDriveIsASource) {
    machine.process.application_folder = "D:\\Vantrel";
    files.Put("D:\\top.txt", "x");
    SetAll();
    component.Set(kSubFolders, false);
    component.Set(kFileSpec, std::string("\"\\*.*\""));
    component.Set(kAction, kActionAdd);
    EXPECT_EQ(Archive().Names(), (Strings{"top.txt"}));
}

TEST_F(PkZip, WithoutHandlersItRunsAllTheSame) {
    zip::PKZIP plain(machine_);
    plain.Set(kArchive, options.archive);
    plain.Set(kFileSpec, std::string("\"C:\\Data\\*.*\""));
    plain.Set(kAction, kActionAdd);
    EXPECT_EQ(Archive().Names(), (Strings{"a.txt"}));
}

}  // namespace
}  // namespace vantrel::test
