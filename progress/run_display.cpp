#include "progress/run_display.h"

namespace vantrel {

namespace {

// Between two updates: what changes more often cannot be read.
constexpr RunDisplay::Time kUpdateInterval{100};

constexpr const char* kSeeLog = "See the Log tab.";

// Names in an archive have "/" between their components.
std::string FileName(const std::string& path) {
    const std::size_t end = path.find_last_not_of("/\\") + 1;
    const std::size_t start = path.find_last_of("/\\", end - 1) + 1;
    return EscapeControls(path.substr(start, end - start));
}

}  // namespace

void RunDisplay::Start(Time now, const NumberFormat& numbers) {
    *this = RunDisplay();
    numbers_ = numbers;
    estimate_.Start(now);
}

void RunDisplay::Add(const zip::ComponentMessage& message) {
    if (message.left_out && left_out_.names.size() < LeftOutFiles::kMaxNames) {
        left_out_.names.push_back(FileName(message.path));
    }
    if (message.kind == zip::MessageKind::kError && failure_.empty()) {
        failure_ = message.text;
    }
}

bool RunDisplay::Update(Time now, const zip::RunFigures& figures) {
    estimate_.Add(now, figures);
    figures_ = figures;
    left_out_.count = figures.left_out;
    if (now - shown_at_ < kUpdateInterval && figures.disk == shown_disk_) {
        return false;
    }
    shown_at_ = now;
    shown_disk_ = figures.disk;
    return true;
}

std::string RunDisplay::FiguresLine() const {
    return FiguresText(figures_, {estimate_.Speed(), estimate_.Remaining()}, numbers_);
}

std::string RunDisplay::LeftOutLine() const { return LeftOutText(left_out_, numbers_); }

RunEnd RunDisplay::End(Time now, bool cancelled) const {
    return {figures_, estimate_.Worked(now), cancelled};
}

std::string RunDisplay::ProblemLine() const {
    std::string text = failure_;
    if (const std::string left_out = LeftOutLine(); !left_out.empty()) {
        text += (text.empty() ? "" : " ") + left_out + ".";
    }
    return text.empty() ? "" : text + " " + kSeeLog;
}

}  // namespace vantrel
