// What the second backup of a folder compresses again, and which earlier archives it uses.
#include "tests/zip/earlier_fixture.h"
#include "zip/base/bytes.h"
#include "zip/records/format.h"

namespace vantrel::test {
namespace {

using zip::kChunkSize;

class EarlierArchiveTest : public EarlierTest {
  protected:
    EarlierArchiveTest() {
        for (int i = 0; i < 300; ++i) {
            files.Put("C:\\Data\\small\\" + std::to_string(i),
                      Prose(1000 + 7 * Number(i), Number(i)));
        }
        files.Put("C:\\Data\\noise", Noise(70'000));
        files.Put("C:\\Data\\empty", "");
        files.PutFolder("C:\\Data\\folder");
    }
    static std::size_t Number(int i) { return static_cast<std::size_t>(i); }
};

TEST_F(EarlierArchiveTest, NothingUnchangedIsCompressedAgain) {
    RunFirst();
    RunSecond();
    EXPECT_EQ(compressed, 0);
    const std::uint64_t all = result.reused_bytes;
    EXPECT_EQ(Lines(),
              Strings{"Compared and reused from the earlier archive: " + std::to_string(all) +
                      " of " + std::to_string(all) + " bytes (100 %)."});
}

TEST_F(EarlierArchiveTest, TheArchiveThatIsReplacedCanBeTheEarlierOne) {
    RunFirst();
    const std::string first = files.Content(kEarlier);
    files.Put(options.archive, first);
    options.earlier = options.archive;
    ASSERT_EQ(Run(), RunOutcome::kComplete) << "this disk replaces no file that is open";
    EXPECT_EQ(compressed, 0);
    EXPECT_TRUE(files.Content(options.archive) == first);
}

TEST_F(EarlierArchiveTest, AChangeBehindUnchangedSizeAndDateIsFound) {
    RunFirst();
    const auto before = files.Info("C:\\Data\\small\\7");
    std::string changed = files.Content("C:\\Data\\small\\7");
    changed[500] ^= 1;
    files.Put("C:\\Data\\small\\7", changed);
    ASSERT_EQ(files.Info("C:\\Data\\small\\7").size, before.size);
    ASSERT_EQ(files.Info("C:\\Data\\small\\7").times.modified, before.times.modified);
    RunSecond();
    EXPECT_EQ(compressed, 1);
    EXPECT_EQ(Archive().At("small/7").content, changed);
}

TEST_F(EarlierArchiveTest, NewDatesAloneCompressNothing) {
    RunFirst();
    for (int i = 0; i < 300; i += 10) {
        files.Change("C:\\Data\\small\\" + std::to_string(i),
                     [](platform::FileInfo& info) { info.times.modified += 1'000'000'000; });
    }
    RunSecond();
    EXPECT_EQ(compressed, 0);
}

TEST_F(EarlierArchiveTest, RenamedAndCopiedFilesAreFoundByTheirContent) {
    RunFirst();
    const std::string content = files.Content("C:\\Data\\small\\9");
    files.Remove("C:\\Data\\small\\9");
    files.Put("C:\\Data\\moved\\name", content);
    files.Put("C:\\Data\\moved\\copy", content);
    RunSecond();
    EXPECT_EQ(compressed, 0);
}

TEST_F(EarlierArchiveTest, NewAndGrownAndRemovedFilesAreAsInAFreshArchive) {
    RunFirst();
    files.Put("C:\\Data\\new", Prose(5000, 999));
    files.Append("C:\\Data\\small\\11", "more");
    files.Remove("C:\\Data\\small\\12");
    RunSecond();
    EXPECT_EQ(compressed, 2);
}

TEST_F(EarlierArchiveTest, OutputIsTheSameForAnyNumberOfThreads) {
    files.Put("C:\\Data\\big", Prose(4 * kChunkSize + 99));
    RunFirst();
    for (const int threads : {1, 2, 5}) {
        options.threads = threads;
        RunSecond();
        EXPECT_EQ(compressed, 0) << threads;
    }
}

TEST_F(EarlierArchiveTest, AMissingArchiveIsOneLine) {
    RunSecond();
    EXPECT_EQ(result.reused_bytes, 0u);
    EXPECT_EQ(Lines(), Strings{"There is no earlier archive to reuse. Everything is compressed."});
}

TEST_F(EarlierArchiveTest, ALockedArchiveIsNotUsedAndNotWaitedFor) {
    RunFirst();
    int opened = 0;
    BeforeCalls(files, {.name = "Open", .path = kEarlier}, [&] {
        ++opened;
        RaiseError(error_number::kPermissionDenied);
    });
    ExpectUnused("Permission denied");
    EXPECT_EQ(opened, 1);
}

TEST_F(EarlierArchiveTest, AnArchiveOnARemovableDriveIsNotTouched) {
    RunFirst();
    files.before = [](const std::string&, const std::string& path) { EXPECT_NE(path, kEarlier); };
    for (const int type : {platform::drive_type::kRemovable, platform::drive_type::kCdRom}) {
        machine.drives.drives['C'].type = type;
        ExpectUnused("it is on a removable drive");
    }
}

TEST_F(EarlierArchiveTest, AnArchiveOnAnotherNetworkDriveIsNotTouched) {
    RunFirst();
    files.before = [](const std::string&, const std::string& path) {
        EXPECT_FALSE(path.starts_with("N:"));
    };
    machine.drives.drives['N'].type = platform::drive_type::kRemote;
    options.earlier = "N:\\Weekly.zip";
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(Lines(),
              Strings{"The earlier archive is not reused: N:\\Weekly.zip (it is on another "
                      "network drive). Everything is compressed."});
    files.before = nullptr;
    machine.drives.drives['C'].type = platform::drive_type::kRemote;
    RunSecond();
    EXPECT_EQ(compressed, 0) << "the drive of the new archive answers";
}

TEST_F(EarlierArchiveTest, AForeignArchiveIsNotUsed) {
    files.Put(kEarlier, "This is no archive.");
    ExpectUnused("it is damaged, or was not made by this program");
}

TEST_F(EarlierArchiveTest, AnArchiveOfAnotherLevelIsNotUsed) {
    UseLevel(6, 6);
    RunFirst();
    UseLevel(9, zip::kTunedLevel);
    ExpectUnused("another version or another level compressed it");
}

TEST_F(EarlierArchiveTest, AnArchiveOfAnotherGenerationIsNotUsed) {
    RunFirst();
    std::string other = files.Content(kEarlier);
    const std::size_t field = other.find(std::string("VG\7\0", 4));
    ASSERT_NE(field, std::string::npos);
    other[field + 4] = static_cast<char>(other[field + 4] + 1);
    files.Put(kEarlier, other);
    ExpectUnused("another version or another level compressed it");
}

TEST_F(EarlierArchiveTest, AnArchiveThatIsBeingWrittenIsNotUsed) {
    RunFirst();
    BeforeCalls(files, {.name = "Read", .path = kEarlier}, [this] {
        files.Change(kEarlier, [](platform::FileInfo& info) { ++info.times.modified; });
    });
    ExpectUnused("it is being changed");
}

TEST_F(EarlierArchiveTest, ABackupOnSeveralDisksUsesNone) {
    RunFirst();
    options.spanning = true;
    options.earlier = kEarlier;
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(Lines(), Strings{"The earlier archive is not reused: " + std::string(kEarlier) +
                               " (this backup continues on further disks). Everything is "
                               "compressed."});
    EXPECT_EQ(files.Content(options.archive).find(std::string("VG\7\0", 4)), std::string::npos);
}

TEST_F(EarlierArchiveTest, LevelZeroCompressesNothingAndComparesNothing) {
    RunFirst();
    options.level = 0;
    RunSecond();
    EXPECT_EQ(Lines(), Strings{});
    EXPECT_EQ(files.Content(options.archive).find(std::string("VG\7\0", 4)), std::string::npos);
}

TEST_F(EarlierArchiveTest, ReadErrorsCostOnlyTheReuse) {
    RunFirst();
    RunSecond();
    const std::uint64_t all = result.reused_bytes;
    for (const int limit : {1, 3, 1000}) {
        std::atomic<int> reads{0};
        files.before = [&](const std::string& call, const std::string& path) {
            if (call == "Read" && path == kEarlier && ++reads > 2 && reads <= 2 + limit) {
                RaiseError(error_number::kDeviceIo);
            }
        };
        RunSecond();
        EXPECT_LT(result.reused_bytes, all) << limit;
        EXPECT_EQ(result.reused_bytes == 0, limit == 1000);
        EXPECT_EQ(result.skipped, 0);
        EXPECT_EQ(events.Texts(zip::MessageKind::kWarning), Strings{});
        EXPECT_LE(reads, 2 + std::max(limit, 20)) << "it is not tried again and again";
    }
}

TEST_F(EarlierArchiveTest, OneLineSaysThatItIsNotUsedAnyMore) {
    RunFirst();
    FailCalls(files, {.name = "Read", .path = kEarlier, .first = 3},
              error_number::kDeviceUnavailable);
    RunSecond();
    ASSERT_EQ(Lines().size(), 2u);
    EXPECT_EQ(
        Lines()[0],
        "The earlier archive is not reused any more, because it cannot be read or is damaged: " +
            std::string(kEarlier));
    EXPECT_EQ(Lines()[1].find("Compared and reused from the earlier archive: 0 of "), 0u);
}

TEST_F(EarlierArchiveTest, AnArchiveThatIsRemovedWhileItIsReadLosesNothing) {
    RunFirst();
    BeforeCalls(files, {.name = "Read", .path = kEarlier, .first = 3, .last = 3},
                [&] { files.Put(kEarlier, ""); });
    RunSecond();
    EXPECT_GE(compressed, 1);
}

TEST_F(EarlierArchiveTest, OtherToolsSeeTheSameFields) {
    files.Put("C:\\Data\\big", Prose(2 * kChunkSize + 5));
    RunFirst();
    const ReadResult archive = ReadArchive(files.Content(kEarlier));
    const std::string mark = archive.entries[0].central_fields.at(zip::kCompressorField);
    EXPECT_EQ(mark.size(), 7u);
    EXPECT_EQ(zip::GetNumber<std::uint16_t>(mark, 0), zip::kCompressorGeneration);
    EXPECT_EQ(mark[2], zip::kTunedLevel);
    const std::string index = archive.At("big").central_fields.at(zip::kChunkIndexField);
    EXPECT_EQ(index.size(), 1 + 3 * 8u);
    EXPECT_EQ(index[0], 0);
    EXPECT_EQ(zip::GetNumber<std::uint32_t>(index, 1) + zip::GetNumber<std::uint32_t>(index, 9) +
                  zip::GetNumber<std::uint32_t>(index, 17),
              archive.At("big").packed_size);
    for (const ReadEntry& entry : archive.entries) {
        const bool first = &entry == archive.entries.data();
        EXPECT_EQ(entry.central_fields.contains(zip::kCompressorField), first) << entry.name;
        EXPECT_EQ(entry.central_fields.contains(zip::kChunkIndexField), entry.name == "big");
    }
}

}  // namespace
}  // namespace vantrel::test
