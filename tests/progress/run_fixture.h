// A run's window, of a backup or a restore, over a component that neither compresses nor extracts.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "tests/support/diary.h"
#include "tests/support/program_fixture.h"
#include "zip/component.h"

namespace vantrel::test {

// The value of a property as text: "True", "4".
inline std::string Text(const zip::Value& value) {
    if (const auto* flag = std::get_if<bool>(&value)) {
        return *flag ? "True" : "False";
    }
    if (const auto* text = std::get_if<std::string>(&value)) {
        return *text;
    }
    if (const auto* small = std::get_if<std::int16_t>(&value)) {
        return std::to_string(*small);
    }
    return std::to_string(std::get<std::int32_t>(value));
}

// One of the zip components that does nothing: it notes the properties in the order in which they
// are set, and plays a test's events when the property `kActionId` is set to `kRun`. `Self` derives
// from it.
template <typename Self, typename Component, int kActionId, std::int16_t kRun>
class Recording : public Component {
  public:
    struct Record {
        std::vector<std::string> sets;  // "8=9", in order
        std::map<int, zip::Value> values;
        std::map<int, zip::Value> reads_back;  // in place of what was set
        std::function<void(Self&)> action;
        std::int32_t skipped = 0;  // files of a backup
    };

    Recording(platform::Machine& machine, Record& record) : Component(machine), record_(record) {}

    void Set(int id, const zip::Value& value) override {
        record_.sets.push_back(std::to_string(id) + "=" + Text(value));
        record_.values[id] = value;
        if (id == kActionId && value == zip::Value(kRun) && record_.action) {
            record_.action(static_cast<Self&>(*this));
        }
    }
    zip::Value Get(int id) const override {
        const auto other = record_.reads_back.find(id);
        return other != record_.reads_back.end() ? other->second : record_.values.at(id);
    }
    // One overall-progress event; returns what the window made of the cancel flag.
    bool RaiseOverall(std::int32_t percent) {
        bool cancel = false;
        this->OverallProgress(percent, cancel);
        return cancel;
    }
    void RaiseFile(std::int32_t percent) { this->FileProgress(percent); }
    void Say(const std::string& text, zip::MessageKind kind = zip::MessageKind::kInformation) {
        zip::ComponentMessage message;
        message.kind = kind;
        message.text = text;
        this->Message(message);
    }

  protected:
    Record& record_;
};

// `Base` is a fixture with a program.
template <typename Base, typename Window, typename Component>
class RunFixture : public Base {
  protected:
    // Shows the window until it closes; attended, the user looks at its end and presses OK.
    void ShowToItsEnd(std::unique_ptr<Window> shown, const std::string& status_label) {
        window = std::move(shown);
        if (!window->program().Unattended()) {
            this->desktop.idle.push_back([this, status_label] {
                at_end = {window->Find(status_label)->Caption(),
                          window->PB_Folder.Value(),
                          window->PB_File.Value(),
                          window->Lst_Details.Count(),
                          window->Cmd_Ok.Visible(),
                          window->Cmd_Cancel.Visible(),
                          window->Ani_File.Playing(),
                          window->Lbl_Figures.Caption(),
                          window->Lbl_Location.Caption(),
                          window->Lbl_LeftOut.Caption()};
                window->Cmd_Ok.UserPress();
            });
        }
        this->desktop.ShowModal(*window);
    }
    void PressCancel() { window->Cmd_Cancel.UserPress(); }
    void Tick(Component& component, std::chrono::milliseconds time) {
        this->machine.clock.Advance(time);
        component.Figures(figures);
    }
    void LeaveOut(Component& component, const std::string& path) {
        component.Message(zip::LeftOutWarning(path, "Skipped " + path, 70));
        ++figures.left_out;
    }

    // The bars are empty and the details gone, and OK is what is left to press.
    void ExpectReset(const std::string& status) {
        EXPECT_EQ(at_end.status, status);
        EXPECT_EQ(at_end.overall, 0);
        EXPECT_EQ(at_end.file, 0);
        EXPECT_EQ(at_end.details, 0);
        EXPECT_TRUE(at_end.ok_visible);
        EXPECT_FALSE(at_end.cancel_visible);
        EXPECT_FALSE(at_end.playing);
    }
    // An event of each kind; the bars then have the same values.
    void ExpectYieldsBeforeTheBarsMove(Component& component) {
        Diary diary(this->desktop);
        diary.Follow(window->PB_Folder);
        diary.Follow(window->PB_File);
        component.RaiseOverall(42);
        component.RaiseFile(17);
        EXPECT_EQ(diary.Lines(), (std::vector<std::string>{"events", "PB_Folder value", "events",
                                                           "PB_File value"}));
        EXPECT_EQ(window->PB_Folder.Value(), 42);
        EXPECT_EQ(window->PB_File.Value(), 17);
    }
    void SetFigures(std::uint64_t files_total, std::uint64_t mb_total, std::uint64_t files_done,
                    std::uint64_t mb_done) {
        figures.files_total = files_total;
        figures.bytes_total = mb_total * kMb;
        figures.files_done = files_done;
        figures.bytes_done = mb_done * kMb;
    }

    static constexpr std::uint64_t kMb = 1024 * 1024;
    struct AtEnd {
        std::string status;
        int overall = -1;
        int file = -1;
        int details = -1;
        bool ok_visible = false;
        bool cancel_visible = true;
        bool playing = true;
        std::string summary, location, left_out;
    } at_end;
    zip::RunFigures figures;
    std::unique_ptr<Window> window;
};

}  // namespace vantrel::test
