// Sets of disks on real folders, one for each disk, read by another program's reader.
#include <filesystem>

#include "tests/zip/spanning_fixture.h"

namespace vantrel::test {
namespace {

using zip::kChunkSize;

class SpanningOthers : public RealFilesTest {
  protected:
    // Free bytes of the real drive A:, as if it were so large.
    class SmallDrives : public TestDrives {
      public:
        explicit SmallDrives(TestMachine& machine) : machine_(machine) {}
        std::uint64_t size = 0;
        std::uint64_t FreeBytes(const std::string& folder) override {
            if (!folder.starts_with("A:")) {
                return TestDrives::FreeBytes(folder);
            }
            std::uint64_t used = 0;
            for (const std::string& name : machine_.Names("A:\\")) {
                used += std::filesystem::file_size(machine_.HostPath("A:\\" + name));
            }
            return size - std::min(size, used);
        }

      private:
        TestMachine& machine_;
    };
    // Moves the archive's file of the full disk aside under the name that other programs expect.
    class Collector : public zip::Questions {
      public:
        explicit Collector(SpanningOthers& test) : test_(test) {}
        bool AskRetry(const std::string& text) override {
            EXPECT_NE(text.find("insert disk"), std::string::npos) << text;
            return test_.MoveAside(false);
        }

      private:
        SpanningOthers& test_;
    };

    SpanningOthers() {
        machine.AddDrive('A', platform::drive_type::kRemovable);
        machine.MakeFolders("C:\\Set");
        machine.PutFile("C:\\Data\\Docs\\prose.txt", Prose(700000));
        machine.PutFile("C:\\Data\\big prose", Prose(2 * kChunkSize + 17));
        machine.PutFile("C:\\Data\\big noise", Noise(3 * kChunkSize + 17));
        options.archive = "A:\\Weekly.zip";
        options.spanning = true;
        events.questions = &collector;
    }
    bool MoveAside(bool last) {
        ++disks;
        std::string number = std::to_string(disks);
        number = number.size() < 2 ? "0" + number : number;
        const std::string name = last ? "Weekly.zip" : "Weekly.z" + number;
        return Shell("mv @ " + Quoted("C:\\Set\\" + name), "A:\\Weekly.zip") == 0;
    }
    void ExpectSet(std::uint64_t disk_size, int least, int most) {
        drives.size = disk_size;
        const platform::Machine with_disks = With({.drives = &drives}, machine.machine());
        ASSERT_EQ(zip::WriteArchive(with_disks, options, events).outcome, RunOutcome::kComplete);
        MoveAside(true);
        EXPECT_GE(disks, least);
        EXPECT_LE(disks, most);
        const std::string set = "C:\\Set\\Weekly.zip";
        EXPECT_EQ(Shell("(7zz t @ >" + Quoted("C:\\Set\\said") + ")", set), 0);
        EXPECT_EQ(Shell("grep '^Everything is Ok' @", "C:\\Set\\said"), 0);
        EXPECT_EQ(Shell("grep '^Volumes = " + std::to_string(disks) + "$' @", "C:\\Set\\said"), 0);
        const std::string out = Quoted("C:\\Set\\out");
        EXPECT_EQ(Shell("7zz x @ -o" + out, set), 0);
        EXPECT_EQ(Shell("diff -r @ " + out, "C:\\Data"), 0);
    }

    SmallDrives drives{machine};
    Collector collector{*this};
    int disks = 0;
};

TEST_F(SpanningOthers, ReadThreeDisks) { ExpectSet(3 * kChunkSize / 2, 3, 3); }
TEST_F(SpanningOthers, ReadFortyDisks) { ExpectSet(90'000, 40, 45); }

}  // namespace
}  // namespace vantrel::test
