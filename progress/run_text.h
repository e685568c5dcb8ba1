// The words for the figures of a run: one line while it works, and the summary that stays at its
// end. Pure functions.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "common/display_text.h"
#include "zip/base/component_events.h"

namespace vantrel {

// What the line of a working run shows besides the figures.
struct RunPace {
    std::uint64_t bytes_per_second = 0;                    // 0: unknown
    std::optional<std::chrono::milliseconds> remaining{};  // nothing: unknown
};

// "16,909 of 20,012 files, 287 MB of 721 MB, 41 MB/s, 9 s left". Before the totals are known it has
// what was found or done; while a disk is asked for, its number instead of the pace.
std::string FiguresText(const zip::RunFigures& figures, const RunPace& pace,
                        const NumberFormat& format);

// "18 s", "2 min 30 s", "1 h 20 min"; at least "1 s".
std::string DurationText(std::chrono::milliseconds time, const NumberFormat& format);

// The files that a run has left out.
struct LeftOutFiles {
    static constexpr std::size_t kMaxNames = 3;

    std::uint64_t count = 0;
    std::vector<std::string> names{};  // the first kMaxNames
};

// "1 file left out: ledger.xls", "12 files left out: a, b, c and 9 more"; "" for none. Long names
// are shortened in the middle.
std::string LeftOutText(const LeftOutFiles& left_out, const NumberFormat& format);

// How a run ended.
struct RunEnd {
    zip::RunFigures figures;
    std::chrono::milliseconds worked{0};
    bool cancelled = false;
};

// "20,011 files, 721 MB, archive of 287 MB, 18 s" of a backup, without the archive of a restore;
// "Cancelled after 12,000 of 20,012 files, 287 MB of 721 MB, 8 s".
std::string SummaryText(const RunEnd& end, const NumberFormat& format);

// What is on the disk after a backup.
enum class ArchiveState {
    kComplete,
    kEarlier,     // cancelled; the archive of an earlier run has not changed
    kNone,        // cancelled, and there was no earlier one
    kIncomplete,  // cancelled, and disks that were finished hold parts of an archive
};
std::string ArchiveText(ArchiveState state, const std::string& path);
// Where a restore has written its files.
std::string RestoredText(const RunEnd& end, const std::string& destination);

}  // namespace vantrel
