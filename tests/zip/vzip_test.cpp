// What `vzip` prints. A terminal executes control characters, so names are printed with escapes.
#include "tools/vzip_commands.h"

#include <libdeflate.h>
#include <unistd.h>

#include <cstdio>
#include <memory>

#include "common/product.h"
#include "tests/zip/reader_fixture.h"

namespace vantrel::test {
namespace {

using namespace std::string_literals;

class Vzip : public ReaderTest {
  protected:
    using Command = int (*)(const platform::Machine&, const std::vector<std::string>&);

    // Returns the exit code; `out` and `err` hold what was printed.
    int Call(Command command, const std::vector<std::string>& arguments) {
        ::testing::internal::CaptureStdout();
        ::testing::internal::CaptureStderr();
        const int exit_code = command(Machine(), arguments);
        out = ::testing::internal::GetCapturedStdout();
        err = ::testing::internal::GetCapturedStderr();
        return exit_code;
    }
    void PutArchive(const std::vector<BuiltEntry>& entries) {
        archive.entries = entries;
        files.Put(tools::PlatformPath("/a.zip"), archive.Bytes());
    }

    BuiltArchive archive;
    std::string out;
    std::string err;
};

TEST_F(Vzip, ListEscapesControlCharactersOfNames) {
    PutArchive({{.name = "a\0b"s, .content = "x"},
                {.name = "\x1b[2J\r\n        1 forged", .content = "yz"},
                {.name = "\xC3\xA4", .content = "", .flags = 0x0800}});
    EXPECT_EQ(Call(tools::ListArchive, {"/a.zip"}), tools::kExitComplete);
    EXPECT_EQ(out,
              "           1  a\\x00b\n"
              "           2  \\x1b[2J\\x0d\\x0a        1 forged\n"
              "           0  \xC3\xA4\n");
    EXPECT_EQ(err, "");
}

TEST_F(Vzip, ListEscapesTheLastNameOfADamagedDirectory) {
    PutArchive({{.name = "a\x1b"}, {.name = "b"}});
    std::string bytes = archive.Bytes();
    bytes[bytes.rfind("PK\1\2")] = 'x';
    files.Put(tools::PlatformPath("/a.zip"), bytes);
    EXPECT_EQ(Call(tools::ListArchive, {"/a.zip"}), tools::kExitSomeSkipped);
    EXPECT_NE(err.find("the last one a\\x1b; "), std::string::npos) << err;
}

TEST_F(Vzip, ExtractEscapesNamesInItsWarnings) {
    PutArchive({{.name = "a\0b"s, .content = "x"}, {.name = "c\x1b[2J", .content = "y"}});
    EXPECT_EQ(Call(tools::ExtractFiles, {"/a.zip", "/out"}), tools::kExitSomeSkipped);
    EXPECT_NE(err.find("a\\x00b is not restored: "), std::string::npos) << err;
    EXPECT_NE(err.find("c\\x1b[2J is restored as "), std::string::npos) << err;
    EXPECT_EQ(err.find('\x1b'), std::string::npos);
    EXPECT_EQ(out, "1 entry, 1 failed\n");
}

TEST_F(Vzip, RefusesUnknownOptionsAndMissingValues) {
    EXPECT_THROW(tools::CreateArchive(Machine(), {"a", "b", "--loud"}), std::invalid_argument);
    EXPECT_THROW(tools::CreateArchive(Machine(), {"a", "b", "--level"}), std::invalid_argument);
    EXPECT_THROW(tools::CreateArchive(Machine(), {"a", "b", "--level", "10"}),
                 std::invalid_argument);
    EXPECT_THROW(tools::ExtractFiles(Machine(), {"a", "b", "--threads", "0"}),
                 std::invalid_argument);
    EXPECT_THROW(tools::ExtractFiles(Machine(), {"a"}), std::invalid_argument);
    EXPECT_THROW(tools::ListArchive(Machine(), {}), std::invalid_argument);
}

class VzipCreate : public Vzip {
  protected:
    VzipCreate() {
        files.Put(tools::PlatformPath("/data/a"), Prose(50'000));
        EXPECT_EQ(Call(tools::CreateArchive, {"/first.zip", "/data", "--fresh"}),
                  tools::kExitComplete);
    }
    bool Reused() const { return err.find("(100 %)") != std::string::npos; }
};

TEST_F(VzipCreate, ReusesTheArchiveThatItReplaces) {
    EXPECT_EQ(err.find("earlier archive"), std::string::npos) << "with --fresh";
    EXPECT_EQ(Call(tools::CreateArchive, {"/first.zip", "/data"}), tools::kExitComplete);
    EXPECT_TRUE(Reused()) << err;
}

TEST_F(VzipCreate, ReusesTheEarlierArchiveThatIsNamed) {
    EXPECT_EQ(Call(tools::CreateArchive, {"/second.zip", "/data", "--earlier", "/first.zip"}),
              tools::kExitComplete);
    EXPECT_TRUE(Reused()) << err;
    EXPECT_EQ(files.Content(tools::PlatformPath("/second.zip")),
              files.Content(tools::PlatformPath("/first.zip")));
}

TEST_F(VzipCreate, FreshReusesNone) {
    EXPECT_EQ(Call(tools::CreateArchive, {"/first.zip", "/data", "--fresh"}), tools::kExitComplete);
    EXPECT_FALSE(Reused()) << err;
    EXPECT_THROW(tools::CreateArchive(Machine(), {"/a.zip", "/data", "--fresh", "--earlier", "x"}),
                 std::invalid_argument);
}

TEST_F(VzipCreate, QuietPrintsNothing) {
    EXPECT_EQ(Call(tools::CreateArchive, {"/first.zip", "/data", "--quiet"}), tools::kExitComplete);
    EXPECT_EQ(err + out, "");
}

TEST_F(Vzip, VersionNamesProgramAndCompressor) {
    ::testing::internal::CaptureStdout();
    EXPECT_EQ(tools::ShowVersion(), tools::kExitComplete);
#ifdef VANTREL_SYSTEM_LIBDEFLATE
    const std::string level = ", level 7\n";
#else
    const std::string level = ", tuned level\n";
#endif
    EXPECT_EQ(::testing::internal::GetCapturedStdout(),
              "vzip " + product::VersionText() + "\nlibdeflate " LIBDEFLATE_VERSION_STRING + level);
}

TEST_F(Vzip, CreateEscapesNamesInItsWarnings) {
    files.Put(tools::PlatformPath("/data/a"), "x");
    // As a host lists it; Windows has no such names.
    files.Put(tools::PlatformPath("/data/b"), "y");
    files.Change(tools::PlatformPath("/data/b"),
                 [](platform::FileInfo& info) { info.name = "b\x1b[2J"; });
    EXPECT_EQ(Call(tools::CreateArchive, {"/b.zip", "/data", "--quiet"}), tools::kExitSomeSkipped);
    EXPECT_NE(err.find("b\\x1b[2J (Bad file name or number)."), std::string::npos) << err;
    EXPECT_EQ(err.find('\x1b'), std::string::npos);
}

// An answer that is none of the letters is asked for again.
TEST_F(Vzip, AnswersAreLettersInEitherCase) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> input(std::tmpfile(), std::fclose);
    std::fputs("yes\n\nR\nQ\n", input.get());
    std::rewind(input.get());
    const int terminal = dup(fileno(stdin));
    dup2(fileno(input.get()), fileno(stdin));
    EXPECT_EQ(Call(tools::ExtractFiles, {"/missing.zip", "/out", "--disks"}), tools::kExitFailed);
    dup2(terminal, fileno(stdin));
    close(terminal);
    std::size_t questions_asked = 0;
    for (std::size_t at = err.find("[q]uit? "); at != std::string::npos;
         at = err.find("[q]uit? ", at + 1)) {
        ++questions_asked;
    }
    EXPECT_EQ(questions_asked, 4u) << err;
}

}  // namespace
}  // namespace vantrel::test
