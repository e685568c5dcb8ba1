// Unsuitable disks, prompts that are answered with Cancel, and unattended runs.
#include "tests/zip/spanning_fixture.h"
#include "zip/disks/archive_target.h"

namespace vantrel::test {
namespace {

class SpanningPrompts : public SpanningTest {
  protected:
    SpanningPrompts() {
        files.Put("C:\\Data\\noise", Noise(5000));
        NewBox(2000);
    }
    // Inserts an unsuitable disk; the next prompt must contain `note`.
    void ExpectRefused(const std::function<void()>& put_in, const std::string& note) {
        changer.at[1] = [put_in] {
            put_in();
            return true;
        };
        changer.at[2] = [this] { return changer.Next(); };
        ASSERT_EQ(Run(), RunOutcome::kComplete);
        ASSERT_GE(changer.asked.size(), 3u);
        EXPECT_EQ(changer.asked[1], Prompt("disk 2", note));
        ExpectSource(ReadSet(Volumes()));
    }
    // The same with a disk that holds something already, and keeps it.
    void ExpectRefusedAndKept(const DiskBox::Disk& disk, const std::string& note) {
        ExpectRefused([&] { InsertOther(7, disk); }, note);
        EXPECT_EQ(box.disks[7].files, disk.files);
    }
    void InsertOther(int number, const DiskBox::Disk& disk) {
        box.Insert(number);
        box.Eject();
        box.disks[static_cast<std::size_t>(number)] = disk;
        box.Insert(number);
    }
    // Inserts a disk on which this call fails.
    void ExpectRefusedWhen(const std::string& failing, int error, const std::string& note) {
        const auto fail = [=, this](const std::string& call, const std::string& path) {
            if (call == failing && path.starts_with("A:") && box.Inserted() == 8) {
                RaiseError(error);
            }
        };
        ExpectRefused(
            [&] {
                box.Insert(8);
                files.before = fail;
            },
            note);
    }
    // Losing this byte is noticed at the n-th prompt, and these disks keep their files.
    void ExpectLossAtPrompt(std::size_t n, int disk, std::size_t offset, const Strings& kept) {
        LoseAByteOn(disk, offset);
        changer.at[n] = [] { return false; };
        EXPECT_EQ(Run(), RunOutcome::kCancelled);
        ASSERT_EQ(changer.asked.size(), n);
        EXPECT_NE(changer.asked.back().find("cannot be read back"), std::string::npos);
        EXPECT_EQ(Everywhere(), kept);
    }
    // Once, the byte at `offset` on the disk with this number, from 0, is no longer what was
    // written when its file is closed.
    void LoseAByteOn(int disk, std::size_t offset) {
        files.before = [this, disk, offset, lost = false](const std::string& call,
                                                          const std::string& path) mutable {
            if (path.starts_with("A:") && call == "Close" && box.Inserted() == disk && !lost) {
                lost = true;
                std::string bytes = files.Content(path);
                bytes.at(offset) = static_cast<char>(bytes[offset] + 1);
                files.Put(path, bytes);
            }
        };
    }
    Strings Everywhere() {
        box.Eject();
        Strings all;
        for (std::size_t i = 0; i < box.disks.size(); ++i) {
            for (const auto& file : box.disks[i].files) {
                all.push_back(std::to_string(i + 1) + " " + file.first);
            }
        }
        return all;
    }
};

TEST_F(SpanningPrompts, SameDiskAgain) {
    ExpectRefused(
        [] {}, "The disk in the drive holds A:\\Weekly.zip already, and no file is overwritten.");
}

TEST_F(SpanningPrompts, NoDisk) {
    ExpectRefused([this] { box.Eject(); }, "There is no disk in the drive.");
}

TEST_F(SpanningPrompts, DiskOfAnotherArchiveOfThisNameIsNotTouched) {
    ExpectRefusedAndKept(
        {.size = 9000, .files = {{"A:\\WEEKLY.ZIP", "of last week"}}},
        "The disk in the drive holds A:\\Weekly.zip already, and no file is overwritten.");
}

TEST_F(SpanningPrompts, FullDiskIsNotTouched) {
    ExpectRefusedAndKept({.size = 1000, .files = {{"A:\\letters.doc", std::string(1000, 'x')}}},
                         "The disk in the drive is full: it has 0 bytes free.");
}

TEST_F(SpanningPrompts, DiskWithOtherFilesKeepsThemAndIsFilled) {
    changer.at[1] = [this] {
        InsertOther(1, {.size = 2000, .files = {{"A:\\letters.doc", std::string(600, 'x')}}});
        changer.SetLast(1);
        return true;
    };
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    const auto volumes = Volumes();
    ASSERT_EQ(volumes.size(), 3u);
    EXPECT_EQ(volumes[1].size(), 1400u);
    EXPECT_EQ(box.disks[1].files.at("A:\\letters.doc"), std::string(600, 'x'));
    ExpectSource(ReadSet(volumes));
}

TEST_F(SpanningPrompts, WriteProtectedDisk) {
    ExpectRefusedWhen("Open", error_number::kPermissionDenied,
                      "The disk in the drive is write-protected.");
}

TEST_F(SpanningPrompts, WriteProtectedDiskWithAFolderToMake) {
    options.archive = "A:\\20261115_130509\\Weekly.zip";
    ExpectRefusedWhen(
        "MakeFolder", error_number::kPathFileAccess,
        "The disk in the drive is write-protected, or a folder cannot be made on it.");
}

TEST_F(SpanningPrompts, FirstDiskIsAskedForWhenTheDriveIsEmpty) {
    box.Eject();
    changer.at[1] = [this] {
        box.Insert(0);
        return true;
    };
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(changer.asked[0], Prompt("disk 1", "There is no disk in the drive."));
    ExpectSource(ReadSet(Volumes()));
}

TEST_F(SpanningPrompts, StampedFolderIsMadeOnEveryDisk) {
    options.archive = "A:\\20261115_130509\\Weekly.zip";
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    const auto volumes = Volumes();
    EXPECT_EQ(volumes.size(), 3u);
    ExpectSource(ReadSet(volumes));
}

TEST_F(SpanningPrompts, DiskThatDoesNotReadBackAsWrittenIsReportedAndReadAgain) {
    FailCalls(files, {.name = "Read", .path = "A:", .first = 2, .last = 2},
              error_number::kDeviceIo);
    changer.at[1] = [] { return true; };
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(changer.asked[0],
              "What was written on this disk cannot be read back: A:\\Weekly.zip.vantrel-new "
              "(Device I/O error).");
    ExpectSource(ReadSet(Volumes()));
}

TEST_F(SpanningPrompts, DiskThatLosesAByteIsFoundBeforeTheNextIsAskedFor) {
    ExpectLossAtPrompt(1, 0, 1000, {});
}

TEST_F(SpanningPrompts, LastDiskThatLosesAByteIsFoundBeforeTheArchiveIsComplete) {
    ExpectLossAtPrompt(3, 2, 100, {"1 A:\\Weekly.zip", "2 A:\\Weekly.zip"});
    EXPECT_EQ(events.Texts(MessageKind::kWarning),
              Strings{"2 disks hold parts of an archive that was not finished: A:\\Weekly.zip"});
}

TEST_F(SpanningPrompts, EveryDiskIsFlushedBeforeTheNextIsAskedFor) {
    std::vector<bool> flushed;
    for (std::size_t prompt = 1; prompt <= 2; ++prompt) {
        changer.at[prompt] = [&] {
            flushed.push_back(files.AllFlushed("A:\\Weekly.zip"));
            return changer.Next();
        };
    }
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(flushed, (std::vector<bool>{true, true}));
}

// The disk in the drive is as before the run, removed disks keep their parts, and a message reports
// that.
TEST_F(SpanningPrompts, CancelAtEveryPrompt) {
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    const std::size_t prompts = changer.asked.size();
    ASSERT_EQ(prompts, 2u);
    for (std::size_t n = 1; n <= prompts; ++n) {
        NewBox(2000);
        changer.at = {{n, [] { return false; }}};
        const std::size_t raised = events.overall.size();
        EXPECT_EQ(Run(), RunOutcome::kCancelled) << n;
        EXPECT_GT(events.overall.size(), raised);
        EXPECT_LT(events.overall.back(), 100);
        Strings left;
        for (std::size_t disk = 1; disk < n; ++disk) {
            left.push_back(std::to_string(disk) + " A:\\Weekly.zip");
        }
        EXPECT_EQ(Everywhere(), left) << n;
        const Strings said = events.Texts(MessageKind::kWarning);
        EXPECT_EQ(said.size(), n == 1 ? 0u : 1u);
        if (n == 2) {
            EXPECT_EQ(said.at(0),
                      "1 disk holds a part of an archive that was not finished: A:\\Weekly.zip");
        }
    }
}

TEST_F(SpanningPrompts, CancelAtARefusal) {
    changer.at[1] = [this] {
        box.Eject();
        return true;
    };
    changer.at[2] = [] { return false; };
    EXPECT_EQ(Run(), RunOutcome::kCancelled);
    EXPECT_EQ(Everywhere(), Strings{"1 A:\\Weekly.zip"});
}

TEST_F(SpanningPrompts, CancelRemovesTheStampedFolderOfTheDiskInTheDrive) {
    options.archive = "A:\\20261115_130509\\Weekly.zip";
    changer.at[1] = [] { return true; };  // the same disk
    changer.at[2] = [] { return false; };
    EXPECT_EQ(Run(), RunOutcome::kCancelled);
    EXPECT_EQ(files.Exists("A:\\20261115_130509"), false);
    EXPECT_TRUE(files.Exists("A:\\"));
}

TEST_F(SpanningPrompts, UnattendedRunFailsAndLeavesTheDiskUnchanged) {
    events.questions = nullptr;
    EXPECT_EQ(Run(), RunOutcome::kFailed);
    EXPECT_EQ(events.messages.back().kind, MessageKind::kError);
    EXPECT_EQ(events.messages.back().text,
              "The archive needs disk 2, which an unattended run cannot ask for: A:\\Weekly.zip.");
    EXPECT_EQ(Everywhere(), Strings{});
}

class EarlierArchiveOnDiskOne : public SpanningPrompts {
  protected:
    EarlierArchiveOnDiskOne() { InsertEarlier(); }
    void InsertEarlier() {
        InsertOther(0, {.size = 3000, .files = {{"A:\\Weekly.zip", kEarlier}}});
    }
    const std::string kEarlier = std::string(900, 'e');
};

TEST_F(EarlierArchiveOnDiskOne, IsReplacedWhenThatDiskSuffices) {
    box.Eject();
    files.Put("C:\\Data\\noise", Noise(500));
    box.Insert(0);
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_TRUE(changer.asked.empty());
    const auto volumes = Volumes();
    ASSERT_EQ(volumes.size(), 1u);
    EXPECT_EQ(volumes[0].substr(0, 4), "PK00");
    EXPECT_EQ(box.disks[0].files.size(), 1u);
}

TEST_F(EarlierArchiveOnDiskOne, IsReplacedAtTheVeryEndWhenThereAreMoreDisks) {
    std::string seen;
    changer.at[3] = [&] {
        box.Insert(1);  // not the right one
        return true;
    };
    changer.at[4] = [&] {
        box.Insert(0);
        seen = files.Content("A:\\Weekly.zip");
        return true;
    };
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    ASSERT_EQ(changer.asked.size(), 4u);
    EXPECT_EQ(seen, kEarlier);
    EXPECT_EQ(changer.asked[2],
              Prompt("disk 1",
                     "The archive is complete, and is to replace the earlier one on that disk."));
    EXPECT_EQ(changer.asked[3],
              Prompt("disk 1", "The disk in the drive is not disk 1 of this archive."));
    ExpectSource(ReadSet(Volumes()));
    EXPECT_EQ(box.disks[0].files.size(), 1u);
}

TEST_F(EarlierArchiveOnDiskOne, StaysUntilThen) {
    for (std::size_t n = 1; n <= 3; ++n) {
        NewBox(2000);
        InsertEarlier();
        changer.at = {{n, [] { return false; }}};
        EXPECT_EQ(Run(), RunOutcome::kCancelled);
        box.Eject();
        EXPECT_EQ(box.disks[0].files.at("A:\\Weekly.zip"), kEarlier) << n;
        EXPECT_EQ(box.disks[0].files.size(), n == 1 ? 1u : 2u) << n;
    }
}

}  // namespace
}  // namespace vantrel::test
