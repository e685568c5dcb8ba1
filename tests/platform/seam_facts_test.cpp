// Attributes, times and identity on every machine.
#include "tests/platform/seam_fixture.h"

namespace vantrel::test {
namespace {

using namespace error_number;
using platform::OpenMode;
using platform::Ticks;
namespace attribute = platform::attribute;

constexpr std::uint32_t kSettable =
    attribute::kReadOnly | attribute::kHidden | attribute::kSystem | attribute::kArchive;
constexpr Ticks kSecond = 10'000'000;
// 2001-02-03 04:05:06.1234567 UTC, and others with an odd number of ticks.
constexpr Ticks kOne = 126'256'467'061'234'567;
constexpr Ticks kTwo = kOne + 12'345 * kSecond + 1;
constexpr Ticks kThree = kOne - 54'321 * kSecond + 3;

class SeamAttributes : public Seam {};

TEST_F(SeamAttributes, EveryCombinationIsKept) {
    const std::string path = Put("a");
    for (const std::uint32_t read_only : {0u, attribute::kReadOnly}) {
        for (const std::uint32_t hidden : {0u, attribute::kHidden}) {
            for (const std::uint32_t system : {0u, attribute::kSystem}) {
                const std::uint32_t wanted = read_only | hidden | system | attribute::kArchive;
                files().SetAttributes(path, wanted);
                EXPECT_EQ(Attributes(path) & kSettable, wanted);
            }
        }
    }
}

TEST_F(SeamAttributes, AreSetInAnyLetterCase) {
    Put("File");
    files().SetAttributes(In("FILE"), attribute::kHidden);
    EXPECT_EQ(Attributes(In("File")) & attribute::kHidden, attribute::kHidden);
}

TEST_F(SeamAttributes, OtherBitsAreIgnored) {
    const std::string path = Put("a");
    files().SetAttributes(
        path, attribute::kFolder | attribute::kDevice | attribute::kReparse | attribute::kHidden);
    const auto info = files().Find(path);
    EXPECT_FALSE(info->IsFolder());
    EXPECT_FALSE(info->is_link);
    EXPECT_EQ(info->attributes & (attribute::kDevice | attribute::kReparse), 0u);
    EXPECT_NE(info->attributes & attribute::kHidden, 0u);
}

TEST_F(SeamAttributes, FolderCanBeHiddenAndStaysAFolder) {
    const std::string sub = MakeFolder("sub");
    files().SetAttributes(sub, attribute::kHidden);
    EXPECT_TRUE(files().Find(sub)->IsFolder());
    EXPECT_TRUE(files().Find(sub)->IsHiddenOrSystem());
    files().SetAttributes(sub, 0);
    EXPECT_FALSE(files().Find(sub)->IsHiddenOrSystem());
}

TEST_F(SeamAttributes, ContentStays) {
    const std::string path = Put("a", "bytes");
    files().SetAttributes(path, attribute::kReadOnly | attribute::kHidden);
    EXPECT_EQ(Content(path), "bytes");
}

TEST_F(SeamAttributes, MissingFileIs53AndMissingFolderIs76) {
    EXPECT_EQ(ErrorOf([&] { files().SetAttributes(In("gone"), 0); }), kFileNotFound);
    EXPECT_EQ(ErrorOf([&] { files().SetAttributes(In("gone\\a"), 0); }), kPathNotFound);
}

class SeamTimes : public Seam {
  protected:
    void ExpectTimes(const std::string& path, Ticks modified, Ticks accessed) {
        const auto info = files().Find(path);
        ASSERT_TRUE(info.has_value());
        EXPECT_EQ(info->times.modified, modified);
        EXPECT_EQ(info->times.accessed, accessed);
    }
};

TEST_F(SeamTimes, SetByNameHoldTo100Nanoseconds) {
    const std::string path = Put("a");
    files().SetTimes(path, {.modified = kOne, .accessed = kTwo, .created = kThree});
    ExpectTimes(path, kOne, kTwo);
}

TEST_F(SeamTimes, SetByNameInAnyLetterCase) {
    Put("File");
    files().SetTimes(In("FILE"), {.modified = kOne, .accessed = kTwo, .created = kThree});
    ExpectTimes(In("File"), kOne, kTwo);
}

TEST_F(SeamTimes, SetOnAnOpenFileHoldAfterItsLastWrite) {
    auto file = Open(In("a"), OpenMode::kCreateNew);
    file->SetTimes({.modified = kTwo, .accessed = kOne, .created = kThree});
    file->Write("bytes", 5);
    file->Close();
    ExpectTimes(In("a"), kTwo, kOne);
}

TEST_F(SeamTimes, FoldersHaveThemToo) {
    const std::string sub = MakeFolder("sub");
    files().SetTimes(sub, {.modified = kOne, .accessed = kTwo, .created = kThree});
    ExpectTimes(sub, kOne, kTwo);
}

TEST_F(SeamTimes, ReadOnlyFileTakesThem) {
    const std::string path = Put("a");
    files().SetAttributes(path, attribute::kReadOnly);
    files().SetTimes(path, {.modified = kOne, .accessed = kTwo, .created = kThree});
    ExpectTimes(path, kOne, kTwo);
}

TEST_F(SeamTimes, ZeroLeavesATimeAsItIs) {
    const std::string path = Put("a");
    files().SetTimes(path, {.modified = kOne, .accessed = kTwo, .created = kThree});
    files().SetTimes(path, {.modified = 0, .accessed = kThree, .created = 0});
    ExpectTimes(path, kOne, kThree);
}

TEST_F(SeamTimes, NewFileBearsTheClocksTime) {
    const Ticks before = under_test().FileClock();
    const std::string path = Put("a");
    const Ticks after = under_test().FileClock();
    // A file system may round to its own clock's last tick, and to two seconds at worst.
    const auto times = files().Find(path)->times;
    EXPECT_GE(times.modified + 2 * kSecond, before);
    EXPECT_LE(times.modified, after + 2 * kSecond);
    EXPECT_GE(times.created + 2 * kSecond, before);
    EXPECT_LE(times.created, after + 2 * kSecond);
}

TEST_F(SeamTimes, MissingFileIs53AndMissingFolderIs76) {
    EXPECT_EQ(ErrorOf([&] { files().SetTimes(In("gone"), {}); }), kFileNotFound);
    EXPECT_EQ(ErrorOf([&] { files().SetTimes(In("gone\\a"), {}); }), kPathNotFound);
}

class SeamSameFile : public Seam {};

TEST_F(SeamSameFile, SpellingsOfOneFileAreTheSame) {
    MakeFolder("Sub");
    Put("Sub\\File");
    EXPECT_TRUE(files().SameFile(In("Sub\\File"), In("SUB\\file")));
    EXPECT_TRUE(files().SameFile(In("Sub\\File"), In("sub\\..\\SUB\\\\FILE")));
    EXPECT_TRUE(files().SameFile(In("Sub"), In("sub\\")));
}

TEST_F(SeamSameFile, TwoFilesOfOneContentAreNot) {
    EXPECT_FALSE(files().SameFile(Put("a"), Put("b")));
}

TEST_F(SeamSameFile, MissingFilesAreNot) {
    const std::string path = Put("a");
    EXPECT_FALSE(files().SameFile(path, In("gone")));
    EXPECT_FALSE(files().SameFile(In("gone"), path));
    EXPECT_FALSE(files().SameFile(In("gone"), In("gone")));
    EXPECT_FALSE(files().SameFile(path, under_test().MissingDrive() + "\\a"));
    EXPECT_FALSE(files().SameFile(path, ""));
}

TEST_F(SeamSameFile, HoldsWhileTheFileIsOpen) {
    const std::string path = Put("File");
    auto file = Open(path, OpenMode::kWrite);
    EXPECT_TRUE(files().SameFile(path, In("FILE")));
}

}  // namespace
}  // namespace vantrel::test
