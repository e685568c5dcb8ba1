// The last backup or restore in the transaction log. Pure functions over the log's text.
#pragma once

#include <string>
#include <string_view>

namespace vantrel {

struct LastRun {
    enum class Outcome {
        kNone,        // the log has no run
        kUnfinished,  // no end is recorded: the program was ended during the run
        kComplete,
        kCancelled,
        kFailed,
    };
    Outcome outcome = Outcome::kNone;
    std::string name{};  // "Backup DAILY.INI", "Restore from E:\OLD.zip"
    std::string when{};  // its newest stamp, as in the log: "15/11/2026 13:05:09"
    std::string
        detail{};  // why it failed, or the record of files left out: "3 files not backed up"
};

// `log` is the complete text, lines ended by CR LF. Takes one pass.
LastRun FindLastRun(std::string_view log);

}  // namespace vantrel
