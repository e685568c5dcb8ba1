// What opening, reading and writing promise on every machine, and on a full disk.
#include "tests/platform/seam_fixture.h"

namespace vantrel::test {
namespace {

using namespace error_number;
using platform::OpenMode;
namespace attribute = platform::attribute;

constexpr OpenMode kEveryMode[] = {OpenMode::kRead, OpenMode::kReadUnchanging, OpenMode::kWrite,
                                   OpenMode::kAppend, OpenMode::kCreateNew};

class SeamOpen : public Seam {};

TEST_F(SeamOpen, MissingFileIs53) {
    EXPECT_EQ(OpenError(In("gone.txt"), OpenMode::kRead), kFileNotFound);
    EXPECT_EQ(OpenError(In("gone.txt"), OpenMode::kReadUnchanging), kFileNotFound);
}

TEST_F(SeamOpen, MissingFolderInThePathIs76InEveryMode) {
    for (const OpenMode mode : kEveryMode) {
        EXPECT_EQ(OpenError(In("gone\\a.txt"), mode), kPathNotFound);
    }
}

TEST_F(SeamOpen, FileInThePlaceOfAFolderIs76) {
    const std::string path = Put("plain.txt");
    EXPECT_EQ(OpenError(path + "\\a.txt", OpenMode::kRead), kPathNotFound);
}

TEST_F(SeamOpen, MissingDriveIs68InEveryMode) {
    for (const OpenMode mode : kEveryMode) {
        EXPECT_EQ(OpenError(under_test().MissingDrive() + "\\a.txt", mode), kDeviceUnavailable);
    }
}

TEST_F(SeamOpen, DriveWithoutDiskIs71InEveryMode) {
    for (const OpenMode mode : kEveryMode) {
        EXPECT_EQ(OpenError(under_test().EmptyDrive() + "\\a.txt", mode), kDiskNotReady);
    }
}

TEST_F(SeamOpen, MalformedNameIs52) {
    for (const std::string name : {"a?b", "a*b", "a:b", "a|b", "a<b", "a>b", "a\"b", "a\x01"}) {
        EXPECT_EQ(OpenError(In(name), OpenMode::kRead), kBadFileName) << name;
        EXPECT_EQ(OpenError(In(name), OpenMode::kWrite), kBadFileName) << name;
    }
    EXPECT_EQ(OpenError("", OpenMode::kRead), kBadFileName);
    EXPECT_EQ(OpenError("no drive.txt", OpenMode::kRead), kBadFileName);
    EXPECT_TRUE(Names(folder()).empty());
}

TEST_F(SeamOpen, NameOf256CharactersIs52) {
    EXPECT_EQ(OpenError(In(std::string(256, 'a')), OpenMode::kWrite), kBadFileName);
}

TEST_F(SeamOpen, UnchangingFileIsReadRenamedAndRemovedButNotWritten) {
    const std::string path = Put("archive", "text");
    const auto unchanging = Open(path, OpenMode::kReadUnchanging);
    for (const OpenMode mode : {OpenMode::kWrite, OpenMode::kAppend}) {
        EXPECT_EQ(OpenError(path, mode), kPermissionDenied);
    }
    Open(path, OpenMode::kRead);
    Open(path, OpenMode::kReadUnchanging);
    files().Rename(path, In("moved"));
    files().RemoveFile(In("moved"));
    char bytes[4];
    EXPECT_EQ(unchanging->Read(bytes, sizeof bytes), sizeof bytes);
}

TEST_F(SeamOpen, FileThatIsWrittenIs70ToReadUnchanging) {
    const std::string path = Put("archive", "text");
    const auto writer = Open(path, OpenMode::kAppend);
    EXPECT_EQ(OpenError(path, OpenMode::kReadUnchanging), kPermissionDenied);
}

TEST_F(SeamOpen, FolderIs70ToOpen) {
    const std::string sub = MakeFolder("sub");
    for (const OpenMode mode : {OpenMode::kRead, OpenMode::kWrite, OpenMode::kAppend}) {
        EXPECT_EQ(OpenError(sub, mode), kPermissionDenied);
    }
    EXPECT_EQ(OpenError(sub, OpenMode::kCreateNew), kFileExists);
    EXPECT_EQ(OpenError(under_test().WorkDrive() + "\\", OpenMode::kRead), kPermissionDenied);
}

TEST_F(SeamOpen, ReadOnlyFileIs70ToWriteAndCanBeRead) {
    const std::string path = Put("a.txt", "kept");
    files().SetAttributes(path, attribute::kReadOnly);
    EXPECT_EQ(OpenError(path, OpenMode::kWrite), kPermissionDenied);
    EXPECT_EQ(OpenError(path, OpenMode::kAppend), kPermissionDenied);
    EXPECT_EQ(OpenError(path, OpenMode::kCreateNew), kFileExists);
    EXPECT_EQ(Content(path), "kept");
}

TEST_F(SeamOpen, HiddenAndSystemFilesAreWrittenAndStaySo) {
    const std::string path = Put("a.txt", "old");
    files().SetAttributes(path, attribute::kHidden | attribute::kSystem);
    platform::WriteWholeFile(files(), path, "new");
    EXPECT_EQ(Content(path), "new");
    EXPECT_TRUE(files().Find(path)->IsHiddenOrSystem());
}

TEST_F(SeamOpen, WriteCreatesOrEmpties) {
    const std::string path = Put("a.txt", "something long");
    Put("a.txt", "new");
    EXPECT_EQ(Content(path), "new");
    Open(path, OpenMode::kWrite)->Close();
    EXPECT_EQ(files().Find(path)->size, 0u);
}

TEST_F(SeamOpen, AppendCreatesOrContinues) {
    platform::AppendToFile(files(), In("log"), "one");
    platform::AppendToFile(files(), In("log"), "two");
    EXPECT_EQ(Content(In("log")), "onetwo");
}

TEST_F(SeamOpen, AppendingWritesAtTheEndAlsoAfterAnotherAppended) {
    auto first = Open(In("log"), OpenMode::kAppend);
    auto second = Open(In("log"), OpenMode::kAppend);
    first->Write("one", 3);
    second->Write("two", 3);
    first->Write("three", 5);
    first->Close();
    second->Close();
    EXPECT_EQ(Content(In("log")), "onetwothree");
}

TEST_F(SeamOpen, AppendingWhileAnotherReadsReachesTheReader) {
    const std::string path = Put("log", "one");
    auto reader = Open(path, OpenMode::kRead);
    char room[16] = {};
    EXPECT_EQ(reader->Read(room, sizeof room), 3u);
    EXPECT_EQ(reader->Read(room, sizeof room), 0u);
    platform::AppendToFile(files(), path, "two");
    EXPECT_EQ(reader->Read(room, sizeof room), 3u);
    EXPECT_EQ(std::string(room, 3), "two");
}

TEST_F(SeamOpen, CreateNewRefusesAnExistingFileInAnySpellingWith58) {
    const std::string path = Put("Taken.txt", "kept");
    EXPECT_EQ(OpenError(path, OpenMode::kCreateNew), kFileExists);
    EXPECT_EQ(OpenError(In("TAKEN.TXT"), OpenMode::kCreateNew), kFileExists);
    EXPECT_EQ(Content(path), "kept");
}

TEST_F(SeamOpen, CreateNewReadsBackWhatItWrote) {
    auto file = Open(In("a"), OpenMode::kCreateNew);
    file->Write("hello world", 11);
    file->Seek(6);
    char room[16] = {};
    EXPECT_EQ(file->Read(room, sizeof room), 5u);
    EXPECT_EQ(std::string(room, 5), "world");
    file->Close();
}

TEST_F(SeamOpen, FolderMakesNewFilesLikeOpen) {
    const auto sub = files().OpenFolder(MakeFolder("sub"));
    for (const std::string name : {"a", "b", "c"}) {
        const auto file = sub->Create(name);
        file->Write(name.data(), name.size());
        file->Close();
    }
    for (const std::string name : {"a", "b", "c"}) {
        EXPECT_EQ(Content(In("sub\\" + name)), name);
        EXPECT_EQ(ErrorOf([&] { sub->Create(name); }), kFileExists) << name;
    }
    EXPECT_EQ(ErrorOf([&] { sub->Create("a?b"); }), kBadFileName);
    EXPECT_EQ(Names(In("sub")).size(), 3u);
}

TEST_F(SeamOpen, FolderMadeAnewTakesFilesAgain) {
    const auto sub = files().OpenFolder(MakeFolder("sub"));
    for (const std::string name : {"a", "b", "c"}) {
        sub->Create(name)->Close();
        files().RemoveFile(In("sub\\" + name));
    }
    files().RemoveFolder(In("sub"));
    EXPECT_EQ(ErrorOf([&] { sub->Create("d"); }), kPathNotFound);
    MakeFolder("sub");
    sub->Create("d")->Close();
    EXPECT_TRUE(Exists(In("sub\\d")));
}

TEST_F(SeamOpen, RootIsAFolderToo) {
    const std::string name = "seam-root-file.txt";
    const auto root = files().OpenFolder(under_test().WorkDrive() + "\\");
    root->Create(name)->Close();
    EXPECT_EQ(ErrorOf([&] { root->Create(name); }), kFileExists);
    files().RemoveFile(under_test().WorkDrive() + "\\" + name);
}

TEST_F(SeamOpen, EmptyFileHasNoBytes) {
    const std::string path = Put("empty", "");
    auto file = Open(path, OpenMode::kRead);
    char byte = 'x';
    EXPECT_EQ(file->Size(), 0u);
    EXPECT_EQ(file->Read(&byte, 1), 0u);
    EXPECT_EQ(byte, 'x');
    file->Close();
}

TEST_F(SeamOpen, ReadGivesAllThatIsAskedForExceptAtTheEnd) {
    std::string bytes(300'000, 'a');
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<char>(i * 31 >> 3);
    }
    const std::string path = Put("big", bytes);
    auto file = Open(path, OpenMode::kRead);
    std::string room(bytes.size() + 10, '\0');
    EXPECT_EQ(file->Read(room.data(), 200'000), 200'000u);
    EXPECT_EQ(file->Read(room.data() + 200'000, 100'010), 100'000u);
    EXPECT_EQ(room.substr(0, bytes.size()), bytes);
}

TEST_F(SeamOpen, SeekMovesTheNextRead) {
    const std::string path = Put("a", "0123456789");
    auto file = Open(path, OpenMode::kRead);
    char room[4] = {};
    file->Seek(7);
    EXPECT_EQ(file->Read(room, 2), 2u);
    EXPECT_EQ(std::string(room, 2), "78");
    file->Seek(0);
    EXPECT_EQ(file->Read(room, 1), 1u);
    EXPECT_EQ(room[0], '0');
}

TEST_F(SeamOpen, SeekBeyondTheEndReadsNothingAndChangesNothing) {
    const std::string path = Put("a", "0123");
    auto file = Open(path, OpenMode::kRead);
    char byte = 0;
    file->Seek(100);
    EXPECT_EQ(file->Read(&byte, 1), 0u);
    EXPECT_EQ(file->Size(), 4u);
}

TEST_F(SeamOpen, WriteBeyondTheEndFillsTheGapWithZeros) {
    auto file = Open(In("a"), OpenMode::kWrite);
    file->Write("ab", 2);
    file->Seek(4);
    file->Write("c", 1);
    file->Close();
    EXPECT_EQ(Content(In("a")), std::string("ab\0\0c", 5));
}

TEST_F(SeamOpen, TruncateCutsAndPutsThePositionThere) {
    auto file = Open(In("a"), OpenMode::kWrite);
    file->Write("0123456789", 10);
    file->Truncate(4);
    EXPECT_EQ(file->Size(), 4u);
    file->Write("x", 1);
    file->Close();
    EXPECT_EQ(Content(In("a")), "0123x");
}

TEST_F(SeamOpen, FlushedBytesAreThereWhileTheFileIsOpen) {
    auto file = Open(In("a"), OpenMode::kWrite);
    file->Write("abc", 3);
    file->Flush();
    EXPECT_EQ(Content(In("a")), "abc");
    file->Close();
}

TEST_F(SeamOpen, AbandonedFileKeepsWhatWasWritten) {
    Open(In("a"), OpenMode::kWrite)->Write("abc", 3);
    EXPECT_EQ(Content(In("a")), "abc");
}

TEST_F(SeamOpen, AnyByteIsWrittenAsItIs) {
    std::string bytes;
    for (int i = 0; i < 256; ++i) {
        bytes += static_cast<char>(i);
    }
    bytes += "\r\n\n\r\x1A end";
    EXPECT_EQ(Content(Put("a", bytes)), bytes);
}

class SeamSharing : public Seam {};

TEST_F(SeamSharing, SecondOpenerOfANewFileGets70InEveryMode) {
    auto file = Open(In("a"), OpenMode::kCreateNew);
    for (const OpenMode mode : {OpenMode::kRead, OpenMode::kWrite, OpenMode::kAppend}) {
        EXPECT_EQ(OpenError(In("a"), mode), kPermissionDenied);
    }
    file->Close();
    EXPECT_EQ(OpenError(In("a"), OpenMode::kRead), 0);
}

TEST_F(SeamSharing, WriterLetsOthersReadButNotWrite) {
    const std::string path = Put("a");
    auto file = Open(path, OpenMode::kWrite);
    EXPECT_EQ(OpenError(path, OpenMode::kRead), 0);
    EXPECT_EQ(OpenError(path, OpenMode::kWrite), kPermissionDenied);
    EXPECT_EQ(OpenError(path, OpenMode::kAppend), kPermissionDenied);
}

TEST_F(SeamSharing, RefusedWriterEmptiesNothing) {
    auto file = Open(In("a"), OpenMode::kAppend);
    file->Write("kept", 4);
    EXPECT_EQ(OpenError(In("a"), OpenMode::kWrite), kPermissionDenied);
    file->Close();
    EXPECT_EQ(Content(In("a")), "kept");
}

TEST_F(SeamSharing, ReaderLetsOthersReadWriteAndRename) {
    const std::string path = Put("a", "old");
    auto reader = Open(path, OpenMode::kRead);
    EXPECT_EQ(OpenError(path, OpenMode::kRead), 0);
    EXPECT_EQ(OpenError(path, OpenMode::kWrite), 0);
    EXPECT_EQ(OpenError(path, OpenMode::kAppend), 0);
    files().Rename(path, In("b"));
    EXPECT_TRUE(Exists(In("b")));
}

TEST_F(SeamSharing, FileBeingWrittenIsNeitherRenamedNorReplacedNorRemoved) {
    const std::string other = Put("other");
    const std::string path = Put("a");
    auto file = Open(path, OpenMode::kWrite);
    EXPECT_EQ(ErrorOf([&] { files().Rename(path, In("b")); }), kPermissionDenied);
    EXPECT_EQ(ErrorOf([&] { files().Replace(other, path); }), kPermissionDenied);
    EXPECT_EQ(ErrorOf([&] { files().Replace(path, In("b")); }), kPermissionDenied);
    EXPECT_EQ(ErrorOf([&] { files().RemoveFile(path); }), kPermissionDenied);
    file->Close();
    EXPECT_TRUE(Exists(path));
    EXPECT_TRUE(Exists(other));
}

TEST_F(SeamSharing, ClosedFileIsFree) {
    auto file = Open(In("a"), OpenMode::kCreateNew);
    file->Close();
    EXPECT_EQ(OpenError(In("a"), OpenMode::kWrite), 0);
    files().RemoveFile(In("a"));
    EXPECT_FALSE(Exists(In("a")));
}

class SeamFullDisk : public Seam {
  protected:
    ~SeamFullDisk() override {
        for (const std::string& name : {Filler(), In2("small"), In2("~Vantrel.new")}) {
            if (Exists(name)) {
                files().RemoveFile(name);
            }
        }
    }
    std::string In2(const std::string& name) { return under_test().FullDrive() + "\\" + name; }
    std::string Filler() { return In2("filler"); }
    // Writes until nothing fits any more.
    void Fill() {
        auto file = Open(Filler(), OpenMode::kWrite);
        const std::string block(4096, 'x');
        constexpr int kFarTooMany = 16 * 1024;  // 64 MB: not a small disk after all
        for (int i = 0; i < kFarTooMany; ++i) {
            const int error = ErrorOf([&] { file->Write(block.data(), block.size()); });
            if (error == 0) {
                continue;
            }
            EXPECT_EQ(error, kDiskFull);
            file->Close();
            return;
        }
        FAIL() << "the disk does not fill up";
    }
};

TEST_F(SeamFullDisk, WriteThatDoesNotFitIs61) {
    Fill();
    EXPECT_GT(files().Find(Filler())->size, 0u);
    EXPECT_EQ(machine().drives.FreeBytes(under_test().FullDrive() + "\\"), 0u);
}

TEST_F(SeamFullDisk, ReplacingAWholeFileFailsAndLeavesTheOldOne) {
    platform::WriteWholeFile(files(), In2("small"), "old");
    Fill();
    EXPECT_EQ(ErrorOf([&] {
                  platform::ReplaceWholeFile(files(), In2("small"), std::string(100'000, 'n'));
              }),
              kDiskFull);
    EXPECT_EQ(Content(In2("small")), "old");
    EXPECT_FALSE(Exists(In2("~Vantrel.new")));
}

TEST_F(SeamFullDisk, RoomComesBackWhenAFileGoes) {
    Fill();
    files().RemoveFile(Filler());
    platform::WriteWholeFile(files(), In2("small"), std::string(100'000, 'n'));
    EXPECT_EQ(files().Find(In2("small"))->size, 100'000u);
}

}  // namespace
}  // namespace vantrel::test
