#include "tests/faults/wholeness.h"

#include <algorithm>
#include <cctype>
#include <exception>

#include "platform/text_file.h"
#include "tests/zip/archive_reader.h"

namespace vantrel::test {

namespace {

constexpr std::size_t kStamp = 20;  // characters in front of a record

bool IsStamp(const std::string& line) {
    if (line.size() < kStamp) {
        return false;
    }
    const std::string pattern = "dd/dd/dddd dd:dd:dd ";
    for (std::size_t i = 0; i < kStamp; ++i) {
        const bool digit = std::isdigit(static_cast<unsigned char>(line[i])) != 0;
        if (pattern[i] == 'd' ? !digit : line[i] != pattern[i]) {
            return false;
        }
    }
    return true;
}

bool IsUndated(const std::string& line) {
    return line.size() > kStamp && line.find_first_not_of(' ') == kStamp;
}

bool IsRule(const std::string& line) {
    return line.size() == 80 && line.find_first_not_of('-') == std::string::npos;
}

// A log that was not to be seen for a moment gets a second header.
bool IsHeader(const std::string& line) {
    return line.empty() || line.starts_with("Vantrel") || line.starts_with("Copyright") ||
           line == "All Rights Reserved" || line == "Transaction Log" ||
           line.find("Vantrel") != std::string::npos;
}

std::string NewOnes(Computer& computer, const std::string& earlier) {
    const std::string now = computer.Content(kLogPath);
    return now.size() > earlier.size() ? now.substr(earlier.size()) : std::string();
}

}  // namespace

std::string OneOf(Computer& computer, const std::string& path,
                  const std::vector<std::string>& texts) {
    const std::string now = computer.Content(path);
    if (std::find(texts.begin(), texts.end(), now) != texts.end()) {
        return "";
    }
    std::string differs = now.empty() ? "nothing" : "";
    const auto lines = platform::SplitLines(now);
    const auto wanted = platform::SplitLines(texts.back());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (i >= wanted.size() || lines[i] != wanted[i]) {
            differs += "(" + lines[i] + ")";
        }
    }
    return path + " is neither the old one nor the new one; it has " + differs;
}

std::string LogWhole(Computer& computer, const std::string& earlier) {
    const std::string now = computer.Content(kLogPath);
    if (!now.starts_with(earlier)) {
        return "records of the log";
    }
    const std::string appended = now.substr(earlier.size());
    const auto lines = platform::SplitLines(appended);
    int odd = 0;
    for (const std::string& line : lines) {
        const bool open_end = &line == &lines.back() && !appended.ends_with("\r\n");
        odd += open_end || (!IsStamp(line) && !IsUndated(line) && !IsRule(line) && !IsHeader(line));
    }
    // Only a write that was cut leaves something odd.
    const int allowed = computer.writes_are_cut ? computer.plan().Fired() : 0;
    return odd <= allowed ? "" : "a record of the log is cut (" + appended + ")";
}

std::string ArchiveWhole(Computer& computer, const std::string& path, const std::string& earlier,
                         const Tree& source, int& files) {
    files = -1;
    const std::string now = computer.Content(path);
    if (now == earlier) {
        return "";
    }
    try {
        const ReadResult archive = ReadArchive(now);
        files = 0;
        for (const ReadEntry& entry : archive.entries) {
            if (entry.name.ends_with("/")) {
                continue;
            }
            std::string name = "C:\\Data\\" + entry.name;
            std::replace(name.begin(), name.end(), '/', '\\');
            const auto found = source.find(name);
            if (found == source.end()) {
                return "the archive holds a " + name + " that never was";
            }
            if (found->second != entry.content) {
                return "the archive holds a wrong " + name;
            }
            ++files;
        }
    } catch (const std::exception& error) {
        return "the archive is neither the earlier one nor whole: " + std::string(error.what());
    }
    return "";
}

std::string Untouched(Computer& computer, const std::vector<std::string>& paths) {
    for (const std::string& path : paths) {
        if (computer.Content(path) != computer.before[path]) {
            return path + " has changed";
        }
    }
    return "";
}

bool IsReported(Computer& computer, const std::string& earlier_log) {
    if (computer.ending == Ending::kDied || computer.power_failed) {
        return true;
    }
    if (computer.exit_code != 0) {
        return true;
    }
    for (const forms::Box& box : computer.desktop.boxes) {
        if (box.icon == forms::Icon::kCritical || box.icon == forms::Icon::kExclamation) {
            return true;
        }
    }
    for (const std::string& line : platform::SplitLines(NewOnes(computer, earlier_log))) {
        const bool of_start = line.find("Command Line Parameter") != std::string::npos;
        if (IsUndated(line) && !of_start) {
            return true;
        }
        if (line.find("Backup Failed") != std::string::npos) {
            return true;
        }
    }
    return false;
}

std::string FirstOf(const std::vector<std::string>& losses) {
    for (const std::string& loss : losses) {
        if (!loss.empty()) {
            return loss;
        }
    }
    return "";
}

}  // namespace vantrel::test
