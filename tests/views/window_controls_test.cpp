// What belongs to a whole window: its tabs, menus and timers.
#include "tests/views/windows_under_test.h"

namespace vantrel::test {

namespace {

class TabControls : public WindowFixture<MainWindow> {
  protected:
    forms::Tabs& tabs = window.TAB_Backup;
};
class Menus : public WindowFixture<MainWindow> {
  protected:
    forms::Event PopsUp() {
        return [this] { window.Menu_Options.PopUp(); };
    }
};
class Timers : public WindowFixture<MainWindow> {};

TEST_F(TabControls, BearTheirCaptionsAndStartAtTheFirst) {
    EXPECT_EQ((Lines{"Backup", "Restore", "INI Edit", "Log", "Secure Data", "About"}),
              user->TabCaptions(tabs));
    EXPECT_EQ(0, user->ShownTab(tabs));
    EXPECT_EQ(Lines{}, Happened());
}

TEST_F(TabControls, ShownByTheUserRaiseClickWithTheTabBefore) {
    user->ClickTab(tabs, 2);
    user->ClickTab(tabs, 5);
    EXPECT_EQ((Lines{"TAB_Backup Click 0", "TAB_Backup Click 2"}), Happened());
    EXPECT_EQ(5, tabs.Tab());
    EXPECT_EQ(5, user->ShownTab(tabs));
}

TEST_F(TabControls, ShownByTheProgramRaiseClickWithTheTabBefore) {
    tabs.SetTab(3);
    EXPECT_EQ(Lines{"TAB_Backup Click 0"}, Happened());
    EXPECT_EQ(3, user->ShownTab(tabs));
}

TEST_F(TabControls, ShowingTheShownOneRaisesNothing) {
    tabs.SetTab(3);
    Happened();
    user->ClickTab(tabs, 3);
    tabs.SetTab(3);
    EXPECT_EQ(Lines{}, Happened());
    EXPECT_EQ(3, user->ShownTab(tabs));
}

TEST_F(TabControls, OnesThatAreNotThereRaise380AndShowNothingNew) {
    EXPECT_EQ(380, ErrorOf([&] { tabs.SetTab(6); }));
    EXPECT_EQ(380, ErrorOf([&] { tabs.SetTab(-1); }));
    EXPECT_EQ(0, user->ShownTab(tabs));
    EXPECT_EQ(Lines{}, Happened());
}

TEST_F(TabControls, HandlerMayGoBack) {
    tabs.Click = [&](int before) { tabs.SetTab(before == 0 ? 0 : tabs.Tab()); };
    user->ClickTab(tabs, 4);
    EXPECT_EQ(0, tabs.Tab());
    EXPECT_EQ(0, user->ShownTab(tabs));
}

TEST_F(TabControls, DisabledAreNotTurnedByTheUser) {
    tabs.SetEnabled(false);
    user->ClickTab(tabs, 1);
    EXPECT_EQ(Lines{}, Happened());
    EXPECT_EQ(0, user->ShownTab(tabs));
}

TEST_F(Menus, EntryOfTheBarChosenByTheUserRaisesOneClick) {
    user->ChooseInMenuBar(window.Menu_File_Exit);
    EXPECT_EQ(Lines{"Menu_File_Exit Click"}, Happened());
    EXPECT_EQ("E&xit", user->Text(window.Menu_File_Exit));
}

TEST_F(Menus, DisabledEntryOfTheBarCannotBeChosen) {
    window.Menu_File_Exit.SetEnabled(false);
    EXPECT_FALSE(user->Enabled(window.Menu_File_Exit));
    user->ChooseInMenuBar(window.Menu_File_Exit);
    EXPECT_EQ(Lines{}, Happened());
}

TEST_F(Menus, EnabledAgainTheEntryIsChosenAgain) {
    window.Menu_File_Exit.SetEnabled(false);
    window.Menu_File_Exit.SetEnabled(true);
    EXPECT_TRUE(user->Enabled(window.Menu_File_Exit));
    user->ChooseInMenuBar(window.Menu_File_Exit);
    EXPECT_EQ(Lines{"Menu_File_Exit Click"}, Happened());
}

TEST_F(Menus, EntryOfAPopUpHasRunWhenThePopUpIsClosed) {
    Lines when_closed;
    user->ChooseInPopUp(window.Menu_Options_Delete, [&] {
        window.Menu_Options.PopUp();
        when_closed = window.happened;
    });
    EXPECT_EQ(1, window.Menu_Options.PopUps());
    EXPECT_EQ(Lines{"Menu_Options_Delete Click"}, when_closed);
    EXPECT_EQ(Lines{"Menu_Options_Delete Click"}, Happened());
}

TEST_F(Menus, EntryOfAPopUpBearsTheObjectsCaption) {
    window.Menu_Options_Delete.SetCaption("&Delete Everything");
    user->ChooseInPopUp(window.Menu_Options_Delete, PopsUp());
    EXPECT_EQ("&Delete Everything", user->Text(window.Menu_Options_Delete));
    EXPECT_TRUE(user->Enabled(window.Menu_Options_Delete));
}

TEST_F(Menus, DisabledEntryOfAPopUpCannotBeChosen) {
    window.Menu_Options_Delete.SetEnabled(false);
    user->ChooseInPopUp(window.Menu_Options_Delete, PopsUp());
    EXPECT_FALSE(user->Enabled(window.Menu_Options_Delete));
    EXPECT_EQ(Lines{}, Happened());
}

TEST_F(Menus, ErrorOfAnEntryOfAPopUpReachesTheProgramOnce) {
    window.Menu_Options_Delete.Click = [] { RaiseError(error_number::kPermissionDenied); };
    user->ChooseInPopUp(window.Menu_Options_Delete, PopsUp());
    EXPECT_EQ(std::vector{70}, user->errors);
}

TEST_F(Timers, StartSwitchedOff) {
    user->LetTimePass(window);
    EXPECT_EQ(Lines{}, Happened());
}

TEST_F(Timers, TickOnlyWhileSwitchedOn) {
    window.Tim_Flash.SetEnabled(true);
    user->LetTimePass(window);
    EXPECT_LE(1u, Happened().size());
    user->LetTimePass(window);
    EXPECT_LE(1u, Happened().size());
    window.Tim_Flash.SetEnabled(false);
    Happened();
    user->LetTimePass(window);
    EXPECT_EQ(Lines{}, Happened());
}

TEST_F(Timers, HandlerMaySwitchItsTimerOff) {
    int ticks = 0;
    window.Tim_Flash.Tick = [&] {
        ++ticks;
        window.Tim_Flash.SetEnabled(false);
    };
    window.Tim_Flash.SetEnabled(true);
    user->LetTimePass(window);
    user->LetTimePass(window);
    EXPECT_EQ(1, ticks);
}

}  // namespace

}  // namespace vantrel::test
