// Any bytes as a transaction log that is trimmed. The first line of the input says how: its first
// character the limit in steps of 16 bytes, its second in front of which event something happens to
// the log, its third what happens: "r" a record is written, "x" the rest of the line takes the
// log's place, as when another copy of the program rolls it over.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "log/clsLog.h"
#include "tests/fuzz/fuzz_input.h"
#include "tests/fuzz/silent_desktop.h"
#include "tests/support/memory_file_system.h"
#include "tests/support/test_machine.h"

namespace {

using vantrel::test::Demand;
using Lines = std::vector<std::string>;

constexpr const char* kLog = "C:\\Vantrel\\Vantrel.Log";
constexpr std::size_t kKeptLines = 13;

// Lines without their ends; what follows the last line end is a line when it is not empty.
Lines Split(const std::string& text) {
    Lines lines;
    bool open = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool second_of_pair = i > 0 && text[i - 1] == '\r' && text[i] == '\n';
        if (second_of_pair) {
            continue;
        }
        const bool end = text[i] == '\r' || text[i] == '\n';
        if (!open) {
            lines.emplace_back();
        }
        if (!end) {
            lines.back() += text[i];
        }
        open = !end;
    }
    return lines;
}

// The lines behind the kept ones, without the empty ones: each pass leaves one at the end.
Lines Records(const Lines& lines) {
    Lines records;
    for (std::size_t i = kKeptLines; i < lines.size(); ++i) {
        if (!lines[i].empty()) {
            records.push_back(lines[i]);
        }
    }
    return records;
}

bool EndsWith(const Lines& lines, const Lines& end) {
    return end.size() <= lines.size() &&
           std::equal(end.begin(), end.end(),
                      lines.end() - static_cast<std::ptrdiff_t>(end.size()));
}

bool StartsWith(const Lines& lines, const Lines& start) {
    return start.size() <= lines.size() && std::equal(start.begin(), start.end(), lines.begin());
}

struct Plan {
    long limit = 0;         // bytes
    int event = -1;         // from 0; negative: none
    bool exchange = false;  // otherwise a record is written
    std::string text{};
};

Plan PlanOf(std::string_view line) {
    Plan plan;
    const auto at = [&](std::size_t i) { return static_cast<unsigned char>(line[i]); };
    if (!line.empty()) {
        plan.limit = at(0) * 16;
    }
    if (line.size() < 3) {
        return plan;
    }
    plan.event = at(1) - '0';
    plan.exchange = line[2] == 'x';
    plan.text = line.substr(3);
    return plan;
}

class Trim {
  public:
    Trim(const Plan& plan, const std::string& log) : plan_(plan) {
        files_.Put(kLog, log);
        program_.globals.LogFilePath = kLog;
        desktop_.on_events = [this] { Happen(); };
        // The note, if there is to be one, is written before the first event.
        const bool noted = static_cast<long>(log.size()) > plan.limit;
        const std::string all = noted ? log + Note(log.size()) : log;
        written_ = Split(all);
        written_size_ = all.size();
    }

    void Run() {
        vantrel::clsLog(program_).Log_Truncate(plan_.limit);
        const std::string after = files_.Content(kLog);
        const Lines lines = Split(after);
        const Lines kept(written_.begin(), written_.begin() + static_cast<std::ptrdiff_t>(std::min(
                                                                  kKeptLines, written_.size())));
        Demand(StartsWith(lines, kept));
        Demand(EndsWith(Records(written_), Records(lines)));
        if (happened_) {
            // What came while the last line was looked at waits for the next trim.
            Trim({.limit = plan_.limit}, after).Run();
            return;
        }
        CheckThrownLines(lines);
        const bool is_below = static_cast<long>(after.size()) < plan_.limit;
        Demand(is_below || lines.size() <= kKeptLines + 1);
    }

  private:
    static vantrel::test::TestMachine& Base() {
        static vantrel::test::TestMachine machine;
        return machine;
    }
    // Of a log whose lines all end in CR LF, as the program writes them, one pass throws away lines
    // until they hold more bytes than there are too many, and not one further.
    void CheckThrownLines(const Lines& left) const {
        std::size_t size = 0;
        for (const std::string& line : written_) {
            size += line.size() + 2;
        }
        if (size != written_size_ || left == written_) {
            return;
        }
        // The pass has left an empty line at the end.
        const std::size_t thrown = written_.size() + 1 - left.size();
        long long excess = static_cast<long long>(size) - plan_.limit;
        for (std::size_t i = 0; i < thrown; ++i) {
            Demand(excess >= 0);
            excess -= static_cast<long long>(written_[kKeptLines + i].size());
        }
    }
    std::string Note(std::size_t size) const {
        return "15/11/2026 13:05:09 Log File Truncated from " + std::to_string(size / 1000) +
               "K to about " + std::to_string(plan_.limit / 1000) + "K\r\n";
    }
    void Happen() {
        if (events_++ != plan_.event) {
            return;
        }
        happened_ = true;
        const std::string now = files_.Content(kLog);
        if (plan_.exchange) {
            files_.Put(kLog, plan_.text);
            written_ = Split(plan_.text);
            return;
        }
        // A last line without its end is continued by the record.
        const bool open = !now.empty() && now.back() != '\r' && now.back() != '\n';
        vantrel::clsLog(program_).WriteToLog("Backup", true, "meanwhile");
        const std::string record = "15/11/2026 13:05:09 meanwhile";
        if (open) {
            written_.back() += record;
        } else {
            written_.push_back(record);
        }
    }

    Plan plan_;
    Lines written_;                 // every line that the log ever held, oldest first
    std::size_t written_size_ = 0;  // bytes, before the first event
    int events_ = 0;
    bool happened_ = false;
    vantrel::test::MemoryFileSystem files_;
    vantrel::test::SilentDesktop desktop_;
    vantrel::platform::Machine machine_ = vantrel::test::WithFiles(Base().machine(), files_);
    vantrel::forms::Program program_{machine_, desktop_};
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view input(reinterpret_cast<const char*>(data), size);
    const Plan plan = PlanOf(vantrel::test::TakeLine(input));
    Trim(plan, std::string(input)).Run();
    return 0;
}
