#include "ui/last_run.h"

#include <array>
#include <cctype>

namespace vantrel {

namespace {

using Outcome = LastRun::Outcome;

constexpr std::size_t kStampLength = 20;  // characters of "dd/mm/yyyy hh:nn:ss "

// The record after `prefix`; nothing when it begins differently.
bool StartsWith(std::string_view record, std::string_view prefix, std::string_view& rest) {
    if (!record.starts_with(prefix)) {
        return false;
    }
    rest = record.substr(prefix.size());
    return true;
}

bool IsStamp(std::string_view text) {
    constexpr std::string_view kPattern = "00/00/0000 00:00:00 ";
    for (std::size_t i = 0; i < kPattern.size(); ++i) {
        const bool is_digit = std::isdigit(static_cast<unsigned char>(text[i])) != 0;
        if (kPattern[i] == '0' ? !is_digit : text[i] != kPattern[i]) {
            return false;
        }
    }
    return true;
}

// "3 files not backed up", "1 file not restored".
bool CountsFiles(std::string_view record) {
    return !record.empty() && std::isdigit(static_cast<unsigned char>(record.front())) != 0 &&
           (record.ends_with(" not backed up") || record.ends_with(" not restored"));
}

class RunFinder {
  public:
    void TakeLine(std::string_view line) {
        if (line.size() < kStampLength) {
            return;
        }
        const std::string_view record = line.substr(kStampLength);
        if (!IsStamp(line)) {
            if (run.outcome == Outcome::kUnfinished && CountsFiles(record)) {
                run.detail = record;
            }
        } else if (TakeStart(record) || TakeEnd(record)) {
            run.when = line.substr(0, kStampLength - 1);
        }
    }

    LastRun run;

  private:
    bool TakeStart(std::string_view record) {
        std::string_view rest;
        if (StartsWith(record, "Starting Backup ", rest)) {
            run = {.outcome = Outcome::kUnfinished, .name = "Backup " + std::string(rest)};
        } else if (StartsWith(record, "Starting Restore from ZIP File - ", rest) ||
                   StartsWith(record, "Starting Restore from ", rest)) {
            run = {.outcome = Outcome::kUnfinished, .name = "Restore from " + std::string(rest)};
        } else {
            return false;
        }
        return true;
    }

    bool TakeEnd(std::string_view record) {
        std::string_view rest;
        if (run.outcome == Outcome::kNone) {
            return false;
        }
        if (record == "Successful Backup" || record.starts_with("Finished Restore from ")) {
            run.outcome = Outcome::kComplete;
        } else if (record == "Cancelled by User") {
            run.outcome = Outcome::kCancelled;
        } else if (StartsWith(record, "Backup Failed - ", rest)) {
            run.outcome = Outcome::kFailed;
            run.detail = rest;
        } else {
            return false;
        }
        return true;
    }
};

}  // namespace

LastRun FindLastRun(std::string_view log) {
    RunFinder finder;
    while (!log.empty()) {
        const std::size_t end = log.find("\r\n");
        finder.TakeLine(log.substr(0, end));
        if (end == std::string_view::npos) {
            break;
        }
        log.remove_prefix(end + 2);
    }
    return finder.run;
}

}  // namespace vantrel
