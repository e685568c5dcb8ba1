// Archives made by other people's programs and by our own writer, on a real disk.
#include <cstdlib>

#include "tests/zip/reader_fixture.h"

namespace vantrel::test {
namespace {

namespace attribute = platform::attribute;
using zip::RunOutcome;

class OtherWriters : public ::testing::Test {
  protected:
    OtherWriters() {
        machine.PutFile("C:\\Data\\a.txt", "first");
        machine.PutFile("C:\\Data\\empty.txt", "");
        machine.PutFile("C:\\Data\\Docs\\prose.txt", Prose(70000));
        machine.PutFile("C:\\Data\\Docs\\noise", Noise(3000000));
        machine.PutFile("C:\\Data\\\xC3\xA4\xE2\x82\xAC.txt", "umlaut and euro");
        machine.MakeFolders("C:\\Data\\Empty\\Deeper");
        options.archive = "C:\\In.zip";
        options.destination = "C:\\Out";
    }
    // Makes the archive with `command` in the data folder, the archive's host path for "@".
    void MakeWith(std::string command) {
        const std::string path = machine.HostPath(options.archive);
        command.replace(command.find('@'), 1, "'" + path + "'");
        command = "cd '" + machine.HostPath("C:\\Data") + "' && rm -f '" + path + "' && " + command;
        ASSERT_EQ(std::system((command + " >/dev/null").c_str()), 0) << command;
    }
    void Extract() {
        const auto result = zip::ExtractArchive(machine.machine(), options, events);
        EXPECT_EQ(result.outcome, RunOutcome::kComplete);
        EXPECT_EQ(result.failed, 0);
        EXPECT_TRUE(events.Texts(zip::MessageKind::kWarning).empty());
    }
    // Compares the host's folders with a tool that knows nothing of us.
    void ExpectSameTree() {
        const std::string command =
            "diff -r '" + machine.HostPath("C:\\Data") + "' '" + machine.HostPath("C:\\Out") + "'";
        EXPECT_EQ(std::system(command.c_str()), 0);
    }
    platform::FileInfo Info(const std::string& path) {
        return machine.files().Find(path).value_or(platform::FileInfo{});
    }

    TestMachine machine;
    zip::ExtractOptions options;
    Recorder events;
};

TEST_F(OtherWriters, InfoZip) {
    for (const char* command :
         {"zip -qr @ .", "zip -qr -0 @ .", "zip -qr -fz @ .", "zip -qr - . | tee @"}) {
        MakeWith(command);
        Extract();
        ExpectSameTree();
    }
}

TEST_F(OtherWriters, SevenZip) {
    MakeWith("7zz a -tzip @ .");
    Extract();
    ExpectSameTree();
}

TEST_F(OtherWriters, SevenZipsDeflate64WithItsLongMatchesAndFarDistances) {
    const std::string far = Noise(50000);
    machine.PutFile("C:\\Data\\far", far + far + Noise(65000, 2) + far);
    machine.PutFile("C:\\Data\\long", std::string(300000, 'z') + Prose(300000));
    MakeWith("7zz a -tzip -mm=Deflate64 -mx=9 @ .");
    Extract();
    ExpectSameTree();
}

TEST_F(OtherWriters, Bsdtar) {
    MakeWith("bsdtar --format zip -cf @ .");
    Extract();
    ExpectSameTree();
}

TEST_F(OtherWriters, PythonsZipfile) {
    MakeWith(
        "python3 -c 'import shutil, sys; shutil.make_archive(sys.argv[1][:-4], \"zip\", \".\")'"
        " @");
    Extract();
    ExpectSameTree();
}

TEST_F(OtherWriters, UnixReadOnlyFileIsRestoredReadOnly) {
    machine.files().SetAttributes("C:\\Data\\a.txt", attribute::kReadOnly | attribute::kArchive);
    MakeWith("zip -qr @ .");
    Extract();
    EXPECT_NE(Info("C:\\Out\\a.txt").attributes & attribute::kReadOnly, 0u);
    EXPECT_EQ(Info("C:\\Out\\empty.txt").attributes & attribute::kReadOnly, 0u);
}

TEST_F(OtherWriters, OurOwnRoundTripKeepsTimesAttributesAndEmptyFolders) {
    constexpr platform::Ticks kOdd = 133444736001234567;
    platform::FileSystem& files = machine.files();
    files.SetAttributes("C:\\Data\\a.txt", attribute::kReadOnly | attribute::kHidden);
    files.SetTimes("C:\\Data\\Docs\\noise", {kOdd, kOdd + 1, 0});
    files.SetTimes("C:\\Data\\Empty\\Deeper", {kOdd + 2, kOdd + 3, 0});
    zip::WriterOptions writing;
    writing.archive = options.archive;
    writing.source = {"C:\\Data", "*.*", true};
    ASSERT_EQ(zip::WriteArchive(machine.machine(), writing, events).outcome, RunOutcome::kComplete);
    // Twice: into nothing, and over what is there.
    for (int round = 0; round < 2; ++round) {
        Extract();
        ExpectSameTree();
        EXPECT_EQ(Info("C:\\Out\\a.txt").attributes, attribute::kReadOnly | attribute::kHidden);
        EXPECT_EQ(Info("C:\\Out\\empty.txt").attributes, attribute::kArchive);
        EXPECT_EQ(Info("C:\\Out\\Docs\\noise").times.modified, kOdd);
        EXPECT_EQ(Info("C:\\Out\\Empty\\Deeper").times.modified, kOdd + 2);
    }
}

}  // namespace
}  // namespace vantrel::test
