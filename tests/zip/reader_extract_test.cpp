// Restoring an archive, entry by entry.
#include <mutex>
#include <set>
#include <thread>

#include "tests/zip/reader_fixture.h"

namespace vantrel::test {
namespace {

namespace attribute = platform::attribute;

class Extraction : public ReaderTest {};

TEST_F(Extraction, StoredDeflatedEmptyAndFolders) {
    Extract({{.name = "a.txt", .content = "alpha"},
             {.name = "Sub/Deep/b.txt", .content = Prose(100000), .method = 8},
             {.name = "empty", .content = ""},
             {.name = "None/", .content = "", .external = 0x10}});
    EXPECT_EQ(Restored(),
              (Strings{"None\\", "Sub\\", "Sub\\Deep\\", "Sub\\Deep\\b.txt", "a.txt", "empty"}));
    EXPECT_EQ(Content("a.txt"), "alpha");
    EXPECT_EQ(Content("Sub\\Deep\\b.txt"), Prose(100000));
    EXPECT_EQ(result.entries, 4u);
    EXPECT_EQ(result.failed, 0);
    EXPECT_TRUE(events.Texts(MessageKind::kWarning).empty());
}

TEST_F(Extraction, DescriptorsWithoutSignature) {
    Extract({{.name = "a", .content = Prose(5000), .method = 8, .flags = 8},
             {.name = "b", .content = "beta", .flags = 8}});
    EXPECT_EQ(Content("a"), Prose(5000));
    EXPECT_EQ(Content("b"), "beta");
    EXPECT_TRUE(events.Texts(MessageKind::kWarning).empty());
}

TEST_F(Extraction, PrefixedArchive) {
    BuiltArchive archive;
    archive.prefix = "a program " + std::string(3000, 'x');
    archive.entries = {{.name = "a", .content = "alpha"}};
    ExtractAll(archive);
    EXPECT_EQ(Content("a"), "alpha");
}

TEST_F(Extraction, MissingDestinationIsMade) {
    options.destination = "C:\\Out\\Two\\Three";
    Extract({{.name = "a", .content = "x"}});
    EXPECT_TRUE(files.Exists("C:\\Out\\Two\\Three\\a"));
}

TEST_F(Extraction, WrongChecksumLeavesNothing) {
    Extract({{.name = "bad", .content = "x", .crc = 1}, {.name = "good", .content = "y"}});
    EXPECT_EQ(Restored(), Strings{"good"});
    EXPECT_EQ(Warning(), "bad is not restored: its checksum is wrong.");
    EXPECT_EQ(result.failed, 1);
    EXPECT_EQ(result.entries, 1u);
}

TEST_F(Extraction, FailedCheckKeepsTheOldFile) {
    files.Put("C:\\Out\\small", "old");
    files.Put("C:\\Out\\large", "old too");
    Extract({{.name = "small", .content = "x", .crc = 1},
             {.name = "large", .content = Noise(17 << 20), .crc = 1}});
    EXPECT_EQ(Restored(), (Strings{"large", "small"}));
    EXPECT_EQ(Content("small"), "old");
    EXPECT_EQ(Content("large"), "old too");
    EXPECT_EQ(result.failed, 2);
}

TEST_F(Extraction, LyingSizes) {
    const std::string text = Prose(5000);
    Extract({{.name = "less", .content = text, .method = 8, .size = 5001},
             {.name = "more", .content = text, .method = 8, .size = 4999},
             {.name = "zero", .content = text, .method = 8, .size = 0},
             {.name = "cut", .content = text, .method = 8, .packed_size = 20},
             {.name = "stored", .content = text, .size = 10},
             {.name = "large", .content = text, .method = 8, .size = 17 << 20}});
    EXPECT_TRUE(Restored().empty());
    EXPECT_EQ(result.failed, 6);
}

TEST_F(Extraction, EncryptedAndUnknownMethodsAreNamed) {
    Extract({{.name = "a", .content = "x", .flags = 1},
             {.name = "b", .content = "x", .method = 99, .flags = 1},
             {.name = "c", .content = "x", .method = 14},
             {.name = "d", .content = "x", .method = 12},
             {.name = "e", .content = "x", .method = 77},
             {.name = "f", .content = "x", .flags = 0x41}});
    EXPECT_EQ(events.Texts(MessageKind::kWarning),
              (Strings{"a is not restored: it is encrypted (ZipCrypto).",
                       "b is not restored: it is encrypted (AES).",
                       "c is not restored: its compression method 14 (LZMA) is not supported.",
                       "d is not restored: its compression method 12 (BZIP2) is not supported.",
                       "e is not restored: its compression method 77 (unknown) is not supported.",
                       "f is not restored: it is encrypted (strong encryption)."}));
    EXPECT_EQ(result.failed, 6);
    EXPECT_TRUE(Restored().empty());
}

TEST_F(Extraction, NamesThatLeadOutAreRefusedAndReported) {
    Extract(
        EntriesNamed({"../evil", "C:\\evil", "a/../../evil", "\\\\server\\share\\evil", "good"}));
    EXPECT_EQ(Restored(), Strings{"good"});
    EXPECT_FALSE(files.Exists("C:\\evil"));
    EXPECT_EQ(events.Texts(MessageKind::kWarning).size(), 4u);
    EXPECT_EQ(events.messages[0].entry, 1);
    EXPECT_EQ(events.messages[0].path, "../evil");
    EXPECT_EQ(result.failed, 4);
}

TEST_F(Extraction, ChangedNamesAreReportedAndRestored) {
    Extract({{.name = "/nul.txt", .content = "x"}});
    EXPECT_EQ(Restored(), Strings{"_nul.txt"});
    EXPECT_EQ(Warning(),
              "/nul.txt is restored as _nul.txt: the slash before it is dropped, the system's own "
              "name gets \"_\" before it.");
    EXPECT_EQ(result.failed, 0);
}

TEST_F(Extraction, SecondEntryOfOneNameGetsANumber) {
    Extract({{.name = "a.txt", .content = "1"},
             {.name = "A.TXT", .content = "2"},
             {.name = "a (2).txt", .content = "3"},
             {.name = "xx:y", .content = "4"},
             {.name = "xx_y", .content = "5"}});
    EXPECT_EQ(Content("a.txt"), "1");
    EXPECT_EQ(Content("A (2).TXT"), "2");
    EXPECT_EQ(Content("a (2) (2).txt"), "3");
    EXPECT_EQ(Content("xx_y"), "4");
    EXPECT_EQ(Content("xx_y (2)"), "5");
    EXPECT_EQ(result.failed, 0);
}

TEST_F(Extraction, FileWhereAFolderIsAndTheReverse) {
    files.PutFolder("C:\\Out\\folder");
    files.Put("C:\\Out\\file", "old");
    Extract(EntriesNamed({"folder", "file/a", "b", "b/c", "d/e", "d"}));
    EXPECT_EQ(Restored(), (Strings{"b", "d\\", "d\\e", "file", "folder\\"}));
    EXPECT_EQ(Content("file"), "old");
    EXPECT_EQ(result.failed, 4);
}

TEST_F(Extraction, LinkEntriesAreNeverMade) {
    Extract({{.name = "l", .content = "C:\\", .host = 3, .external = 0120777u << 16},
             {.name = "j/", .content = "", .external = 0x410}});
    EXPECT_TRUE(Restored().empty());
    EXPECT_EQ(result.failed, 2);
}

TEST_F(Extraction, LinkBelowTheDestinationIsNotEnteredNorWrittenThrough) {
    files.PutFolder("C:\\Out\\link");
    files.Put("C:\\Out\\file", "old");
    files.Change("C:\\Out\\link", [](platform::FileInfo& info) { info.is_link = true; });
    files.Change("C:\\Out\\file", [](platform::FileInfo& info) { info.is_link = true; });
    Extract({{.name = "link/a", .content = "x"},
             {.name = "link/b/c", .content = "x"},
             {.name = "file", .content = "new"}});
    EXPECT_EQ(Restored(), (Strings{"file", "link\\"}));
    EXPECT_EQ(Content("file"), "old");
    EXPECT_EQ(result.failed, 3);
}

TEST_F(Extraction, TheDestinationItselfMayBeALink) {
    files.PutFolder("C:\\Out");
    files.Change("C:\\Out", [](platform::FileInfo& info) { info.is_link = true; });
    Extract({{.name = "a", .content = "x"}, {.name = "s/b", .content = "x"}});
    EXPECT_EQ(Restored(), (Strings{"a", "s\\", "s\\b"}));
}

TEST_F(Extraction, FolderMetByItsShortNameIsNotEntered) {
    files.PutFolder("C:\\Out\\Long folder name");
    files.Alias("C:\\Out\\LONGFO~1", "C:\\Out\\Long folder name");
    Extract({{.name = "longfo~1/a", .content = "x"}});
    EXPECT_EQ(Restored(), (Strings{"Long folder name\\", "longfo~1_\\", "longfo~1_\\a"}));
    EXPECT_NE(Warning().find("longfo~1_"), std::string::npos);
}

TEST_F(Extraction, FileMetByItsShortNameIsNotReplaced) {
    files.Put("C:\\Out\\Long file name.txt", "old");
    files.Alias("C:\\Out\\LONGFI~1.TXT", "C:\\Out\\Long file name.txt");
    Extract({{.name = "LONGFI~1.TXT", .content = "new"}});
    EXPECT_EQ(Content("Long file name.txt"), "old");
    EXPECT_EQ(Content("LONGFI~1.TXT_"), "new");
    EXPECT_NE(Warning().find("LONGFI~1.TXT_"), std::string::npos);
}

TEST_F(Extraction, ProtectedTargetsAreReplaced) {
    for (const std::uint32_t bit : {attribute::kReadOnly, attribute::kHidden, attribute::kSystem}) {
        files.Put("C:\\Out\\a", "old and longer");
        files.Change("C:\\Out\\a", [&](platform::FileInfo& info) { info.attributes = bit; });
        Extract({{.name = "a", .content = "new"}});
        EXPECT_EQ(Content("a"), "new");
        EXPECT_EQ(files.Info("C:\\Out\\a").attributes, attribute::kArchive);
        EXPECT_EQ(Restored(), Strings{"a"});
        EXPECT_EQ(result.failed, 0);
    }
}

TEST_F(Extraction, TargetThatCannotBeReplacedKeepsDataAndAttributes) {
    files.Put("C:\\Out\\a", "old");
    files.Change("C:\\Out\\a",
                 [](platform::FileInfo& info) { info.attributes = attribute::kReadOnly; });
    FailCalls(files, {.name = "Replace"}, error_number::kPermissionDenied);
    Extract({{.name = "a", .content = "new"}});
    EXPECT_EQ(Content("a"), "old");
    EXPECT_EQ(files.Info("C:\\Out\\a").attributes, attribute::kReadOnly);
    EXPECT_EQ(Restored(), Strings{"a"});
    EXPECT_EQ(Warning(), "a is not restored: Permission denied.");
}

TEST_F(Extraction, OverlappingDataIsRefused) {
    Extract({{.name = "a", .content = "alpha"},
             {.name = "b", .content = "beta", .offset = 0},
             {.name = "c", .content = "gamma"},
             {.name = "d", .content = "x", .packed_size = 100000}});
    EXPECT_EQ(Restored(), Strings{"c"});
    EXPECT_EQ(result.failed, 3);
}

TEST_F(Extraction, DataInAFolderEntryIsReported) {
    Extract({{.name = "d/", .content = "data", .external = 0x10}});
    EXPECT_EQ(Restored(), Strings{"d\\"});
    EXPECT_EQ(Warning(), "d/ is a folder, and the data stored with it is left out.");
}

TEST_F(Extraction, LocalHeaderThatDisagreesIsWarnedAbout) {
    Extract({{.name = "a", .content = "alpha", .local_name = "../b"}});
    EXPECT_EQ(Restored(), Strings{"a"});
    EXPECT_EQ(Warning(), "a has another name in its local header; the directory's holds.");
    EXPECT_EQ(result.failed, 0);
}

TEST_F(Extraction, WhoDoesNotWantEachFileHearsOfWhatWentWrongOnly) {
    events.wants_each_file = false;
    Extract({{.name = "a", .content = "alpha", .local_name = "b"}, {.name = "c", .content = "x"}});
    EXPECT_EQ(Restored(), (Strings{"a", "c"}));
    EXPECT_EQ(Warning(), "a has another name in its local header; the directory's holds.");
    EXPECT_EQ(events.messages.size(), 1u);
}

TEST_F(Extraction, TheArchiveItselfIsNotReplaced) {
    options.destination = "C:\\";
    BuiltArchive archive;
    archive.entries = {{.name = "In.zip", .content = "x"}};
    ExtractAll(archive);
    EXPECT_EQ(files.Content("C:\\In.zip"), archive.Bytes());
    EXPECT_EQ(Warning(), "In.zip is not restored: the archive itself has its name.");
}

TEST_F(Extraction, MaskSelectsFiles) {
    options.mask = "*.txt";
    Extract({{.name = "s/a.txt", .content = "x"},
             {.name = "b.doc", .content = "x"},
             {.name = "Empty/", .content = ""}});
    EXPECT_EQ(Restored(), (Strings{"s\\", "s\\a.txt"}));
}

TEST_F(Extraction, NewFileTakesOneOpenAndNoLook) {
    Strings calls;
    std::mutex mutex;
    files.PutFolder("C:\\Out");
    files.before = [&](const std::string& call, const std::string& path) {
        const std::lock_guard lock(mutex);
        if (path == "C:\\Out\\s\\a") {
            calls.push_back(call);
        }
    };
    Extract({{.name = "s/a", .content = "x"}});
    EXPECT_EQ(calls, (Strings{"Open", "Write", "SetTimes", "Close"}));
}

TEST_F(Extraction, OneProcessorHasOneThread) {
    options.threads = 0;
    machine.process.processors = 1;
    std::mutex mutex;
    std::set<std::thread::id> threads;
    files.before = [&](const std::string&, const std::string&) {
        const std::lock_guard lock(mutex);
        threads.insert(std::this_thread::get_id());
    };
    std::vector<BuiltEntry> entries;
    for (int i = 0; i < 1000; ++i) {
        entries.push_back({.name = std::to_string(i), .content = "x"});
    }
    Extract(entries);
    EXPECT_EQ(threads.size(), 1u);
}

// The directory lists the data from its end to its beginning.
TEST_F(Extraction, VerifyChecksEachFileOnceInAnyOrder) {
    constexpr int kFiles = 3;
    constexpr int kRecord = 30 + 4 + 1;  // local header, name, content
    std::vector<BuiltEntry> entries;
    for (int i = 0; i < kFiles; ++i) {
        const int other = kFiles - 1 - i;
        entries.push_back({.name = std::to_string(1000 + i),
                           .content = "x",
                           .crc = 1,
                           .offset = other * kRecord,
                           .local_name = std::to_string(1000 + other)});
    }
    options.verify_only = true;
    options.threads = 1;
    Extract(entries);
    const Strings warnings = events.Texts(MessageKind::kWarning);
    EXPECT_EQ(warnings.size(), static_cast<std::size_t>(kFiles));
    EXPECT_EQ(std::set<std::string>(warnings.begin(), warnings.end()).size(), warnings.size());
}

TEST_F(Extraction, VerificationReportsWhatCannotBeRestored) {
    options.verify_only = true;
    Extract({{.name = "../a", .content = "x"}, {.name = "b", .content = "x", .crc = 1}});
    EXPECT_EQ(events.Texts(MessageKind::kWarning),
              (Strings{"../a cannot be restored: it leads out of its folder with \"..\".",
                       "b cannot be restored: its checksum is wrong."}));
}

TEST_F(Extraction, DamagedDirectoryRestoresWhatWasReadAndFails) {
    BuiltArchive archive;
    archive.entries = {{.name = "a", .content = "x"}, {.name = "b", .content = "y"}};
    std::string bytes = archive.Bytes();
    bytes[bytes.rfind("PK\1\2")] = 'x';
    files.Put(options.archive, bytes);
    EXPECT_EQ(Run(), RunOutcome::kFailed);
    EXPECT_EQ(Restored(), Strings{"a"});
    ASSERT_EQ(events.Texts(MessageKind::kError).size(), 1u);
    EXPECT_NE(events.Texts(MessageKind::kError)[0].find("after 1 entry"), std::string::npos);
    EXPECT_EQ(events.overall.back(), 100);
}

}  // namespace
}  // namespace vantrel::test
