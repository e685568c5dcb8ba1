// A virus scanner's moment: somebody holds a file when it is wanted and lets go between two tries.
#include "platform/win32/win32_file_system.h"
#include "tests/platform/win32_support.h"

namespace vantrel::test {
namespace {

using platform::OpenMode;

class Win32Patience : public Win32Test {
  protected:
    // Nobody else may even read the file until the `pauses`-th pause.
    void HoldUntil(const std::string& path, int pauses) {
        holder_ = Held(path, GENERIC_READ | GENERIC_WRITE, 0);
        left_ = pauses;
        paused_ = 0;
    }
    void LetGo() { holder_.Close(); }
    int Paused() const { return paused_; }

    platform::Win32FileSystem patient{[this](DWORD) {
        ++paused_;
        if (--left_ == 0) LetGo();
    }};

  private:
    platform::FileHandle holder_;
    int left_ = 0;
    int paused_ = 0;
};

TEST_F(Win32Patience, WriterAndAppenderComeToAFileThatIsHeldForAMoment) {
    const std::string path = Put("log", "one");
    HoldUntil(path, 3);
    platform::AppendToFile(patient, path, "two");
    EXPECT_EQ(Paused(), 3);
    EXPECT_EQ(Content(path), "onetwo");
    HoldUntil(path, 1);
    platform::WriteWholeFile(patient, path, "new");
    EXPECT_EQ(Paused(), 1);
    EXPECT_EQ(Content(path), "new");
}

TEST_F(Win32Patience, PatienceWithAWriterAndAnAppenderEnds) {
    const std::string path = Put("log", "kept");
    for (const OpenMode mode : {OpenMode::kWrite, OpenMode::kAppend}) {
        HoldUntil(path, 1000);
        EXPECT_EQ(ErrorOf([&] { patient.Open(path, mode); }), error_number::kPermissionDenied);
        EXPECT_EQ(Paused(), 5);
        LetGo();
    }
    EXPECT_EQ(Content(path), "kept");
}

TEST_F(Win32Patience, ReaderIsToldAtOnce) {
    const std::string path = Put("read");
    HoldUntil(path, 1);
    EXPECT_EQ(ErrorOf([&] { patient.Open(path, OpenMode::kRead); }),
              error_number::kPermissionDenied);
    EXPECT_EQ(Paused(), 0);
    LetGo();
}

TEST_F(Win32Patience, MissingFolderIsToldAtOnce) {
    EXPECT_EQ(ErrorOf([&] { patient.Open(In("gone\\log"), OpenMode::kAppend); }),
              error_number::kPathNotFound);
    EXPECT_EQ(Paused(), 0);
}

TEST_F(Win32Patience, HeldFileIsRenamedReplacedAndRemovedOnceItIsFree) {
    const std::string path = Put("held", "old");
    HoldUntil(path, 2);
    patient.Rename(path, In("moved"));
    HoldUntil(In("moved"), 2);
    patient.Replace(Put("fresh", "new"), In("moved"));
    EXPECT_EQ(Content(In("moved")), "new");
    HoldUntil(In("moved"), 2);
    patient.RemoveFile(In("moved"));
    EXPECT_EQ(Paused(), 2);
    EXPECT_TRUE(Names(folder()).empty());
}

}  // namespace
}  // namespace vantrel::test
