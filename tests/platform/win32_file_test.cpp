// What the system's own ways with open files and times must not change.
#include "platform/win32/win32_machine.h"
#include "tests/platform/win32_support.h"

namespace vantrel::test {
namespace {

using platform::OpenMode;
constexpr platform::Ticks kSecond = 10'000'000;
constexpr platform::Ticks kThen = 13'000'000'000 * kSecond;  // in December 2012

class Win32Files : public Win32Test {};

TEST_F(Win32Files, TimesSetBeforeTheLastWriteHold) {
    const auto file = files().Open(In("a"), OpenMode::kCreateNew);
    file->Write("one", 3);
    file->SetTimes({kThen, kThen + kSecond, kThen - kSecond});
    file->Write("two", 3);
    file->Close();
    EXPECT_EQ(files().Find(In("a"))->times.modified, kThen);
}

TEST_F(Win32Files, ZeroTimesChangeNothing) {
    const std::string path = Put("a");
    files().SetTimes(path, {kThen, kThen, kThen});
    files().SetTimes(path, {0, kThen + kSecond, 0});
    EXPECT_EQ(files().Find(path)->times.modified, kThen);
    EXPECT_EQ(files().Find(path)->times.accessed, kThen + kSecond);
}

TEST_F(Win32Files, TimesThatNoFileSystemHoldsAreLeftOut) {
    const std::string path = Put("a");
    files().SetTimes(path, {kThen, kThen, kThen});
    files().SetTimes(path, {~platform::Ticks{0}, platform::Ticks{1} << 63, 0});
    EXPECT_EQ(files().Find(path)->times.modified, kThen);
    EXPECT_EQ(files().Find(path)->times.accessed, kThen);
}

TEST_F(Win32Files, FoldersHaveTimesToo) {
    files().MakeFolder(In("folder"));
    files().SetTimes(In("folder"), {kThen, kThen, kThen});
    EXPECT_EQ(files().Find(In("folder"))->times.modified, kThen);
    files().List(folder(), [&](const platform::FileInfo& info) {
        EXPECT_EQ(info.times.modified, kThen);
        return true;
    });
}

TEST_F(Win32Files, OneWriteMayTakeManySystemCalls) {
    std::string bytes(35 << 20, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<char>(i * 7 >> 10);
    }
    platform::WriteWholeFile(files(), In("big"), bytes);
    std::string back(bytes.size() + 1, '?');
    const auto file = files().Open(In("big"), OpenMode::kRead);
    EXPECT_EQ(file->Read(back.data(), back.size()), bytes.size());
    back.pop_back();
    EXPECT_TRUE(back == bytes);
}

TEST_F(Win32Files, SizesBeyondFourGigabytesAreWhole) {
    constexpr std::uint64_t kSize = (std::uint64_t{5} << 30) + 1;
    const auto file = files().Open(In("huge"), OpenMode::kWrite);
    file->Truncate(kSize);
    EXPECT_EQ(file->Size(), kSize);
    file->Close();
    EXPECT_EQ(files().Find(In("huge"))->size, kSize);
    files().List(folder(), [&](const platform::FileInfo& info) {
        EXPECT_EQ(info.size, kSize);
        return true;
    });
}

TEST_F(Win32Files, FileBeingWrittenIsFoundWithItsSize) {
    const auto file = files().Open(In("a"), OpenMode::kWrite);
    file->Write("12345", 5);
    EXPECT_EQ(files().Find(In("a"))->size, 5u);
}

TEST_F(Win32Files, FolderWithANameThatCannotBeIs75) {
    for (const char* name : {"a:b", "a*", "a|b"}) {
        EXPECT_EQ(ErrorOf([&] { files().MakeFolder(In(name)); }), error_number::kPathFileAccess);
    }
    EXPECT_EQ(Names(folder()), std::vector<std::string>{});
}

TEST_F(Win32Files, OwnNameIsTaken) {
    const std::string path = Put("a");
    EXPECT_EQ(ErrorOf([&] { files().Rename(path, path); }), error_number::kFileExists);
    EXPECT_EQ(ErrorOf([&] { files().Rename(folder(), folder()); }), error_number::kFileExists);
    EXPECT_EQ(Content(path), "text");
}

TEST_F(Win32Files, FolderNeverTakesAFilesPlace) {
    const std::string path = Put("a");
    files().MakeFolder(In("folder"));
    EXPECT_EQ(ErrorOf([&] { files().Replace(In("folder"), path); }),
              error_number::kPermissionDenied);
    EXPECT_EQ(ErrorOf([&] { files().Replace(path, In("folder")); }),
              error_number::kPermissionDenied);
    EXPECT_EQ(Content(path), "text");
}

TEST_F(Win32Files, RootsAreNeitherMadeRenamedNorRemoved) {
    const std::string root = Arranged("VANTREL_OTHER_DRIVE") + "\\";
    EXPECT_EQ(ErrorOf([&] { files().MakeFolder(root); }), error_number::kPathFileAccess);
    EXPECT_EQ(ErrorOf([&] { files().Rename(root, root + "a"); }), error_number::kPathFileAccess);
    EXPECT_EQ(ErrorOf([&] { files().RemoveFolder(root); }), error_number::kPathFileAccess);
    EXPECT_TRUE(files().Find(root));
}

TEST_F(Win32Files, SystemNeverAsksForADisk) {
    SetErrorMode(0);  // the test framework has switched dialogs off, too
    const platform::Win32Machine another;
    const UINT quiet = SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX;
    EXPECT_EQ(GetErrorMode() & quiet, quiet);
}

}  // namespace
}  // namespace vantrel::test
