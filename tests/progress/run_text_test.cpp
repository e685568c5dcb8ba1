// Every wording of a run's figures and of its summary.
#include "progress/run_text.h"

#include <gtest/gtest.h>

namespace vantrel::test {
namespace {

using std::chrono::milliseconds;
using zip::RunFigures;

constexpr std::uint64_t kMegabyte = 1024 * 1024;
const NumberFormat kEnglish;
const NumberFormat kGerman{",", ".", 3, 3};

RunFigures Working() {
    RunFigures figures;
    figures.files_total = 20012;
    figures.bytes_total = 721 * kMegabyte;
    figures.files_done = 16909;
    figures.bytes_done = 287 * kMegabyte;
    return figures;
}

RunPace Pace(std::uint64_t speed, milliseconds remaining) { return {speed, remaining}; }

TEST(FiguresText, HasFilesBytesSpeedAndRemainingTime) {
    EXPECT_EQ(FiguresText(Working(), Pace(41 * kMegabyte, milliseconds(8700)), kEnglish),
              "16,909 of 20,012 files, 287 MB of 721 MB, 41 MB/s, 9 s left");
}

TEST(FiguresText, UsesTheUsersNumberFormat) {
    RunFigures figures = Working();
    figures.bytes_done = 47 * kMegabyte / 10;
    EXPECT_EQ(FiguresText(figures, Pace(1536, milliseconds(9000)), kGerman),
              "16.909 of 20.012 files, 4,7 MB of 721 MB, 1,5 KB/s, 9 s left");
}

TEST(FiguresText, LeavesOutAPaceThatIsUnknown) {
    EXPECT_EQ(FiguresText(Working(), {}, kEnglish), "16,909 of 20,012 files, 287 MB of 721 MB");
    EXPECT_EQ(FiguresText(Working(), {41 * kMegabyte, {}}, kEnglish),
              "16,909 of 20,012 files, 287 MB of 721 MB, 41 MB/s");
    EXPECT_EQ(FiguresText(Working(), Pace(0, milliseconds(9000)), kEnglish),
              "16,909 of 20,012 files, 287 MB of 721 MB, 9 s left");
}

TEST(FiguresText, OneFileIsSingular) {
    RunFigures figures;
    figures.files_total = 1;
    figures.bytes_total = 1;
    EXPECT_EQ(FiguresText(figures, {}, kEnglish), "0 of 1 file, 0 bytes of 1 byte");
}

TEST(FiguresText, IsEmptyBeforeAnythingIsKnown) { EXPECT_EQ(FiguresText({}, {}, kEnglish), ""); }

TEST(FiguresText, CountsTheFilesThatAreFoundWhileFoldersAreListed) {
    RunFigures figures;
    figures.files_found = 1;
    EXPECT_EQ(FiguresText(figures, Pace(5, milliseconds(5)), kEnglish), "1 file found");
    figures.files_found = 12345;
    EXPECT_EQ(FiguresText(figures, {}, kEnglish), "12,345 files found");
}

TEST(FiguresText, HasOnlyWhatIsDoneWhileARestoreIsStillPlanned) {
    RunFigures figures;
    figures.files_done = 1234;
    figures.bytes_done = 12 * kMegabyte;
    EXPECT_EQ(FiguresText(figures, Pace(5, milliseconds(5)), kEnglish), "1,234 files, 12 MB");
}

TEST(FiguresText, HasTheNumberOfADiskInsteadOfThePace) {
    RunFigures figures = Working();
    figures.disk = 2;
    EXPECT_EQ(FiguresText(figures, Pace(41 * kMegabyte, milliseconds(9000)), kEnglish),
              "16,909 of 20,012 files, 287 MB of 721 MB, waiting for disk 2");
}

TEST(FiguresText, HasADiskThatIsNeededBeforeAnythingIsKnown) {
    RunFigures figures;
    figures.disk = 1;
    EXPECT_EQ(FiguresText(figures, {}, kEnglish), "Waiting for disk 1");
    figures.disk = zip::kLastDisk;
    EXPECT_EQ(FiguresText(figures, {}, kEnglish), "Waiting for the last disk");
}

TEST(FiguresText, HasNoPaceWhenOnlyTheEndIsLeft) {
    RunFigures figures = Working();
    figures.finishing = true;
    EXPECT_EQ(FiguresText(figures, Pace(41 * kMegabyte, milliseconds(9000)), kEnglish),
              "16,909 of 20,012 files, 287 MB of 721 MB, finishing");
}

TEST(FiguresText, RoundsTheRemainingTimeUpInStepsThatGrow) {
    const struct {
        int milliseconds;
        const char* text;
    } cases[] = {{0, "1 s left"},
                 {1, "1 s left"},
                 {59'000, "59 s left"},
                 {59'001, "1 min left"},
                 {61'000, "1 min 10 s left"},
                 {150'000, "2 min 30 s left"},
                 {600'000, "10 min left"},
                 {600'001, "11 min left"},
                 {4'800'000, "1 h 20 min left"},
                 {7'200'000, "2 h left"}};
    for (const auto& each : cases) {
        EXPECT_TRUE(FiguresText(Working(), Pace(0, milliseconds(each.milliseconds)), kEnglish)
                        .ends_with(std::string(", ") + each.text))
            << each.milliseconds;
    }
}

TEST(DurationText, HasTwoUnitsAtMost) {
    EXPECT_EQ(DurationText(milliseconds(0), kEnglish), "1 s");
    EXPECT_EQ(DurationText(milliseconds(18'999), kEnglish), "18 s");
    EXPECT_EQ(DurationText(milliseconds(60'000), kEnglish), "1 min");
    EXPECT_EQ(DurationText(milliseconds(151'000), kEnglish), "2 min 31 s");
    EXPECT_EQ(DurationText(milliseconds(3'659'000), kEnglish), "1 h");
    EXPECT_EQ(DurationText(milliseconds(4'800'000), kEnglish), "1 h 20 min");
    EXPECT_EQ(DurationText(milliseconds(3'600'000'000), kEnglish), "1,000 h");
}

TEST(LeftOutText, HasTheFirstNames) {
    EXPECT_EQ(LeftOutText({}, kEnglish), "");
    EXPECT_EQ(LeftOutText({1, {"ledger.xls"}}, kEnglish), "1 file left out: ledger.xls");
    EXPECT_EQ(LeftOutText({3, {"a", "b", "c"}}, kEnglish), "3 files left out: a, b, c");
    EXPECT_EQ(LeftOutText({1203, {"a", "b", "c"}}, kEnglish),
              "1,203 files left out: a, b, c and 1,200 more");
}

TEST(LeftOutText, WithoutANameHasTheNumberOnly) {
    EXPECT_EQ(LeftOutText({2, {}}, kEnglish), "2 files left out");
}

TEST(LeftOutText, ShortensLongNamesInTheMiddle) {
    EXPECT_EQ(LeftOutText({1, {"abcdefghijklmnopqrst.doc"}}, kEnglish),
              "1 file left out: abcdefghijklmnopqrst.doc");
    EXPECT_EQ(LeftOutText({1, {"abcdefghijklmnopqrstu.doc"}}, kEnglish),
              "1 file left out: abcdefghij...opqrstu.doc");
    EXPECT_EQ(LeftOutText({1,
                           {"\xC3\xA4\xC3\xA4"
                            "cdefghijklmnopqrst\xC3\xBC.doc"}},
                          kEnglish),
              "1 file left out: \xC3\xA4\xC3\xA4"
              "cdefghij...opqrst\xC3\xBC.doc");
}

RunEnd End(bool cancelled) {
    RunEnd end{Working(), milliseconds(18'400), cancelled};
    end.figures.archive_bytes = cancelled ? 0 : 100 * kMegabyte;
    return end;
}

TEST(SummaryText, OfABackupHasTheSizeOfTheArchive) {
    EXPECT_EQ(SummaryText(End(false), kEnglish), "16,909 files, 287 MB, archive of 100 MB, 18 s");
}

TEST(SummaryText, OfARestoreHasNoArchive) {
    RunEnd end = End(false);
    end.figures.archive_bytes = 0;
    EXPECT_EQ(SummaryText(end, kEnglish), "16,909 files, 287 MB, 18 s");
}

TEST(SummaryText, OfACancelledRunHasHowFarItCame) {
    EXPECT_EQ(SummaryText(End(true), kEnglish),
              "Cancelled after 16,909 of 20,012 files, 287 MB of 721 MB, 18 s");
}

TEST(SummaryText, OfARunThatWasCancelledWhileItListedFoldersHasItsTime) {
    EXPECT_EQ(SummaryText({{}, milliseconds(3000), true}, kEnglish), "Cancelled after 3 s");
}

TEST(ArchiveText, HasWhatIsOnTheDisk) {
    const std::string path = "E:\\WEEKLY.zip";
    EXPECT_EQ(ArchiveText(ArchiveState::kComplete, path), "Archive: E:\\WEEKLY.zip");
    EXPECT_EQ(ArchiveText(ArchiveState::kEarlier, path),
              "Earlier archive, unchanged: E:\\WEEKLY.zip");
    EXPECT_EQ(ArchiveText(ArchiveState::kNone, path), "No archive was made: E:\\WEEKLY.zip");
    EXPECT_EQ(ArchiveText(ArchiveState::kIncomplete, path),
              "No complete archive was made, earlier ones are unchanged: E:\\WEEKLY.zip");
}

TEST(RestoredText, HasWhereTheFilesAre) {
    EXPECT_EQ(RestoredText(End(false), "C:\\RESTORE"), "Restored to: C:\\RESTORE");
    EXPECT_EQ(RestoredText(End(true), "C:\\RESTORE"), "Restored until then to: C:\\RESTORE");
    EXPECT_EQ(RestoredText({{}, milliseconds(1), true}, "C:\\RESTORE"),
              "No file was restored to: C:\\RESTORE");
}

}  // namespace
}  // namespace vantrel::test
