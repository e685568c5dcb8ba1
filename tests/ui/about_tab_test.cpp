#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/program_fixture.h"
#include "ui/Frm_Mainmenu.h"

namespace vantrel::test {
namespace {

using Color = forms::Label::Color;

class About : public ProgramFixture {
  protected:
    About() {
        desktop.Load(window);
        desktop.SetPointer(forms::Pointer::kDefault);
    }
    static constexpr int kBackup = 0;
    static constexpr int kAbout = 5;
    Frm_Mainmenu window{program};
    AboutTab& tab = window.About;
};

TEST_F(About, VersionFieldsAreEmptyUntilTheTabIsShown) {
    EXPECT_EQ(tab.Fld_Version.Caption(), "");
    window.TAB_Backup.SetTab(kAbout);
    EXPECT_EQ(tab.Fld_Version.Caption(), "3.0");
    EXPECT_EQ(tab.Fld_Build.Caption(), "6");
}

TEST_F(About, PointerIsAnHourglassWhileTheFieldsAreFilled) {
    std::vector<std::string> steps;
    desktop.on_step = [&](const std::string& step) {
        steps.push_back(step + (tab.Fld_Build.Caption().empty() ? "" : ", filled"));
    };
    window.TAB_Backup.SetTab(kAbout);
    EXPECT_THAT(steps, ::testing::ElementsAre("pointer hourglass", "pointer default, filled"));
}

TEST_F(About, WebAddressFlashesOnlyWhileTheTabIsShown) {
    EXPECT_FALSE(tab.Tim_Flash.Enabled());
    window.TAB_Backup.SetTab(kAbout);
    EXPECT_TRUE(tab.Tim_Flash.Enabled());
    window.TAB_Backup.SetTab(kBackup);
    EXPECT_FALSE(tab.Tim_Flash.Enabled());
}

TEST_F(About, EachTickChangesBetweenButtonTextAndHighlightText) {
    EXPECT_EQ(tab.Tim_Flash.Interval(), std::chrono::milliseconds(500));
    window.TAB_Backup.SetTab(kAbout);
    EXPECT_EQ(tab.Lbl_WebAddress.ForeColor(), Color::kButtonText);
    tab.Tim_Flash.Elapse();
    EXPECT_EQ(tab.Lbl_WebAddress.ForeColor(), Color::kHighlightText);
    tab.Tim_Flash.Elapse();
    EXPECT_EQ(tab.Lbl_WebAddress.ForeColor(), Color::kButtonText);
}

TEST_F(About, ClickHandsTheShownAddressToTheShell) {
    tab.Lbl_WebAddress.SetCaption("https://www.example.org/");
    tab.Lbl_WebAddress.UserClick();
    EXPECT_EQ(machine.shell.opened, std::vector<std::string>{"https://www.example.org/"});
    EXPECT_EQ(machine.shell.verbs, std::vector{platform::ShellVerb::kDefault});
}

TEST_F(About, NothingIsToldWhenTheAddressDoesNotOpen) {
    machine.shell.answer = 2;
    tab.Lbl_WebAddress.UserClick();
    EXPECT_TRUE(desktop.boxes.empty());
}

}  // namespace
}  // namespace vantrel::test
