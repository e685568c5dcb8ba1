// A virus scanner holds a file for a moment and releases it between two tries.
#include "platform/win32/win32_file.h"
#include "tests/platform/win32_support.h"

namespace vantrel::test {
namespace {

using platform::OpenMode;

class Win32LockedFile : public Win32Test {
  protected:
    // Denies all access to the file until the `pauses`-th pause.
    void HoldUntil(const std::string& path, int pauses) {
        holder_ = Held(path, GENERIC_READ | GENERIC_WRITE, 0);
        left_ = pauses;
        paused_ = 0;
    }
    void ReleaseFile() { holder_.Close(); }
    int Paused() const { return paused_; }

  private:
    const std::unique_ptr<platform::FileSystem> retrying_ =
        platform::NewWin32FileSystem([this](DWORD) {
            ++paused_;
            if (--left_ == 0) {
                ReleaseFile();
            }
        });

  protected:
    platform::FileSystem& retrying = *retrying_;

  private:
    platform::FileHandle holder_;
    int left_ = 0;
    int paused_ = 0;
};

TEST_F(Win32LockedFile, IsOpenedForWritingAndAppendingOnceItIsFree) {
    const std::string path = Put("log", "one");
    HoldUntil(path, 3);
    platform::AppendToFile(retrying, path, "two");
    EXPECT_EQ(Paused(), 3);
    EXPECT_EQ(Content(path), "onetwo");
    HoldUntil(path, 1);
    platform::WriteWholeFile(retrying, path, "new");
    EXPECT_EQ(Paused(), 1);
    EXPECT_EQ(Content(path), "new");
}

TEST_F(Win32LockedFile, TriesToWriteAndAppendAreLimited) {
    const std::string path = Put("log", "kept");
    for (const OpenMode mode : {OpenMode::kWrite, OpenMode::kAppend}) {
        HoldUntil(path, 1000);
        EXPECT_EQ(ErrorOf([&] { retrying.Open(path, mode); }), error_number::kPermissionDenied);
        EXPECT_EQ(Paused(), 5);
        ReleaseFile();
    }
    EXPECT_EQ(Content(path), "kept");
}

TEST_F(Win32LockedFile, IsNotRetriedForReading) {
    const std::string path = Put("read");
    HoldUntil(path, 1);
    EXPECT_EQ(ErrorOf([&] { retrying.Open(path, OpenMode::kRead); }),
              error_number::kPermissionDenied);
    EXPECT_EQ(Paused(), 0);
    ReleaseFile();
}

TEST_F(Win32LockedFile, MissingFolderIsNotRetried) {
    EXPECT_EQ(ErrorOf([&] { retrying.Open(In("gone\\log"), OpenMode::kAppend); }),
              error_number::kPathNotFound);
    EXPECT_EQ(Paused(), 0);
}

TEST_F(Win32LockedFile, IsRenamedReplacedAndRemovedOnceItIsFree) {
    const std::string path = Put("held", "old");
    HoldUntil(path, 2);
    retrying.Rename(path, In("moved"));
    HoldUntil(In("moved"), 2);
    retrying.Replace(Put("fresh", "new"), In("moved"));
    EXPECT_EQ(Content(In("moved")), "new");
    HoldUntil(In("moved"), 2);
    retrying.RemoveFile(In("moved"));
    EXPECT_EQ(Paused(), 2);
    EXPECT_TRUE(Names(folder()).empty());
}

}  // namespace
}  // namespace vantrel::test
