// Control characters of names in the texts that the engine makes: a NUL would end a text early, a
// line break would begin a record of the log, an escape would be carried out by a terminal.
#include "tests/zip/reader_fixture.h"

namespace vantrel::test {
namespace {

using namespace std::string_literals;

class RestoreTexts : public ReaderTest {};

TEST_F(RestoreTexts, NulDoesNotEndTheWarning) {
    Extract({{.name = "good\0bad"s, .content = "x"}});
    EXPECT_EQ(Warning(), "good\\x00bad is not restored: its name holds a NUL character.");
    EXPECT_EQ(events.messages.back().path, "good\0bad"s) << "the path itself is not escaped";
}

TEST_F(RestoreTexts, LineBreakAndEscapeBecomeVisible) {
    Extract({{.name = "a\r\n\x1b[2Jb", .content = "x"}});
    EXPECT_EQ(Warning(),
              "a\\x0d\\x0a\\x1b[2Jb is restored as a___[2Jb: characters that a file name cannot "
              "hold become \"_\".");
}

TEST_F(RestoreTexts, NameThatAFileCanHaveIsEscapedInItsMessageOnly) {
    // With the flag of UTF-8.
    Extract({{.name = "\xC2\x85\x7F\xC3\xA4.txt", .content = "x", .flags = 0x0800}});
    EXPECT_EQ(events.Texts(MessageKind::kInformation),
              Strings{"Extracting C:\\Out\\\\u0085\\x7f\xC3\xA4.txt"});
    EXPECT_EQ(Content("\xC2\x85\x7F\xC3\xA4.txt"), "x");
}

TEST_F(RestoreTexts, FileIsNamedBeforeItsDataIsRead) {
    Extract({{.name = "a", .content = "alpha", .crc = 1}});
    EXPECT_EQ(events.Texts(MessageKind::kInformation), Strings{"Extracting C:\\Out\\a"});
    EXPECT_EQ(events.Texts(MessageKind::kWarning),
              Strings{"a is not restored: its checksum is wrong."});
}

TEST_F(RestoreTexts, QuestionAboutAnEntry) {
    BuiltArchive archive;
    archive.entries = {{.name = "a\r\nb", .content = "alpha"}};
    files.Put(options.archive, archive.Bytes());
    FailCalls(files, {.name = "Write", .path = "C:\\Out"}, error_number::kDiskFull);
    events.questions = &questions;
    EXPECT_EQ(Run(), zip::RunOutcome::kCancelled);
    EXPECT_EQ(
        questions.asked,
        Strings{"The file system of drive C: takes no larger file: C:\\Out\\a\\x0d\\x0ab (391 MB "
                "free)."});
}

TEST_F(RestoreTexts, LastEntryOfADamagedDirectory) {
    BuiltArchive archive;
    archive.entries = {{.name = "a\0\r\n"s, .content = "x"}, {.name = "b", .content = "y"}};
    std::string bytes = archive.Bytes();
    bytes[bytes.rfind("PK\1\2")] = 'x';
    files.Put(options.archive, bytes);
    EXPECT_EQ(Run(), zip::RunOutcome::kFailed);
    const std::string& text = events.messages.back().text;
    EXPECT_NE(text.find("the last one a\\x00\\x0d\\x0a; "), std::string::npos) << text;
}

class BackupTexts : public WriterTest {};

TEST_F(BackupTexts, NamesBecomeVisible) {
    files.Put("C:\\Data\\a.txt", "x");
    files.Put("C:\\Data\\b\x7F.txt", "x");
    // As a host lists it; Windows has no such names.
    files.Change("C:\\Data\\a.txt", [](platform::FileInfo& info) { info.name = "a\x1b.txt"; });
    EXPECT_EQ(Run(), zip::RunOutcome::kComplete);
    EXPECT_EQ(
        events.Texts(MessageKind::kWarning),
        Strings{
            "Skipped a file that cannot be read: C:\\Data\\a\\x1b.txt (Bad file name or number)."});
    EXPECT_EQ(events.Texts(MessageKind::kInformation), Strings{"Adding C:\\Data\\b\\x7f.txt"});
    EXPECT_EQ(Archive().Names(), Strings{"b\x7F.txt"});
}

}  // namespace
}  // namespace vantrel::test
