#include <algorithm>

#include "common/error.h"
#include "log/clsLog.h"
#include "platform/text_file.h"

namespace vantrel {

namespace {

constexpr std::size_t kKeptLines = 13;  // the 12 of the header and the first record

using Lines = std::vector<std::string>;

bool StartsWith(const Lines& lines, const Lines& start) {
    return lines.size() >= start.size() && std::equal(start.begin(), start.end(), lines.begin());
}

}  // namespace

void clsLog::Log_Truncate(long limit) {
    Reported("clsLog:Log_Truncate Method", [&] {
        if (!Exists()) return;
        if (const long long size = Size(); size > limit) {
            std::string& note = program_.globals.MessageText;
            note = "Log File Truncated from " + std::to_string(size / 1000) + "K to about " +
                   std::to_string(limit / 1000) + "K";
            WriteToLog("Backup", true, note);
        }
        for (;;) {
            const long long size = Size();
            if (size < limit || !TrimOnce(size, limit)) return;
        }
    });
}

long long clsLog::Size() {
    const auto log = program_.machine.files.Find(FixedName());
    if (!log) RaiseError(error_number::kFileNotFound);
    return static_cast<long long>(log->size);
}

// One pass over the log; false when there was nothing left to throw away.
bool clsLog::TrimOnce(long long size, long long limit) {
    auto& files = program_.machine.files;
    auto lines = platform::SplitLines(platform::ReadWholeFile(files, FixedName()));
    std::size_t next = kKeptLines;
    std::size_t thrown_bytes = 0;
    for (long long excess = size - limit; excess >= 0 && next < lines.size(); ++next) {
        thrown_bytes += lines[next].size();
        excess -= static_cast<long long>(lines[next].size());
        program_.desktop.DoEvents();
    }
    // The empty line that each pass leaves at the end is no gain when it is the only one that the
    // next pass finds: without this test a limit below the kept lines would be trimmed for ever.
    const bool gained = thrown_bytes > 0 || next > kKeptLines + 1;
    if (!gained) return false;
    // Read anew: the events may have brought records, from this copy or from a second one, or a new
    // log in the place of this one, which is measured by itself.
    lines.resize(next);
    const auto now = platform::SplitLines(platform::ReadWholeFile(files, FixedName()));
    if (!StartsWith(now, lines)) return true;
    std::string text;
    for (std::size_t i = 0; i < now.size(); ++i) {
        if (i < kKeptLines || i >= next) text += now[i] + "\r\n";
    }
    platform::ReplaceWholeFile(files, FixedName(), text + "\r\n");
    return true;
}

}  // namespace vantrel
