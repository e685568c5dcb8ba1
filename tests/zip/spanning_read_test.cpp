// Listing and restoring archives on several disks.
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tests/zip/spanning_read_fixture.h"
#include "zip/pkunzip.h"

namespace vantrel::test {
namespace {

using zip::kChunkSize;

constexpr const char* kAnother = "The disk in the drive is another one.";

TEST_F(SpanningRead, AsksForTheLastDiskThenForEachInTurn) {
    PutFiles();
    ASSERT_EQ(MakeSet(4000), 3);
    box.Insert(0);
    ASSERT_EQ(Restore(), RunOutcome::kComplete);
    EXPECT_EQ(feeder.Wants(), (Strings{"last", "1", "2", "3"}));
    EXPECT_EQ(feeder.asked[0],
              Prompt("the last disk", "The disk in the drive is not the last one of an archive."));
    EXPECT_EQ(feeder.asked[2], Prompt("disk 2 of the 3 disks", kAnother));
    ExpectRestored();
    EXPECT_TRUE(std::is_sorted(restored_events.overall.begin(), restored_events.overall.end()));
    EXPECT_EQ(restored_events.overall.back(), 100);
}

TEST_F(SpanningRead, DisksOfManySizes) {
    files.Put("C:\\Data\\a.txt", "first");
    files.Put("C:\\Data\\big", Noise(900));
    files.PutZeros("C:\\Data\\zeros", kChunkSize + 77);
    for (std::uint64_t size = 150; size < 900; size += 13) {
        MakeSet(size);
        ASSERT_EQ(Restore(), RunOutcome::kComplete) << size << restored_events.messages.back().text;
        ExpectRestored();
    }
}

TEST_F(SpanningRead, FortyDisks) {
    PutFiles();
    files.Put("C:\\Data\\noise", Noise(150'000));
    ASSERT_GE(MakeSet(4000), 40);
    ASSERT_EQ(Restore(), RunOutcome::kComplete);
    ExpectRestored();
    EXPECT_LE(feeder.asked.size(), static_cast<std::size_t>(feeder.disks));
}

TEST_F(SpanningRead, FileThatIsTooLargeForMemory) {
    files.Put("C:\\Data\\big", Noise(17 * kChunkSize));
    files.Put("C:\\Data\\later", "x");
    ASSERT_EQ(MakeSet(6 * kChunkSize), 3);
    ASSERT_EQ(Restore(), RunOutcome::kComplete);
    ExpectRestored();
    EXPECT_EQ(feeder.Wants(), (Strings{"1", "2", "3"}));
}

TEST_F(SpanningRead, BarsMoveBeforeTheNextDiskIsAskedFor) {
    files.Put("C:\\Data\\held in memory", Noise(2 * kChunkSize));
    ASSERT_EQ(MakeSet(kChunkSize), 3);
    int overall = 0;
    int of_file = 0;
    feeder.at[2] = [&] {
        overall = restored_events.overall.back();
        of_file = restored_events.of_file.back();
        return feeder.Insert(1);
    };
    ASSERT_EQ(Restore(), RunOutcome::kComplete);
    EXPECT_EQ(feeder.Wants(), (Strings{"1", "2", "3"}));
    EXPECT_GT(overall, 0);
    EXPECT_GT(of_file, 0);
    ExpectRestored();
}

TEST_F(SpanningRead, DirectoryOnSeveralDisks) {
    for (int i = 0; i < 200; ++i) {
        files.Put("C:\\Data\\" + std::to_string(i), "x");
    }
    MakeSet(7000);
    ASSERT_EQ(Restore(), RunOutcome::kComplete);
    ExpectRestored();
}

// Every disk but the right one, at every prompt.
TEST_F(SpanningRead, EveryWrongDiskAtEveryPrompt) {
    PutFiles();
    const int disks = MakeSet(1100);
    ASSERT_GE(disks, 6) << "one of them holds nothing but the middle of a file";
    ASSERT_EQ(Restore(), RunOutcome::kComplete);
    const int prompts = static_cast<int>(feeder.asked.size());
    EXPECT_GE(prompts, disks - 1);
    for (int prompt = 1; prompt <= prompts; ++prompt) {
        for (int wrong = 0; wrong < disks; ++wrong) {
            box.Insert(disks - 1);
            feeder.at.clear();
            feeder.at[static_cast<std::size_t>(prompt)] = [&] { return feeder.Insert(wrong); };
            ASSERT_EQ(Restore(), RunOutcome::kComplete);
            ExpectRestored();
            const std::string& text = feeder.asked.at(static_cast<std::size_t>(prompt - 1));
            const bool was_right = wrong == feeder.Wanted(text);
            EXPECT_EQ(feeder.asked.size(), static_cast<std::size_t>(prompts + (was_right ? 0 : 1)));
            if (!was_right) {
                EXPECT_EQ(Feeder::Note(feeder.asked.at(static_cast<std::size_t>(prompt))),
                          kAnother);
            }
        }
    }
}

TEST_F(SpanningRead, DiskOfAnotherSetIsNoticed) {
    PutFiles();
    MakeSet(2000);
    const DiskBox::Disk other = box.disks[1];
    files.Put("C:\\Data\\big", Noise(5000, 8));
    const int disks = MakeSet(2000);
    box.disks.push_back(other);
    feeder.at[2] = [&] { return feeder.Insert(disks); };
    ASSERT_EQ(Restore(), RunOutcome::kComplete);
    EXPECT_EQ(Feeder::Note(feeder.asked.at(2)), kAnother);
    ExpectRestored();
}

TEST_F(SpanningRead, DriveThatIsEmptyOrHoldsNoArchive) {
    PutFiles();
    const int disks = MakeSet(3000);
    feeder.at[1] = [&] {
        box.Eject();
        return true;
    };
    feeder.at[2] = [&] { return feeder.Insert(disks); };  // an unused one
    ASSERT_EQ(Restore(), RunOutcome::kComplete);
    EXPECT_EQ(Feeder::Note(feeder.asked.at(1)), "There is no disk in the drive.");
    EXPECT_EQ(Feeder::Note(feeder.asked.at(2)),
              "The disk in the drive does not hold A:\\Weekly.zip.");
    ExpectRestored();
}

// Each disk of a set in turn: the files that are on it, in part too, are lost and named.
TEST_F(SpanningRead, MissingDiskCostsTheFilesOnIt) {
    for (int i = 0; i < 12; ++i) {
        files.Put("C:\\Data\\f" + std::to_string(i), Noise(700, static_cast<std::uint64_t>(i)));
    }
    const int disks = MakeSet(2500);
    ASSERT_GE(disks, 4);
    for (int missing = 0; missing + 1 < disks; ++missing) {
        box.Insert(disks - 1);
        feeder.missing = {missing};
        ASSERT_EQ(Restore(), RunOutcome::kComplete);
        EXPECT_EQ(std::ranges::count(feeder.Wants(), std::to_string(missing + 1)), 1);
        EXPECT_GE(failed, 1);
        EXPECT_LE(failed, 5);
        const std::string reason =
            " is not restored: disk " + std::to_string(missing + 1) + " is missing.";
        const Strings warnings = restored_events.Texts(MessageKind::kWarning);
        EXPECT_EQ(warnings.size(), static_cast<std::size_t>(failed));
        for (const std::string& warning : warnings) {
            EXPECT_TRUE(warning.ends_with(reason)) << warning;
        }
        int restored = 0;
        for (int i = 0; i < 12; ++i) {
            const std::string path = "C:\\Out\\f" + std::to_string(i);
            if (files.Exists(path)) {
                ++restored;
                EXPECT_EQ(files.Content(path), Noise(700, static_cast<std::uint64_t>(i)));
            }
        }
        EXPECT_EQ(restored, 12 - failed);
        files.Remove("C:\\Out");
    }
}

TEST_F(SpanningRead, CancelAtEveryPrompt) {
    PutFiles();
    const int disks = MakeSet(3000);
    for (int prompt = 1; prompt <= disks + 1; ++prompt) {
        box.Insert(0);
        feeder.at.clear();
        feeder.at[static_cast<std::size_t>(prompt)] = [] { return false; };
        // Disk 1 is in the drive again after the last one.
        EXPECT_EQ(Restore(), RunOutcome::kCancelled) << prompt;
        EXPECT_EQ(feeder.asked.size(), static_cast<std::size_t>(prompt));
        files.Remove("C:\\Out");
    }
}

TEST_F(SpanningRead, UnattendedRunFailsWithTheQuestion) {
    PutFiles();
    MakeSet(3000);
    restored_events = Recorder();
    EXPECT_EQ(zip::ExtractArchive(Machine(), extract, restored_events).outcome,
              RunOutcome::kFailed);
    EXPECT_EQ(restored_events.messages.back().kind, MessageKind::kError);
    EXPECT_TRUE(restored_events.messages.back().text.starts_with("Please insert disk "))
        << restored_events.messages.back().text;
}

TEST_F(SpanningRead, DiskThatFailsWhileItIsReadIsAskedForAgain) {
    PutFiles();
    MakeSet(3000);
    FailAtRead(4, error_number::kDiskNotReady);
    ASSERT_EQ(Restore(), RunOutcome::kComplete);
    files.before = nullptr;
    EXPECT_GE(reads, 4);
    ExpectRestored();
}

// At each of its reads; the last one that fails is the one after which there are no more.
TEST_F(SpanningRead, ReadThatFailsOnceIsRetriedWithoutAQuestion) {
    PutFiles();
    MakeSet(3000);
    ASSERT_EQ(Restore(), RunOutcome::kComplete);
    const Strings wants = feeder.Wants();
    ExpectRestored();
    for (int failing = 1;; ++failing) {
        box.Insert(feeder.disks - 1);
        FailAtRead(failing, error_number::kDeviceIo);
        ASSERT_EQ(Restore(), RunOutcome::kComplete) << "read " << failing;
        files.before = nullptr;
        ExpectRestored();
        EXPECT_EQ(feeder.Wants(), wants) << "read " << failing;
        if (reads < failing) {
            break;
        }
    }
}

class SpanningList : public SpanningRead {
  protected:
    Strings List() {
        platform::Machine with_disks = Machine();
        zip::PKUNZIP unzip(with_disks);
        unzip.questions = &feeder;
        unzip.Message = [this](const zip::ComponentMessage& message) {
            messages.push_back(message.text);
        };
        unzip.Set(zip::unzip_id::kArchive, options.archive);
        unzip.Set(zip::unzip_id::kAction, zip::unzip_id::kActionCount);
        const auto count = std::get<std::int32_t>(unzip.Get(zip::unzip_id::kEntryCount));
        Strings names;
        for (std::int32_t i = 1; i < count; ++i) {
            unzip.Set(zip::unzip_id::kEntryIndex, i);
            unzip.Set(zip::unzip_id::kAction, zip::unzip_id::kActionEntry);
            names.push_back(std::get<std::string>(unzip.Get(zip::unzip_id::kEntryName)));
        }
        return names;
    }
    const Strings kNames{"a.txt", "big", "empty", "zeros", "Sub/prose", "Sub/Nothing in it/"};
    Strings messages;
};

TEST_F(SpanningList, AsksForTheLastDiskOnly) {
    PutFiles();
    MakeSet(4000);
    box.Insert(0);
    EXPECT_EQ(List(), kNames);
    EXPECT_EQ(feeder.Wants(), Strings{"last"});
    EXPECT_EQ(messages, Strings{});
}

TEST_F(SpanningList, MiddleDiskInTheDrive) {
    PutFiles();
    MakeSet(1500);
    box.Insert(2);
    EXPECT_EQ(List(), kNames);
    EXPECT_EQ(feeder.Wants().at(0), "last");
}

TEST_F(SpanningList, DisksOfADirectoryThatLiesOnSeveral) {
    for (int i = 0; i < 200; ++i) {
        files.Put("C:\\Data\\" + std::to_string(i), "x");
    }
    const int disks = MakeSet(7000);
    EXPECT_EQ(List().size(), 200u);
    const std::string last = std::to_string(disks);
    EXPECT_EQ(feeder.Wants().back(), last);
    EXPECT_GE(feeder.Wants().size(), 2u);
}

TEST_F(SpanningList, CancelListsNothing) {
    PutFiles();
    MakeSet(3000);
    box.Insert(0);
    feeder.at[1] = [] { return false; };
    EXPECT_EQ(List(), Strings{});
    EXPECT_EQ(messages, Strings{}) << "the refusal is the reason";
}

TEST_F(SpanningList, DamagedArchiveOnAFixedDriveIsNotTakenForADisk) {
    files.Put("C:\\Data\\x.zip", "PK\3\4 cut off");
    options.archive = "C:\\Data\\x.zip";
    EXPECT_EQ(List(), Strings{});
    EXPECT_EQ(feeder.asked, Strings{});
}

// A set as other programs make it: no list of disks, split without regard to us.
TEST_F(SpanningRead, SetOfAnotherProgram) {
    TestMachine real;
    PutFiles();
    files.Put("C:\\Data\\Sub\\large", Noise(200'000));
    for (const std::string& path : files.Files("C:\\Data")) {
        real.PutFile(path, files.Content(path));
    }
    files.Remove("C:\\Data\\Sub\\Nothing in it");
    const std::string folder = real.HostPath("C:\\Data");
    ASSERT_EQ(std::system(("cd '" + folder + "' && zip -q -r -s 64k ../set.zip .").c_str()), 0);
    const std::filesystem::path base = std::filesystem::path(folder).parent_path();
    box.Eject();
    box.disks.clear();
    box.limits = false;
    for (int disk = 1;; ++disk) {
        const std::string number = (disk < 10 ? "0" : "") + std::to_string(disk);
        const std::filesystem::path part = base / ("set.z" + number);
        const bool last = !std::filesystem::exists(part);
        std::ifstream in(last ? base / "set.zip" : part, std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(in), {}};
        box.disks.push_back({.files = {{"A:\\Weekly.zip", bytes}}});
        if (last) {
            break;
        }
    }
    feeder.disks = static_cast<int>(box.disks.size());
    ASSERT_GE(feeder.disks, 4);
    box.Insert(0);
    ASSERT_EQ(Restore(), RunOutcome::kComplete);
    ExpectRestored();
}

}  // namespace
}  // namespace vantrel::test
