// Archives made by other people's programs and by our own writer, on a real disk.
#include "tests/zip/reader_fixture.h"

namespace vantrel::test {
namespace {

namespace attribute = platform::attribute;

class OtherWriters : public RealFilesTest {
  protected:
    OtherWriters() {
        machine.PutFile("C:\\Data\\Docs\\noise", Noise(3000000));
        machine.MakeFolders("C:\\Data\\Empty\\Deeper");
        options.archive = "C:\\In.zip";
    }
    // Makes the archive with `command` in the data folder, the archive's host path for "@".
    void MakeWith(const std::string& command) {
        const std::string start =
            "cd " + Quoted("C:\\Data") + " && rm -f " + Quoted(options.archive) + " && ";
        ASSERT_EQ(Shell(start + command, options.archive), 0) << command;
    }
    void Extract() {
        const auto result =
            zip::ExtractArchive(machine.machine(), {options.archive, "C:\\Out"}, events);
        EXPECT_EQ(result.outcome, RunOutcome::kComplete);
        EXPECT_EQ(result.failed, 0);
        EXPECT_TRUE(events.Texts(zip::MessageKind::kWarning).empty());
    }
    // Compares the host's folders with a tool that knows nothing of us.
    void ExpectSameTree() { EXPECT_EQ(Shell("diff -r @ " + Quoted("C:\\Data"), "C:\\Out"), 0); }
    platform::FileInfo Info(const std::string& path) {
        return machine.files().Find(path).value_or(platform::FileInfo{});
    }
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
    ASSERT_EQ(zip::WriteArchive(machine.machine(), options, events).outcome, RunOutcome::kComplete);
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
