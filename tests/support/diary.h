// Writes down in their order what the program does to its screen and to its files:
//
//     "events", "pointer hourglass", "load Frm_Backup", "box Restore"   of the desktop
//     "TV_Restore hidden", "PB_File value"                              of controls
//     "Vantrel.Log written"                                             of files
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/fault_plan.h"
#include "tests/support/scripted_desktop.h"

namespace vantrel::test {

class Diary {
  public:
    // The desktop, and whatever is followed, outlives this.
    explicit Diary(ScriptedDesktop& desktop) : desktop_(desktop) {
        desktop.on_step = [this](const std::string& step) { Note(step); };
        desktop.on_box = [this](const forms::Box& box) { Note("box " + box.title); };
    }
    ~Diary() {
        desktop_.on_step = nullptr;
        desktop_.on_box = nullptr;
        for (FaultPlan* const plan : plans_) {
            plan->before_call = nullptr;
        }
    }
    Diary(const Diary&) = delete;
    Diary& operator=(const Diary&) = delete;

    // Notes each change of a control that has no view.
    void Follow(forms::Control& control) {
        views_.push_back(std::make_unique<View>(*this, control));
    }
    // Notes when a file of one of these names is read or written, each time that it is opened.
    void FollowFiles(FaultPlan& plan, std::vector<std::string> names) {
        plans_.push_back(&plan);
        plan.before_call = [this, names = std::move(names)](const CallRecord& call) {
            const bool replaces = call.kind == Call::kReplace;
            if (call.kind != Call::kOpen && !replaces) {
                return;
            }
            const std::string& path = replaces ? call.other_path : call.path;
            const std::string name = path.substr(path.rfind('\\') + 1);
            if (std::find(names.begin(), names.end(), name) == names.end()) {
                return;
            }
            Note(name + (replaces || call.opens_to_write ? " written" : " read"));
        };
    }
    void Note(const std::string& line) { lines_.push_back(line); }
    // What was noted, without lines that only say the last one again.
    std::vector<std::string> Lines() const {
        std::vector<std::string> lines = lines_;
        lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
        return lines;
    }

  private:
    class View : public forms::ControlView {
      public:
        View(Diary& diary, forms::Control& control) : diary_(diary), control_(control) {
            control.Bind(this);
        }
        ~View() override { control_.Bind(nullptr); }
        View(const View&) = delete;
        View& operator=(const View&) = delete;
        void Changed(forms::Aspect aspect) override {
            diary_.Note(control_.name() + " " + Word(aspect));
        }

      private:
        std::string Word(forms::Aspect aspect) const {
            switch (aspect) {
                case forms::Aspect::kVisible:
                    return control_.Visible() ? "shown" : "hidden";
                case forms::Aspect::kItems:
                    return "items";
                case forms::Aspect::kSelection:
                    return "selection";
                case forms::Aspect::kValue:
                    return "value";
                case forms::Aspect::kFocus:
                    return "focus";
                case forms::Aspect::kScroll:
                    return "scroll";
                case forms::Aspect::kRedraw:
                    return "redraw";
                default:
                    return "changed";
            }
        }
        Diary& diary_;
        forms::Control& control_;
    };

    ScriptedDesktop& desktop_;
    std::vector<std::string> lines_;
    std::vector<std::unique_ptr<View>> views_;
    std::vector<FaultPlan*> plans_;
};

}  // namespace vantrel::test
