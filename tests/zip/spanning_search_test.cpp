// Archives on several disks of which some are lost or damaged: what a search restores.
#include <algorithm>
#include <set>

#include "tests/support/matchers.h"
#include "tests/zip/spanning_read_fixture.h"
#include "tests/zip/zip_builder.h"

namespace vantrel::test {
namespace {

class SpanningSearch : public SpanningRead {
  protected:
    SpanningSearch() {
        extract.search = true;
        extract.use_local_headers = true;
    }
    // Files of many sizes; `count` small ones make a directory that lies on several disks.
    void MakeSetOf(int count, std::uint64_t disk_size) {
        for (int i = 0; i < 10; ++i) {
            files.Put("C:\\Data\\f" + std::to_string(i),
                      Noise(300 + static_cast<std::size_t>(i) * 90, static_cast<std::uint64_t>(i)));
        }
        files.Put("C:\\Data\\prose", Prose(9000));
        files.Put("C:\\Data\\empty", "");
        for (int i = 0; i < count; ++i) {
            files.Put("C:\\Data\\small" + std::to_string(i), std::to_string(i));
        }
        MakeSet(disk_size);
        set = ReadSet(Volumes());
    }
    // Every file of which nothing is on a missing disk is restored, and nothing wrong.
    void ExpectIntactOnes() {
        std::size_t restored = 0;
        for (const auto& [name, extent] : set.disks) {
            const bool lost = std::any_of(
                feeder.missing.begin(), feeder.missing.end(),
                [disks = extent](int disk) { return disks.first <= disk && disk <= disks.second; });
            const std::string path = "C:\\Out\\" + name;
            EXPECT_TRUE(lost || files.Exists(path)) << name;
            if (files.Exists(path)) {
                EXPECT_TRUE(files.Content(path) == set.files.at(name)) << name;
                ++restored;
            }
        }
        EXPECT_GT(restored, 0u);
        EXPECT_EQ(files.Files("C:\\Out").size(), restored);
        files.Remove("C:\\Out");
    }
    void ExpectWithout(const std::set<int>& missing, int in_drive) {
        feeder.missing = missing;
        box.Insert(in_drive);
        ASSERT_EQ(Restore(), RunOutcome::kComplete)
            << ::testing::PrintToString(restored_events.Texts(MessageKind::kError));
        ExpectIntactOnes();
    }

    SetContents set;
};

TEST_F(SpanningSearch, WithoutTheLastDiskTheOthersAreSearched) {
    MakeSetOf(0, 2500);
    const int last = feeder.disks - 1;
    ASSERT_GE(last, 3);
    ExpectWithout({last}, 0);
    EXPECT_EQ(feeder.Wants(), (Strings{"last", "2", "3", "4", "5", "6", "1", "2", "3", "4"}));
    EXPECT_EQ(Feeder::Note(feeder.asked.at(1)),
              "The disk in the drive is another one. The number of disks is unknown: the search "
              "ends when two in succession are left out.");
    EXPECT_THAT(restored_events.Texts(MessageKind::kWarning),
                Contains("The archive is incomplete: its last disk is missing. It was searched for "
                         "its files."));
}

TEST_F(SpanningSearch, AnyDiskAndTheLastAreMissing) {
    MakeSetOf(0, 2500);
    const int last = feeder.disks - 1;
    for (int missing = 0; missing + 1 < last; ++missing) {
        ExpectWithout({missing, last}, (missing + 1) % last);
    }
}

// The directory takes several disks.
TEST_F(SpanningSearch, AnyDiskIsMissing) {
    MakeSetOf(120, 3000);
    ASSERT_LT(set.directory_disk + 1, static_cast<unsigned>(feeder.disks));
    for (int missing = 0; missing < feeder.disks; ++missing) {
        ExpectWithout({missing}, missing == 0 ? 1 : 0);
        ASSERT_FALSE(HasFailure()) << missing;
    }
}

TEST_F(SpanningSearch, DisksOfManySizesWithoutTheLast) {
    for (std::uint64_t size = 600; size < 3000; size += 170) {
        files.Remove("C:\\Data");
        MakeSetOf(3, size);
        ExpectWithout({feeder.disks - 1}, 0);
        ASSERT_FALSE(HasFailure()) << size;
    }
}

TEST_F(SpanningSearch, DamagedDirectoryCostsNothing) {
    MakeSetOf(120, 3000);
    const auto directory = static_cast<std::size_t>(set.directory_disk);
    std::string& bytes = box.disks[directory + 1].files.at(options.archive);
    bytes[bytes.find("PK\1\2", 1)] = '?';
    ExpectWithout({}, 0);
    EXPECT_THAT(restored_events.Texts(MessageKind::kWarning),
                Contains(StartsWith("The archive's directory is damaged: it ends after ")));
}

TEST_F(SpanningSearch, FilesOnTheLastDiskAreFound) {
    int last = 0;
    const auto begins_there = [&last](const auto& file) { return file.second.first == last; };
    for (std::uint64_t size = 2500; last == 0 || std::ranges::none_of(set.disks, begins_there);
         size += 100) {
        MakeSetOf(0, size);
        last = feeder.disks - 1;
        ASSERT_GT(last, 0);
    }
    const auto bytes = [&]() -> std::string& {
        return box.disks.at(static_cast<std::size_t>(last)).files.at(options.archive);
    };
    const std::size_t first = bytes().find("PK\1\2");
    for (const std::size_t record : {bytes().find("PK\1\2", first + 1), first}) {
        ExpectWithout({}, 0);
        box.Eject();
        bytes()[record] = '?';
        feeder.asked.clear();
        ExpectWithout({}, 0);
        EXPECT_EQ(std::ranges::count(feeder.Wants(), "last"), 1);
        EXPECT_THAT(restored_events.Texts(MessageKind::kWarning),
                    Contains(StartsWith("The archive's directory is damaged: it ends after ")));
    }
}

// Each read of a disk in turn; the last one that fails is the one after which there are no more.
TEST_F(SpanningSearch, ReadThatFailsOnceCostsNothing) {
    MakeSetOf(0, 2500);
    for (int failing = 1;; ++failing) {
        FailAtRead(failing, error_number::kDeviceIo);
        ExpectWithout({feeder.disks - 1}, 0);
        files.before = nullptr;
        ASSERT_FALSE(HasFailure()) << failing;
        if (reads < failing) {
            break;
        }
    }
}

// Each sector of each disk, the first of which identifies it.
TEST_F(SpanningSearch, UnreadableSectorCostsTheFilesInWhichItLies) {
    constexpr std::uint64_t kSector = 512;
    MakeSetOf(0, 5000);
    feeder.missing = {feeder.disks - 1};
    box.Insert(0);
    ASSERT_EQ(Restore(), RunOutcome::kComplete);
    const auto files_restored = [this] { return files.Files("C:\\Out").size(); };
    const auto all = files_restored();
    const Strings wants = feeder.Wants();
    for (int disk = 0; disk + 1 < feeder.disks; ++disk) {
        for (std::uint64_t bad = 0; bad < 5000; bad += kSector) {
            files.Remove("C:\\Out");
            files.unreadable = [&](const std::string& path, std::uint64_t begin,
                                   std::uint64_t end) {
                return path.starts_with("A:") && box.Inserted() == disk && begin < bad + kSector &&
                       bad < end;
            };
            box.Insert(0);
            EXPECT_EQ(Restore(), RunOutcome::kComplete) << disk << " " << bad;
            EXPECT_EQ(feeder.Wants(), wants) << disk << " " << bad;
            EXPECT_GE(files_restored(), all - 3) << disk << " " << bad;
        }
    }
}

TEST_F(SpanningSearch, UndamagedSetIsNotSearched) {
    MakeSetOf(0, 2500);
    ExpectWithout({}, 0);
    EXPECT_THAT(restored_events.Texts(MessageKind::kWarning), IsEmpty());
}

TEST_F(SpanningSearch, CancelAtEveryPromptEndsTheRun) {
    MakeSetOf(0, 2500);
    feeder.missing = {feeder.disks - 1};
    box.Insert(0);
    ASSERT_EQ(Restore(), RunOutcome::kComplete);
    files.Remove("C:\\Out");
    const std::size_t prompts = feeder.asked.size();
    for (std::size_t prompt = 2; prompt <= prompts; ++prompt) {
        box.Insert(0);
        feeder.at.clear();
        feeder.at[prompt] = [] { return false; };
        EXPECT_EQ(Restore(), RunOutcome::kCancelled) << prompt;
        EXPECT_EQ(feeder.asked.size(), prompt);
        files.Remove("C:\\Out");
    }
}

// A file that is cut off, on a disk that might hold a part of a set.
TEST_F(SpanningSearch, ArchiveInOneFileOnARemovableDriveIsSearchedAfterContinue) {
    BuiltArchive archive;
    archive.entries = {{.name = "a", .content = "alpha"}, {.name = "b", .content = "beta"}};
    const std::string bytes = archive.Bytes();
    feeder.missing = {feeder.disks - 1};
    box.Eject();
    box.disks[0].files[options.archive] = bytes.substr(0, bytes.find("PK\1\2"));
    box.Insert(0);
    EXPECT_EQ(Restore(), RunOutcome::kComplete);
    EXPECT_EQ(feeder.Wants(), Strings{"last"});
    EXPECT_EQ(files.Content("C:\\Out\\a"), "alpha");
    EXPECT_EQ(files.Content("C:\\Out\\b"), "beta");
}

}  // namespace
}  // namespace vantrel::test
