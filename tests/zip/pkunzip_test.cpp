// The unzip component as the Restore tab and the restore window drive it.
#include "zip/pkunzip.h"
#include "tests/support/error_of.h"

#include "tests/zip/reader_fixture.h"

namespace vantrel::test {
namespace {

using namespace zip::unzip_id;
using zip::Value;

class PkUnzip : public ReaderTest {
  protected:
    PkUnzip() : machine_(Machine()), component(machine_) {
        archive.entries = {{.name = "a.txt", .content = "alpha"},
                           {.name = "Sub/b.txt", .content = "beta"}};
        component.OverallProgress = [this](std::int32_t& percent, bool& cancel) {
            overall.push_back(percent);
            cancel = overall.size() == cancel_at;
        };
        component.FileProgress = [this](std::int32_t& percent) { of_file.push_back(percent); };
        component.Message = [this](const zip::ComponentMessage& m) { messages.push_back(m); };
    }
    void PutArchive() { files.Put(options.archive, archive.Bytes()); }
    void SetAll() {
        component.Set(14, true);
        component.Set(kArchive, options.archive);
        component.Set(10, false);
        component.Set(11, false);
        for (const int id : {5, 6, 7, 35}) {
            component.Set(id, true);
        }
        component.Set(kDestination, options.destination);
        component.Set(kFileSpec, std::string("*.*"));
    }
    std::int32_t Count() {
        component.Set(kAction, kActionCount);
        return std::get<std::int32_t>(component.Get(kEntryCount));
    }
    std::string Name(std::int32_t index) {
        component.Set(kEntryIndex, index);
        component.Set(kAction, kActionEntry);
        return std::get<std::string>(component.Get(kEntryName));
    }
    platform::Machine machine_;
    zip::PKUNZIP component;
    BuiltArchive archive;
    std::vector<std::int32_t> overall;
    std::vector<std::int32_t> of_file;
    std::vector<zip::ComponentMessage> messages;
    std::size_t cancel_at = 0;
};

TEST_F(PkUnzip, CountsEntriesAndTheArchiveItself) {
    PutArchive();
    SetAll();
    EXPECT_EQ(Count(), 3);
    EXPECT_EQ(Name(1), "a.txt");
    EXPECT_EQ(Name(2), "Sub/b.txt");
    EXPECT_EQ(Name(0), "");
    EXPECT_EQ(Name(3), "");
    EXPECT_EQ(Name(-1), "");
}

TEST_F(PkUnzip, ListsAndRestoresExactly65535And65536Entries) {
    for (const int count : {65535, 65536}) {
        archive.entries.clear();
        for (int i = 0; i < count; ++i) {
            archive.entries.push_back({.name = std::to_string(i) + "/", .external = 0x10});
        }
        archive.zip64 = true;
        PutArchive();
        SetAll();
        EXPECT_EQ(Count(), count + 1);
        EXPECT_EQ(Name(count), std::to_string(count - 1) + "/");
        files.Remove(options.destination);
        component.Set(kAction, kActionExtract);
        EXPECT_EQ(component.FailedEntries(), 0);
        EXPECT_EQ(Restored().size(), static_cast<std::size_t>(count));
    }
}

TEST_F(PkUnzip, ArchiveThatCannotBeReadCountsOne) {
    SetAll();
    EXPECT_EQ(component.Get(kEntryCount), Value(std::int32_t{1}));
    EXPECT_EQ(Count(), 1);
    files.Put(options.archive, "no archive");
    EXPECT_EQ(Count(), 1);
    EXPECT_EQ(messages.back().text, "This is no zip archive, or its end is missing.");
    files.Put(options.archive, BuiltArchive{}.Bytes());
    EXPECT_EQ(Count(), 1);
}

TEST_F(PkUnzip, DamagedDirectoryCountsWhatWasReadAndIsReported) {
    std::string bytes = archive.Bytes();
    bytes[bytes.rfind("PK\1\2")] = 'x';
    files.Put(options.archive, bytes);
    SetAll();
    EXPECT_EQ(Count(), 2);
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_NE(messages[0].text.find("after 1 entry"), std::string::npos);
}

TEST_F(PkUnzip, CountAnewForgetsTheArchiveBefore) {
    PutArchive();
    SetAll();
    EXPECT_EQ(Count(), 3);
    component.Set(kArchive, std::string("C:\\None.zip"));
    EXPECT_EQ(Count(), 1);
    EXPECT_EQ(Name(1), "");
}

TEST_F(PkUnzip, ExtractsAllAndOverwritesInsideTheAssignment) {
    PutArchive();
    files.Put("C:\\Out\\a.txt", "old");
    SetAll();
    component.Set(kAction, kActionCount);
    component.Set(kAction, kActionExtract);
    EXPECT_EQ(Content("a.txt"), "alpha");
    EXPECT_EQ(Content("Sub\\b.txt"), "beta");
    EXPECT_EQ(overall.back(), 100);
    EXPECT_FALSE(of_file.empty());
    EXPECT_EQ(messages.size(), 2u);
    EXPECT_EQ(component.FailedEntries(), 0);
}

TEST_F(PkUnzip, FailedEntriesAreCountedAnewByEachExtraction) {
    archive.entries[0].method = 14;
    PutArchive();
    SetAll();
    component.Set(kAction, kActionExtract);
    EXPECT_EQ(component.FailedEntries(), 1);
    archive.entries[0].method = 0;
    PutArchive();
    component.Set(kAction, kActionExtract);
    EXPECT_EQ(component.FailedEntries(), 0);
}

TEST_F(PkUnzip, CancelIsTakenFromTheOverallEvent) {
    PutArchive();
    SetAll();
    cancel_at = 1;
    // The archive cannot be opened before the cancel has been handed over.
    std::atomic<int> raised = 0;
    component.FileProgress = [&](std::int32_t&) { ++raised; };
    files.before = [&](const std::string& call, const std::string&) {
        while (call == "Open" && raised < 2) {
            std::this_thread::yield();
        }
    };
    component.Set(kAction, kActionExtract);
    EXPECT_FALSE(files.Exists("C:\\Out"));
    EXPECT_TRUE(messages.empty());
}

TEST_F(PkUnzip, CancelledQuestionRaisesOneMoreOverallEvent) {
    SetAll();
    component.questions = &questions;
    std::size_t events_before = 0;
    questions.answers = {[&] {
        events_before = overall.size();
        cancel_at = overall.size() + 1;
        return false;
    }};
    component.Set(kAction, kActionExtract);
    EXPECT_EQ(questions.asked.size(), 1u);
    // On a slow machine a tenth of a second may have gone by as well, which is one more.
    EXPECT_GE(overall.size(), events_before + 1);
}

TEST_F(PkUnzip, UnattendedMissingArchiveIsAnErrorMessage) {
    SetAll();
    component.Set(kAction, kActionExtract);
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].kind, MessageKind::kError);
    EXPECT_EQ(messages[0].code, error_number::kFileNotFound);
}

TEST_F(PkUnzip, PathsWithoutADriveAreOnTheApplicationsDrive) {
    machine.process.application_folder = "D:\\Vantrel";
    archive.entries.push_back({.name = "LONGNA~1/c.txt", .content = "gamma"});
    files.Put("D:\\OUT\\A.zip", archive.Bytes());
    files.PutFolder("D:\\SRC\\Sub");
    SetAll();
    component.Set(kArchive, std::string("\\OUT\\A.zip"));
    component.Set(kDestination, std::string("\\SRC"));
    EXPECT_EQ(Count(), 4);
    std::vector<std::string> looked_at;
    files.before = [&](const std::string&, const std::string& path) { looked_at.push_back(path); };
    EXPECT_EQ(component.TargetFolders("\\SRC"), (Strings{"", "Sub", "LONGNA~1"}));
    EXPECT_EQ(looked_at, (Strings{"D:\\SRC\\Sub", "D:\\SRC\\LONGNA~1"}));
    files.before = nullptr;
    component.Set(kAction, kActionExtract);
    EXPECT_EQ(files.Content("D:\\SRC\\a.txt"), "alpha");
    EXPECT_EQ(files.Content("D:\\SRC\\Sub\\b.txt"), "beta");
    EXPECT_EQ(component.Get(kArchive), Value(std::string("\\OUT\\A.zip")));
    EXPECT_EQ(component.Get(kDestination), Value(std::string("\\SRC")));
}

TEST_F(PkUnzip, WorksWithoutAnybodyListening) {
    PutArchive();
    zip::PKUNZIP silent(machine_);
    silent.Set(kArchive, options.archive);
    silent.Set(kDestination, options.destination);
    silent.Set(kAction, kActionExtract);
    EXPECT_EQ(Content("a.txt"), "alpha");
}

TEST_F(PkUnzip, WrongTypesUnknownIdsAndAnswersAreRefused) {
    const int kRefused = error_number::kInvalidPropertyValue;
    EXPECT_EQ(ErrorOf([&] { component.Set(kArchive, true); }), kRefused);
    EXPECT_EQ(ErrorOf([&] { component.Set(kAction, std::int32_t{1}); }), kRefused);
    EXPECT_EQ(ErrorOf([&] { component.Set(kAction, std::int16_t{4}); }), kRefused);
    EXPECT_EQ(ErrorOf([&] { component.Set(14, std::int16_t{1}); }), kRefused);
    EXPECT_EQ(ErrorOf([&] { component.Set(99, true); }), kRefused);
    EXPECT_EQ(ErrorOf([&] { component.Set(kEntryCount, std::int32_t{5}); }), kRefused);
    EXPECT_EQ(ErrorOf([&] { component.Set(kEntryName, std::string("x")); }), kRefused);
    EXPECT_EQ(ErrorOf([&] { component.Get(99); }), kRefused);
    EXPECT_EQ(component.Get(35), Value(false));
    EXPECT_EQ(component.Get(kEntryName), Value(std::string()));
}

}  // namespace
}  // namespace vantrel::test
