// Archives on a real disk, read by other people's programs.
#include <gtest/gtest.h>

#include <string>

#include "tests/zip/writer_fixture.h"

namespace vantrel::test {
namespace {

using zip::kChunkSize;

class OtherReaders : public RealFilesTest {
  protected:
    OtherReaders() {
        machine.PutFile("C:\\Data\\Docs\\noise", Noise(70000));
        machine.PutFile("C:\\Data\\big prose", Prose(5 * kChunkSize + 17));
        machine.PutFile("C:\\Data\\big noise", Noise(3 * kChunkSize + 17));
        options.archive = "C:\\Backup\\Weekly.zip";
    }
    int Shell(const std::string& command) const {
        return RealFilesTest::Shell(command, options.archive);
    }
    void ExpectAllReadersContent() {
        EXPECT_EQ(Shell("unzip -tqq @"), 0);
        EXPECT_EQ(Shell("7zz t @"), 0);
        EXPECT_EQ(Shell("python3 -c 'import sys, zipfile; "
                        "sys.exit(zipfile.ZipFile(sys.argv[1]).testzip() is not None)' @"),
                  0);
    }
};

TEST_F(OtherReaders, ReadAnArchiveOfAllKinds) {
    for (const int level : {0, 1, 9}) {
        options.level = level;
        const auto result = zip::WriteArchive(machine.machine(), options, events);
        ASSERT_EQ(result.outcome, RunOutcome::kComplete);
        EXPECT_EQ(result.entries, 8u);
        ExpectAllReadersContent();
        EXPECT_EQ(ReadArchive(machine.Content(options.archive)).entries.size(), 8u);
    }
}

TEST_F(OtherReaders, ReadAnArchiveWithZip64) {
    MemoryFileSystem files;
    for (int i = 0; i < 65540; ++i) {
        files.Put("C:\\Data\\" + std::to_string(i), "");
    }
    const platform::Machine in_memory = WithFiles(machine.machine(), files);
    ASSERT_EQ(zip::WriteArchive(in_memory, options, events).outcome, RunOutcome::kComplete);
    machine.PutFile(options.archive, files.Content(options.archive));
    ExpectAllReadersContent();
}

TEST_F(OtherReaders, FindADamagedByte) {
    ASSERT_EQ(zip::WriteArchive(machine.machine(), options, events).outcome, RunOutcome::kComplete);
    std::string bytes = machine.Content(options.archive);
    bytes[bytes.size() / 2] ^= 1;
    machine.PutFile(options.archive, bytes);
    EXPECT_NE(Shell("unzip -tqq @ 2>/dev/null"), 0);
}

}  // namespace
}  // namespace vantrel::test
