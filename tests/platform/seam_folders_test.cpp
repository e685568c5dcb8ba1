// Finding, listing, making, renaming, replacing and removing on every machine.

#include "tests/platform/seam_fixture.h"
#include "tests/support/matchers.h"

namespace vantrel::test {
namespace {

using namespace error_number;
using platform::FileInfo;
namespace attribute = platform::attribute;

class SeamFind : public Seam {};

TEST_F(SeamFind, DescribesAFile) {
    const auto info = files().Find(Put("a.txt", "12345"));
    ASSERT_TRUE(info.has_value());
    EXPECT_EQ(info->name, "a.txt");
    EXPECT_EQ(info->size, 5u);
    EXPECT_FALSE(info->IsFolder());
    EXPECT_FALSE(info->is_link);
}

TEST_F(SeamFind, DescribesAFolderWithoutASize) {
    const auto info = files().Find(MakeFolder("sub"));
    ASSERT_TRUE(info.has_value());
    EXPECT_TRUE(info->IsFolder());
    EXPECT_EQ(info->size, 0u);
}

TEST_F(SeamFind, DriveRootIsAFolderWithoutAName) {
    for (const std::string end : {"", "\\"}) {
        const auto info = files().Find(under_test().WorkDrive() + end);
        ASSERT_TRUE(info.has_value());
        EXPECT_EQ(info->name, "");
        EXPECT_TRUE(info->IsFolder());
    }
}

TEST_F(SeamFind, NothingThereIsNoError) {
    Put("plain");
    EXPECT_FALSE(Exists(In("gone")));
    EXPECT_FALSE(Exists(In("gone\\deeper")));
    EXPECT_FALSE(Exists(In("plain\\deeper")));
    EXPECT_FALSE(Exists(In("mal|formed")));
    EXPECT_FALSE(Exists(under_test().MissingDrive() + "\\"));
    EXPECT_FALSE(Exists(under_test().EmptyDrive() + "\\"));
    EXPECT_FALSE(Exists(under_test().EmptyDrive() + "\\a"));
    EXPECT_FALSE(Exists(""));
}

TEST_F(SeamFind, HiddenAndSystemFilesCountAsExisting) {
    const std::string path = Put("a");
    files().SetAttributes(path, attribute::kHidden | attribute::kSystem);
    EXPECT_TRUE(Exists(path));
    EXPECT_THAT(Names(folder()), ElementsAre("a"));
}

class SeamList : public Seam {};

TEST_F(SeamList, GivesEveryEntryOnceAndNoDots) {
    Put("b");
    Put("a", "12");
    MakeFolder("sub");
    Put("sub\\inner");
    EXPECT_THAT(Names(folder()), UnorderedElementsAre("a", "b", "sub"));
}

TEST_F(SeamList, SaysTheSameAsFind) {
    Put("a", "12");
    MakeFolder("sub");
    files().SetAttributes(In("a"), attribute::kHidden | attribute::kReadOnly);
    files().List(folder(), [&](const FileInfo& listed) {
        const auto found = files().Find(In(listed.name));
        EXPECT_EQ(listed.name, found->name);
        EXPECT_EQ(listed.attributes, found->attributes);
        EXPECT_EQ(listed.size, found->size);
        EXPECT_EQ(listed.times.modified, found->times.modified);
        EXPECT_EQ(listed.is_link, found->is_link);
        return true;
    });
}

TEST_F(SeamList, StopsWhenToldTo) {
    Put("a");
    Put("b");
    int seen = 0;
    files().List(folder(), [&](const FileInfo&) { return ++seen < 1; });
    EXPECT_EQ(seen, 1);
}

TEST_F(SeamList, EmptyFolderHasNoEntries) { EXPECT_TRUE(Names(folder()).empty()); }

TEST_F(SeamList, ManyEntriesAllCome) {
    std::vector<std::string> names;
    for (int i = 0; i < 500; ++i) {
        names.push_back("file with a name of some length " + std::to_string(i));
        Put(names.back(), "");
    }
    EXPECT_THAT(Names(folder()), ::testing::UnorderedElementsAreArray(names));
}

TEST_F(SeamList, MissingFolderIs76) {
    EXPECT_EQ(ErrorOf([&] { Names(In("gone")); }), kPathNotFound);
    EXPECT_EQ(ErrorOf([&] { Names(In("gone\\deeper")); }), kPathNotFound);
}

TEST_F(SeamList, FileIsNoFolder) {
    const std::string path = Put("plain");
    EXPECT_EQ(ErrorOf([&] { Names(path); }), kPathNotFound);
}

TEST_F(SeamList, MissingDriveIs68AndDriveWithoutDiskIs71) {
    EXPECT_EQ(ErrorOf([&] { Names(under_test().MissingDrive() + "\\"); }), kDeviceUnavailable);
    EXPECT_EQ(ErrorOf([&] { Names(under_test().EmptyDrive() + "\\"); }), kDiskNotReady);
}

class SeamMakeFolder : public Seam {};

TEST_F(SeamMakeFolder, MakesOneFolder) {
    const std::string sub = MakeFolder("Sub");
    EXPECT_TRUE(files().Find(sub)->IsFolder());
    EXPECT_THAT(Names(folder()), ElementsAre("Sub"));
}

TEST_F(SeamMakeFolder, MissingParentIs76) {
    EXPECT_EQ(ErrorOf([&] { MakeFolder("gone\\sub"); }), kPathNotFound);
}

TEST_F(SeamMakeFolder, TakenNameIs75InAnyLetterCase) {
    MakeFolder("Sub");
    Put("file");
    EXPECT_EQ(ErrorOf([&] { MakeFolder("Sub"); }), kPathFileAccess);
    EXPECT_EQ(ErrorOf([&] { MakeFolder("SUB"); }), kPathFileAccess);
    EXPECT_EQ(ErrorOf([&] { MakeFolder("FILE"); }), kPathFileAccess);
    EXPECT_EQ(ErrorOf([&] { files().MakeFolder(under_test().WorkDrive() + "\\"); }),
              kPathFileAccess);
}

TEST_F(SeamMakeFolder, NameThatIsNotAllowedIs75) {
    EXPECT_EQ(ErrorOf([&] { MakeFolder("mal?formed"); }), kPathFileAccess);
}

TEST_F(SeamMakeFolder, MissingDriveIs68AndDriveWithoutDiskIs71) {
    EXPECT_EQ(ErrorOf([&] { files().MakeFolder(under_test().MissingDrive() + "\\a"); }),
              kDeviceUnavailable);
    EXPECT_EQ(ErrorOf([&] { files().MakeFolder(under_test().EmptyDrive() + "\\a"); }),
              kDiskNotReady);
}

class SeamRename : public Seam {};

TEST_F(SeamRename, MovesAFileBetweenFolders) {
    Put("a", "bytes");
    MakeFolder("sub");
    files().Rename(In("a"), In("sub\\B"));
    EXPECT_FALSE(Exists(In("a")));
    EXPECT_EQ(Content(In("sub\\b")), "bytes");
    EXPECT_THAT(Names(In("sub")), ElementsAre("B"));
}

TEST_F(SeamRename, MovesAFolderWithItsContent) {
    MakeFolder("one");
    Put("one\\a", "bytes");
    files().Rename(In("ONE"), In("two"));
    EXPECT_EQ(Content(In("two\\a")), "bytes");
    EXPECT_THAT(Names(folder()), ElementsAre("two"));
}

TEST_F(SeamRename, TakenNameIs58InAnyLetterCase) {
    Put("a", "one");
    Put("B", "two");
    MakeFolder("Sub");
    EXPECT_EQ(ErrorOf([&] { files().Rename(In("a"), In("B")); }), kFileExists);
    EXPECT_EQ(ErrorOf([&] { files().Rename(In("a"), In("b")); }), kFileExists);
    EXPECT_EQ(ErrorOf([&] { files().Rename(In("a"), In("SUB")); }), kFileExists);
    MakeFolder("other");
    EXPECT_EQ(ErrorOf([&] { files().Rename(In("other"), In("sub")); }), kFileExists);
    EXPECT_EQ(Content(In("a")), "one");
    EXPECT_EQ(Content(In("b")), "two");
}

TEST_F(SeamRename, MissingSourceIs53) {
    EXPECT_EQ(ErrorOf([&] { files().Rename(In("gone"), In("b")); }), kFileNotFound);
}

TEST_F(SeamRename, MissingFolderOnEitherSideIs76) {
    Put("a");
    EXPECT_EQ(ErrorOf([&] { files().Rename(In("gone\\a"), In("b")); }), kPathNotFound);
    EXPECT_EQ(ErrorOf([&] { files().Rename(In("a"), In("gone\\b")); }), kPathNotFound);
    EXPECT_TRUE(Exists(In("a")));
}

TEST_F(SeamRename, AcrossDrivesIs74) {
    Put("a");
    const std::string other = under_test().OtherDrive() + "\\a";
    EXPECT_EQ(ErrorOf([&] { files().Rename(In("a"), other); }), kAcrossDrives);
    EXPECT_TRUE(Exists(In("a")));
    EXPECT_FALSE(Exists(other));
}

TEST_F(SeamRename, FolderIntoItselfIs75) {
    MakeFolder("sub");
    EXPECT_EQ(ErrorOf([&] { files().Rename(In("sub"), In("sub\\inner")); }), kPathFileAccess);
    EXPECT_TRUE(Exists(In("sub")));
}

TEST_F(SeamRename, MalformedNewNameIs52) {
    Put("a");
    EXPECT_EQ(ErrorOf([&] { files().Rename(In("a"), In("b?")); }), kBadFileName);
}

class SeamReplace : public Seam {};

TEST_F(SeamReplace, TakesThePlaceOfAnExistingFile) {
    Put("new", "new bytes");
    Put("old", "old bytes");
    files().Replace(In("new"), In("old"));
    EXPECT_EQ(Content(In("old")), "new bytes");
    EXPECT_THAT(Names(folder()), ElementsAre("old"));
}

TEST_F(SeamReplace, TakesThePlaceOfAFileInAnotherLetterCase) {
    Put("new", "new bytes");
    Put("Old", "old bytes");
    files().Replace(In("NEW"), In("OLD"));
    EXPECT_EQ(Content(In("old")), "new bytes");
    EXPECT_EQ(Names(folder()).size(), 1u);
}

TEST_F(SeamReplace, TargetNeedNotExist) {
    Put("new", "bytes");
    files().Replace(In("new"), In("target"));
    EXPECT_EQ(Content(In("target")), "bytes");
    EXPECT_FALSE(Exists(In("new")));
}

TEST_F(SeamReplace, ReadOnlyTargetIsLeftAloneWith70) {
    Put("new", "new bytes");
    Put("old", "old bytes");
    files().SetAttributes(In("old"), attribute::kReadOnly);
    EXPECT_EQ(ErrorOf([&] { files().Replace(In("new"), In("old")); }), kPermissionDenied);
    EXPECT_EQ(Content(In("old")), "old bytes");
    EXPECT_EQ(Content(In("new")), "new bytes");
}

TEST_F(SeamReplace, HiddenTargetIsReplaced) {
    Put("new", "new bytes");
    Put("old", "old bytes");
    files().SetAttributes(In("old"), attribute::kHidden | attribute::kSystem);
    files().Replace(In("new"), In("old"));
    EXPECT_EQ(Content(In("old")), "new bytes");
}

TEST_F(SeamReplace, FolderIsNoTarget) {
    Put("new");
    MakeFolder("sub");
    EXPECT_EQ(ErrorOf([&] { files().Replace(In("new"), In("sub")); }), kPermissionDenied);
    EXPECT_TRUE(files().Find(In("sub"))->IsFolder());
    EXPECT_TRUE(Exists(In("new")));
}

TEST_F(SeamReplace, MissingSourceIs53AndMissingFolderIs76) {
    Put("old", "old bytes");
    EXPECT_EQ(ErrorOf([&] { files().Replace(In("gone"), In("old")); }), kFileNotFound);
    EXPECT_EQ(ErrorOf([&] { files().Replace(In("old"), In("gone\\old")); }), kPathNotFound);
    EXPECT_EQ(Content(In("old")), "old bytes");
}

TEST_F(SeamReplace, AcrossDrivesIs74) {
    Put("a");
    const std::string other = under_test().OtherDrive() + "\\a";
    EXPECT_EQ(ErrorOf([&] { files().Replace(In("a"), other); }), kAcrossDrives);
    EXPECT_TRUE(Exists(In("a")));
}

class SeamRemove : public Seam {};

TEST_F(SeamRemove, RemovesAFileInAnyLetterCase) {
    Put("File");
    files().RemoveFile(In("FILE"));
    EXPECT_TRUE(Names(folder()).empty());
}

TEST_F(SeamRemove, MissingFileIs53AndMissingFolderIs76) {
    EXPECT_EQ(ErrorOf([&] { files().RemoveFile(In("gone")); }), kFileNotFound);
    EXPECT_EQ(ErrorOf([&] { files().RemoveFile(In("gone\\a")); }), kPathNotFound);
    EXPECT_EQ(ErrorOf([&] { files().RemoveFolder(In("gone")); }), kPathNotFound);
    EXPECT_EQ(ErrorOf([&] { files().RemoveFolder(In("gone\\a")); }), kPathNotFound);
}

TEST_F(SeamRemove, ReadOnlyFileIsRefusedWith70) {
    const std::string path = Put("a");
    files().SetAttributes(path, attribute::kReadOnly);
    EXPECT_EQ(ErrorOf([&] { files().RemoveFile(path); }), kPermissionDenied);
    EXPECT_TRUE(Exists(path));
}

TEST_F(SeamRemove, FolderIsNoFile) {
    MakeFolder("sub");
    EXPECT_EQ(ErrorOf([&] { files().RemoveFile(In("sub")); }), kPermissionDenied);
    EXPECT_TRUE(Exists(In("sub")));
}

TEST_F(SeamRemove, RemovesAnEmptyFolder) {
    MakeFolder("Sub");
    files().RemoveFolder(In("SUB"));
    EXPECT_FALSE(Exists(In("Sub")));
}

TEST_F(SeamRemove, FolderThatIsNotEmptyIs75) {
    MakeFolder("sub");
    Put("sub\\a");
    EXPECT_EQ(ErrorOf([&] { files().RemoveFolder(In("sub")); }), kPathFileAccess);
    EXPECT_TRUE(Exists(In("sub\\a")));
}

}  // namespace
}  // namespace vantrel::test
