// Files that another program holds, and files that may not be changed.
#include "platform/win32/system_error.h"
#include "tests/platform/win32_support.h"

namespace vantrel::test {
namespace {

using platform::OpenMode;
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

class Win32Sharing : public Win32Test {};

TEST_F(Win32Sharing, FileHeldWithoutSharingCannotBeOpened) {
    const std::string path = Put("held");
    const auto holder = Held(path, GENERIC_READ | GENERIC_WRITE, 0);
    for (const OpenMode mode : {OpenMode::kRead, OpenMode::kWrite, OpenMode::kAppend}) {
        EXPECT_EQ(ErrorOf([&] { files().Open(path, mode); }), error_number::kPermissionDenied);
    }
    EXPECT_TRUE(files().Find(path));
}

TEST_F(Win32Sharing, RefusedWriteLeavesTheContent) {
    const std::string path = Put("held", "kept");
    {
        const auto reader = Held(path, GENERIC_READ, FILE_SHARE_READ);
        EXPECT_EQ(ErrorOf([&] { Put("held", "lost"); }), error_number::kPermissionDenied);
    }
    EXPECT_EQ(Content(path), "kept");
}

TEST_F(Win32Sharing, HeldFileIsNeitherRenamedReplacedNorRemoved) {
    const std::string path = Put("held", "old");
    const std::string fresh = Put("fresh", "new");
    {
        const auto holder = Held(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE);
        EXPECT_EQ(ErrorOf([&] { files().Rename(path, In("x")); }), error_number::kPermissionDenied);
        EXPECT_EQ(ErrorOf([&] { files().Replace(fresh, path); }), error_number::kPermissionDenied);
        EXPECT_EQ(ErrorOf([&] { files().RemoveFile(path); }), error_number::kPermissionDenied);
    }
    EXPECT_EQ(Content(path), "old");
    EXPECT_EQ(Content(fresh), "new");
}

TEST_F(Win32Sharing, FolderWithAHeldFileIsNotRenamedExceptUnderWine) {
    files().MakeFolder(In("folder"));
    const std::string path = Put("folder\\held");
    const auto holder = Held(path, GENERIC_READ, FILE_SHARE_READ);
    const int number = ErrorOf([&] { files().Rename(In("folder"), In("other")); });
    // Windows refuses; Wine renames folders like its host, under the open file.
    EXPECT_EQ(number, UnderWine() ? 0 : error_number::kPathFileAccess);
    EXPECT_EQ(files().Find(In("folder")).has_value(), !UnderWine());
}

TEST_F(Win32Sharing, ReaderLetsOthersWriteAndRename) {
    const std::string path = Put("read", "text");
    const auto reader = files().Open(path, OpenMode::kRead);
    const auto writer = Held(path, GENERIC_WRITE, kShareAll);
    files().Rename(path, In("moved"));
    char bytes[4];
    EXPECT_EQ(reader->Read(bytes, 4), 4u);
}

TEST_F(Win32Sharing, WriterLetsOthersReadButNotWrite) {
    const auto writer = files().Open(In("written"), OpenMode::kWrite);
    writer->Write("abc", 3);
    EXPECT_EQ(Content(In("written")), "abc");
    EXPECT_EQ(ErrorOf([&] { files().Open(In("written"), OpenMode::kAppend); }),
              error_number::kPermissionDenied);
}

TEST_F(Win32Sharing, TwoAppendersNeverOverwriteEachOther) {
    const auto one = files().Open(In("log"), OpenMode::kAppend);
    const auto other = files().Open(In("log"), OpenMode::kAppend);
    one->Write("1111", 4);
    other->Write("2222", 4);
    one->Write("3333", 4);
    one->Flush();
    EXPECT_EQ(Content(In("log")), "111122223333");
}

TEST_F(Win32Sharing, NewFileIsNobodyElses) {
    const auto created = files().Open(In("new"), OpenMode::kCreateNew);
    EXPECT_EQ(ErrorOf([&] { files().Open(In("new"), OpenMode::kRead); }),
              error_number::kPermissionDenied);
}

TEST_F(Win32Sharing, ReadOnlyTargetIsLeftAlone) {
    const std::string path = Put("target", "kept");
    const std::string fresh = Put("fresh", "new");
    files().SetAttributes(path, platform::attribute::kReadOnly);
    EXPECT_EQ(ErrorOf([&] { files().Open(path, OpenMode::kWrite); }),
              error_number::kPermissionDenied);
    EXPECT_EQ(ErrorOf([&] { files().Open(path, OpenMode::kAppend); }),
              error_number::kPermissionDenied);
    EXPECT_EQ(ErrorOf([&] { files().Replace(fresh, path); }), error_number::kPermissionDenied);
    EXPECT_EQ(ErrorOf([&] { files().RemoveFile(path); }), error_number::kPermissionDenied);
    EXPECT_EQ(Content(path), "kept");
    EXPECT_EQ(Content(fresh), "new");
}

TEST_F(Win32Sharing, HiddenAndSystemFilesAreWrittenAndStaySo) {
    using namespace platform::attribute;
    const std::string path = Put("hidden", "a long first text");
    files().SetAttributes(path, kHidden | kSystem);
    Put("hidden", "short");
    EXPECT_EQ(Content(path), "short");
    EXPECT_EQ(files().Find(path)->attributes & (kHidden | kSystem), kHidden | kSystem);
}

TEST_F(Win32Sharing, FolderCannotBeOpenedAsAFile) {
    for (const OpenMode mode : {OpenMode::kRead, OpenMode::kWrite, OpenMode::kAppend}) {
        EXPECT_EQ(ErrorOf([&] { files().Open(folder(), mode); }), error_number::kPermissionDenied);
    }
}

// A system call that fails with `code` the first `failures` times.
struct FailingCall {
    DWORD code;
    int failures;
    int calls = 0;
    bool operator()() {
        SetLastError(code);
        return ++calls > failures;
    }
};

TEST(Win32Retry, CallIsRepeatedWhileTheFileIsInUse) {
    for (const DWORD code : {ERROR_SHARING_VIOLATION, ERROR_ACCESS_DENIED, ERROR_LOCK_VIOLATION}) {
        FailingCall call{code, 2};
        EXPECT_EQ(platform::RetryWhileLocked([&] { return call(); }), DWORD{ERROR_SUCCESS});
        EXPECT_EQ(call.calls, 3);
    }
}

TEST(Win32Retry, TriesAreLimited) {
    FailingCall call{ERROR_SHARING_VIOLATION, 1000};
    EXPECT_EQ(platform::RetryWhileLocked([&] { return call(); }), DWORD{ERROR_SHARING_VIOLATION});
    EXPECT_EQ(call.calls, 6);
}

TEST(Win32Retry, OtherFailuresAreFinal) {
    FailingCall call{ERROR_FILE_NOT_FOUND, 1000};
    EXPECT_EQ(platform::RetryWhileLocked([&] { return call(); }), DWORD{ERROR_FILE_NOT_FOUND});
    EXPECT_EQ(call.calls, 1);
}

}  // namespace
}  // namespace vantrel::test
