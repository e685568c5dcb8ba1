// Hidden and disabled: every control of every window, one after the other.
#include <functional>

#include "tests/views/windows_under_test.h"

namespace vantrel::test {

namespace {

template <typename Window>
class States : public WindowFixture<Window> {
  protected:
    static bool IsSeen(const forms::Control& control) {
        return control.kind() != forms::Kind::kTimer && control.kind() != forms::Kind::kMenu;
    }
    // A line for each control that can be seen: enabled, visible.
    Lines Describe(const std::function<bool(forms::Control&)>& is_enabled,
                   const std::function<bool(forms::Control&)>& is_visible) {
        Lines lines;
        for (forms::Control* control : this->window.controls()) {
            if (IsSeen(*control)) {
                lines.push_back(control->name() +
                                (is_enabled(*control) ? " enabled" : " disabled") +
                                (is_visible(*control) ? " visible" : " hidden"));
            }
        }
        return lines;
    }
    // As the user sees them, and as their objects have it.
    Lines Look() {
        return Describe([this](auto& each) { return this->user->Enabled(each); },
                        [this](auto& each) { return this->user->Visible(each); });
    }
    Lines LookAtObjects() {
        return Describe([](auto& each) { return each.Enabled(); },
                        [](auto& each) { return each.Visible(); });
    }
    // After `changed` was: each control is as its object is, and not all are as before.
    void ExpectStatesOfObjects(const Lines& before, const forms::Control& changed) {
        const Lines seen = Look();
        EXPECT_EQ(LookAtObjects(), seen);
        EXPECT_NE(before, seen) << changed.name();
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
