#include "log/clsLog.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>

#include "backupset/clsFiles.h"
#include "common/error.h"
#include "common/product.h"
#include "platform/text_file.h"

namespace vantrel {

namespace {

constexpr const char* kLineEnd = "\r\n";
constexpr std::size_t kStampLength = 20;  // characters of "dd/mm/yyyy hh:nn:ss "
constexpr int kTypeMismatch = 13;         // run-time error of a text that is no number

std::string Rule() { return std::string(80, '-'); }

std::string Header() {
    const std::array<std::string, 12> lines = {Rule(),
                                               "",
                                               "Vantrel - Backup Utility",
                                               "",
                                               product::kNoticeLine,
                                               "All Rights Reserved",
                                               "",
                                               product::kCreditLine,
                                               "",
                                               Rule(),
                                               "Transaction Log",
                                               Rule()};
    std::string header;
    for (const std::string& line : lines) {
        header += line + kLineEnd;
    }
    return header;
}

// Includes its line end. A mode without a reason has neither text nor line end, so that the rule
// follows on the same line.
std::string UnloadReason(int mode) {
    constexpr std::array kReasons = {
        "Close on Control menu.",          "Invoked from code.",         "Windows O/S is ending.",
        "Windows Task Manager is ending.", "Child MDI form is closing.", "Parent Form is closing."};
    const auto index = static_cast<std::size_t>(mode);  // that of a negative mode is large
    return index < kReasons.size() ? std::string(kReasons[index]) + kLineEnd : "";
}

int UnloadMode(const std::string& text) {
    std::int16_t mode = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, failure] = std::from_chars(text.data(), end, mode);
    if (failure == std::errc::result_out_of_range) {
        RaiseError(error_number::kOverflow);
    }
    if (failure != std::errc() || stop != end) {
        throw Error(kTypeMismatch, product::kName, "Type mismatch");
    }
    return mode;
}

}  // namespace

void clsLog::WriteToLog(const std::string& kind, bool with_date, const std::string& message) {
    Reported("clsLog:WriteToLog Method", [&] {
        LogFile();
        if (kind == "Backup") {
            Log_WriteBackup(with_date, message);
        } else if (kind == "Exit") {
            Log_WriteOther(UnloadMode(message));
        } else if (kind == "INI Edit") {
            Log_WriteINI_Edit(message);
        } else if (kind == "Startup") {
            Log_WriteStartup();
        } else if (kind == "Command Line") {
            Log_WriteCommandLine();
        } else if (kind == "PrevInstance") {
            Log_WritePrevInstance();
        } else {
            program_.desktop.Show(
                {"Hey", forms::Buttons::kOk, forms::Icon::kExclamation, "Select Case Missing"});
        }
    });
}

void clsLog::LogFile() {
    Reported("clsLog:LogFile Method", [&] {
        if (program_.machine.clock.Now().day == 1 && Exists()) {
            RollOver();
        }
        if (!Exists()) {
            Append(Header());
        }
    });
}

void clsLog::RollOver() {
    auto& clock = program_.machine.clock;
    auto& files = program_.machine.files;
    const auto log = files.Find(FixedName());
    if (!log) {
        return;
    }
    // Only month numbers are compared. In January the difference is 0, which is no month, so that
    // December's log is not rolled over.
    if (clock.Now().month - 1 != clock.ToLocal(log->times.modified).month) {
        return;
    }
    // One step instead of a removal and a rename: last month's log always exists under one name.
    files.Replace(FixedName(), program_.InApplicationFolder("Vantrel.Bak"));
}

std::string clsLog::Log_WriteDate(bool with_date) {
    return Reported("clsLog:Log_WriteDate Method", [&] {
        if (!with_date) {
            return std::string(kStampLength, ' ');
        }
        const platform::LocalTime now = program_.machine.clock.Now();
        std::array<char, 80> stamp{};
        std::snprintf(stamp.data(), stamp.size(), "%02d/%02d/%04d %02d:%02d:%02d ", now.day,
                      now.month, now.year, now.hour, now.minute, now.second);
        return std::string(stamp.data());
    });
}

void clsLog::Log_WriteBackup(bool with_date, const std::string& message) {
    Reported("clsLog:Log_WriteBackup Method",
             [&] { Append(Log_WriteDate(with_date) + message + kLineEnd); });
}

void clsLog::Log_WriteOther(int unload_mode) {
    Reported("clsLog:Log_WriteOther Method", [&] {
        Append(Log_WriteDate(true) + "Application Closed - Unloaded by " +
               UnloadReason(unload_mode) + Rule() + kLineEnd);
    });
}

void clsLog::Log_WriteINI_Edit(const std::string& message) {
    Reported("clsLog:Log_WriteINI_Edit Method",
             [&] { Append(Log_WriteDate(true) + message + kLineEnd); });
}

void clsLog::Log_WriteStartup() {
    Reported("clsLog:Log_WriteStartup Method", [&] {
        Append(Log_WriteDate(true) + "Application " + product::VersionText() + " Started" +
               kLineEnd);
    });
}

void clsLog::Log_WriteCommandLine() {
    Reported("clsLog:Log_WriteCommandLine Method", [&] {
        const std::string parameter = program_.machine.process.CommandLine();
        Append(Log_WriteDate(false) +
               "Command Line Parameter = " + (parameter.empty() ? "Nil" : parameter) + kLineEnd);
    });
}

void clsLog::Log_WritePrevInstance() {
    // Without a line end: the next record continues the line.
    Reported("clsLog:Log_WritePrevInstance Method",
             [&] { Append(Log_WriteDate(true) + "Previous Instance Detected - Not Started"); });
}

void clsLog::Append(const std::string& text) {
    platform::AppendToFile(program_.machine.files, program_.globals.LogFilePath,
                           program_.machine.code_page.EncodeLossy(text));
}

std::string clsLog::FixedName() const { return program_.InApplicationFolder("Vantrel.Log"); }

bool clsLog::Exists() { return clsFiles(program_).Exist(FixedName(), true); }

namespace {

constexpr std::size_t kKeptLines = 13;  // 12 of the header, and the first record

using Lines = std::vector<std::string>;

bool StartsWith(const Lines& lines, const Lines& start) {
    return lines.size() >= start.size() && std::equal(start.begin(), start.end(), lines.begin());
}

}  // namespace

void clsLog::Log_Truncate(long limit) {
    Reported("clsLog:Log_Truncate Method", [&] {
        if (!Exists()) {
            return;
        }
        if (const long long size = Size(); size > limit) {
            std::string& note = program_.globals.MessageText;
            note = "Log File Truncated from " + std::to_string(size / 1000) + "K to about " +
                   std::to_string(limit / 1000) + "K";
            WriteToLog("Backup", true, note);
        }
        for (;;) {
            const long long size = Size();
            if (size < limit || !TrimOnce(size, limit)) {
                return;
            }
        }
    });
}

long long clsLog::Size() {
    const auto log = program_.machine.files.Find(FixedName());
    if (!log) {
        RaiseError(error_number::kFileNotFound);
    }
    return static_cast<long long>(log->size);
}

// One pass over the log; false when no record was left to remove.
bool clsLog::TrimOnce(long long size, long long limit) {
    auto& files = program_.machine.files;
    auto lines = platform::SplitLines(platform::ReadWholeFile(files, FixedName()));
    std::size_t next = kKeptLines;
    std::size_t removed_bytes = 0;
    for (long long excess = size - limit; excess >= 0 && next < lines.size(); ++next) {
        removed_bytes += lines[next].size();
        excess -= static_cast<long long>(lines[next].size());
        program_.desktop.DoEvents();
    }
    // Each pass leaves an empty line at the end. A pass that finds nothing else ends the trim, or a
    // limit below the size of the kept lines would be trimmed for ever.
    const bool has_removed = removed_bytes > 0 || next > kKeptLines + 1;
    if (!has_removed) {
        return false;
    }
    // The events may have added records, from this copy of the program or another, or replaced the
    // log by a new one. A replaced log is measured again by the caller.
    lines.resize(next);
    const auto now = platform::SplitLines(platform::ReadWholeFile(files, FixedName()));
    if (!StartsWith(now, lines)) {
        return true;
    }
    std::string text;
    for (std::size_t i = 0; i < now.size(); ++i) {
        if (i < kKeptLines || i >= next) {
            text += now[i] + "\r\n";
        }
    }
    platform::ReplaceWholeFile(files, FixedName(), text + "\r\n");
    return true;
}

void ShowError(forms::Program& program, const Error& error) {
    if (!program.Unattended()) {
        program.desktop.Show(
            {.text = error.description(), .icon = forms::Icon::kCritical, .title = "Error"});
        return;
    }
    try {
        clsLog(program).WriteToLog("Backup", false, error.description());
    } catch (const Error&) {
        return;
    }
}

}  // namespace vantrel
