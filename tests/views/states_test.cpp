// Hidden and disabled: every control of every window, one after the other.
#include "tests/views/windows_under_test.h"

namespace vantrel::test {

namespace {

template <typename Window>
class States : public WindowFixture<Window> {
  protected:
    static bool IsSeen(const forms::Control& control) {
        return control.kind() != forms::Kind::kTimer && control.kind() != forms::Kind::kMenu;
    }
    // What the user can tell of each control: enabled, visible.
    Lines Look() {
        Lines lines;
        for (forms::Control* control : this->window.controls()) {
            if (!IsSeen(*control)) {
                continue;
            }
            lines.push_back(control->name() +
                            (this->user->Enabled(*control) ? " enabled" : " disabled") +
                            (this->user->Visible(*control) ? " visible" : " hidden"));
        }
        return lines;
    }
    // After `changed` was: each control is as its object is, and not all are as before.
    void ExpectStatesOfObjects(const Lines& before, const forms::Control& changed) {
        const Lines seen = Look();
        EXPECT_EQ(LookAtObjects(), seen);
        EXPECT_NE(before, seen) << changed.name();
    }
    Lines LookAtObjects() {
        Lines lines;
        for (const forms::Control* control : this->window.controls()) {
            if (!IsSeen(*control)) {
                continue;
            }
            lines.push_back(control->name() + (control->Enabled() ? " enabled" : " disabled") +
                            (control->Visible() ? " visible" : " hidden"));
        }
        return lines;
    }
};

using Windows = ::testing::Types<MainWindow, RunWindow, OptionsWindow, WhereWindow>;
struct WindowNames {
    template <typename Window>
    static std::string GetName(int index) {
        return std::vector<std::string>{"Main", "Run", "Options", "Where"}.at(
            static_cast<std::size_t>(index));
    }
};
TYPED_TEST_SUITE(States, Windows, WindowNames);

TYPED_TEST(States, AtFirstAreThoseOfTheObjects) { EXPECT_EQ(this->LookAtObjects(), this->Look()); }

TYPED_TEST(States, DisablingOneIsSeenAndTouchesNoOther) {
    const Lines before = this->Look();
    for (forms::Control* control : this->window.controls()) {
        if (!this->IsSeen(*control)) {
            continue;
        }
        control->SetEnabled(false);
        this->ExpectStatesOfObjects(before, *control);
        control->SetEnabled(true);
        EXPECT_EQ(before, this->Look()) << control->name();
    }
    EXPECT_EQ(Lines{}, this->Happened());
}

TYPED_TEST(States, HidingOneIsSeenAndTouchesNoOther) {
    const Lines before = this->Look();
    for (forms::Control* control : this->window.controls()) {
        // The panel that another one stands on is a case of its own.
        if (!this->IsSeen(*control) || control->name() == "SSP_PleaseWait") {
            continue;
        }
        const bool visible = control->Visible();
        control->SetVisible(!visible);
        this->ExpectStatesOfObjects(before, *control);
        control->SetVisible(visible);
        EXPECT_EQ(before, this->Look()) << control->name();
    }
    EXPECT_EQ(Lines{}, this->Happened());
}

}  // namespace

}  // namespace vantrel::test
