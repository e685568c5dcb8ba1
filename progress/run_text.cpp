#include "progress/run_text.h"

#include <algorithm>

#include "common/utf.h"

namespace vantrel {

namespace {

using std::chrono::milliseconds;

constexpr std::int64_t kSecond = 1000;
constexpr std::int64_t kMinute = 60 * kSecond;
constexpr std::int64_t kHour = 60 * kMinute;

// Characters of a name; three names and their count fit the label.
constexpr std::size_t kMaxNameLength = 24;

std::string Files(std::uint64_t count, const NumberFormat& format) {
    return NumberText(count, format) + (count == 1 ? " file" : " files");
}

// "12 of 20 files, 3 MB of 5 MB".
std::string DoneOfTotal(const zip::RunFigures& figures, const NumberFormat& format) {
    return NumberText(figures.files_done, format) + " of " + Files(figures.files_total, format) +
           ", " + SizeText(figures.bytes_done, format) + " of " +
           SizeText(figures.bytes_total, format);
}

std::string Done(const zip::RunFigures& figures, const NumberFormat& format) {
    return Files(figures.files_done, format) + ", " + SizeText(figures.bytes_done, format);
}

std::string Amounts(const zip::RunFigures& figures, const NumberFormat& format) {
    if (figures.IsTotalKnown()) {
        return DoneOfTotal(figures, format);
    }
    if (figures.files_done > 0) {
        return Done(figures, format);
    }
    return figures.files_found > 0 ? Files(figures.files_found, format) + " found" : "";
}

// In steps that are no finer than an estimate: of seconds, of 10 seconds from one minute on, of
// minutes from ten minutes on.
milliseconds Rounded(milliseconds time) {
    const std::int64_t step = time.count() < kMinute        ? kSecond
                              : time.count() < 10 * kMinute ? 10 * kSecond
                                                            : kMinute;
    return milliseconds((time.count() + step - 1) / step * step);
}

std::string PaceText(const RunPace& pace, const NumberFormat& format) {
    std::string text;
    if (pace.bytes_per_second > 0) {
        text += ", " + SizeText(pace.bytes_per_second, format) + "/s";
    }
    if (pace.remaining) {
        text += ", " + DurationText(Rounded(*pace.remaining), format) + " left";
    }
    return text;
}

std::string DiskText(std::uint32_t disk) {
    return disk == zip::kLastDisk ? "the last disk" : "disk " + std::to_string(disk);
}

std::string Shortened(const std::string& name) {
    constexpr std::size_t kTail = kMaxNameLength / 2 - 1;  // with the extension
    constexpr std::size_t kHead = kMaxNameLength - kTail - 3;
    const std::size_t length = utf::Length(name);
    if (length <= kMaxNameLength) {
        return name;
    }
    const std::size_t tail = utf::Left(name, length - kTail).size();
    return utf::Left(name, kHead) + "..." + name.substr(tail);
}

}  // namespace

std::string FiguresText(const zip::RunFigures& figures, const RunPace& pace,
                        const NumberFormat& format) {
    const std::string amounts = Amounts(figures, format);
    if (figures.disk != 0) {
        return (amounts.empty() ? "Waiting for " : amounts + ", waiting for ") +
               DiskText(figures.disk);
    }
    if (figures.finishing) {
        return amounts + ", finishing";
    }
    return figures.IsTotalKnown() ? amounts + PaceText(pace, format) : amounts;
}

std::string DurationText(milliseconds time, const NumberFormat& format) {
    const std::int64_t value = std::max(time.count(), kSecond);
    const auto number = [&](std::int64_t count) {
        return NumberText(static_cast<std::uint64_t>(count), format);
    };
    if (value < kMinute) {
        return number(value / kSecond) + " s";
    }
    const bool hours = value >= kHour;
    const std::int64_t large = hours ? kHour : kMinute;
    const std::int64_t rest = value % large / (hours ? kMinute : kSecond);
    std::string text = number(value / large) + (hours ? " h" : " min");
    if (rest > 0) {
        text += " " + number(rest) + (hours ? " min" : " s");
    }
    return text;
}

std::string LeftOutText(const LeftOutFiles& left_out, const NumberFormat& format) {
    if (left_out.count == 0) {
        return "";
    }
    std::string text = Files(left_out.count, format) + " left out";
    const char* separator = ": ";
    for (const std::string& name : left_out.names) {
        text += separator + Shortened(name);
        separator = ", ";
    }
    if (left_out.count > left_out.names.size() && !left_out.names.empty()) {
        text += " and " + NumberText(left_out.count - left_out.names.size(), format) + " more";
    }
    return text;
}

std::string SummaryText(const RunEnd& end, const NumberFormat& format) {
    const zip::RunFigures& figures = end.figures;
    const std::string duration = DurationText(end.worked, format);
    if (end.cancelled) {
        const bool known = figures.IsTotalKnown();
        return "Cancelled after " + (known ? DoneOfTotal(figures, format) + ", " : "") + duration;
    }
    const std::string archive =
        figures.archive_bytes > 0 ? ", archive of " + SizeText(figures.archive_bytes, format) : "";
    return Done(figures, format) + archive + ", " + duration;
}

std::string ArchiveText(ArchiveState state, const std::string& path) {
    switch (state) {
        case ArchiveState::kComplete:
            return "Archive: " + path;
        case ArchiveState::kEarlier:
            return "Earlier archive, unchanged: " + path;
        case ArchiveState::kNone:
            return "No archive was made: " + path;
        case ArchiveState::kIncomplete:
            break;
    }
    return "No complete archive was made, earlier ones are unchanged: " + path;
}

std::string RestoredText(const RunEnd& end, const std::string& destination) {
    if (end.figures.files_done == 0) {
        return "No file was restored to: " + destination;
    }
    return (end.cancelled ? "Restored until then to: " : "Restored to: ") + destination;
}

}  // namespace vantrel
