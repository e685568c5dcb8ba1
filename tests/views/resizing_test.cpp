// Windows that the user resizes: their controls follow, and the next run shows them as they were.
#include "tests/support/test_machine.h"
#include "tests/views/real_controls.h"
#include "tests/views/win32_user.h"
#include "tests/views/windows_under_test.h"

namespace vantrel::test {

namespace {

RECT OuterOf(HWND window) {
    RECT area{};
    GetWindowRect(window, &area);
    return area;
}

RECT PlaceOf(const forms::Control& control) {
    const HWND handle = HandleOf(control);
    RECT area = OuterOf(handle);
    MapWindowPoints(nullptr, GetParent(handle), reinterpret_cast<POINT*>(&area), 2);
    return area;
}

Lines Numbers(const RECT& area) {
    return {std::to_string(area.left), std::to_string(area.top), std::to_string(area.right),
            std::to_string(area.bottom)};
}

// By how much each edge has moved, as "left top right bottom".
std::string Moved(const RECT& before, const RECT& after) {
    return std::to_string(after.left - before.left) + " " + std::to_string(after.top - before.top) +
           " " + std::to_string(after.right - before.right) + " " +
           std::to_string(after.bottom - before.bottom);
}

void Enlarge(HWND top, int wider, int higher) {
    const RECT outer = OuterOf(top);
    SetWindowPos(top, nullptr, 0, 0, outer.right - outer.left + wider,
                 outer.bottom - outer.top + higher, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

class Resizing : public ::testing::Test {
  protected:
    // A run of the program from the opening of its main window to its end.
    class Run {
      public:
        explicit Run(Resizing& test) : test_(test), window(test.program) {
            test_.user.desktop().ShowModeless(window);
            test_.user.desktop().DoEvents();
        }
        ~Run() { test_.user.desktop().Unload(window); }
        HWND top() const { return TopOf(window); }

      private:
        Resizing& test_;

      public:
        MainWindow window;
    };

    std::string& Stored(const std::string& window) {
        return settings.values["Startup/" + window + " Placement"];
    }

    std::unique_ptr<MachineUnderTest> machine = NewMachineUnderTest();
    TestProcess process;
    TestSettings settings;
    platform::Machine with_settings =
        With({.process = &process, .settings = &settings}, machine->machine());
    Win32User user;
    forms::Program program{with_settings, user.desktop()};
};

TEST_F(Resizing, ControlsFollowTheirWindow) {
    const Run run(*this);
    const MainWindow& window = run.window;
    const std::vector<std::pair<const forms::Control*, std::string>> wanted = {
        {&window.TAB_Backup, "0 0 200 100"},    {&window.Sta_Mainmenu, "0 100 200 100"},
        {&window.Cmb_BackupSet, "0 0 100 0"},   {&window.Cmd_Backup, "200 100 200 100"},
        {&window.Fil_INI, "0 0 50 100"},        {&window.Fld_INI, "50 0 200 100"},
        {&window.Fld_Log, "0 0 200 100"},       {&window.TV_SecureMode, "0 0 100 100"},
        {&window.Fra_Version, "200 0 200 0"},   {&window.Img_Set, "0 0 0 0"},
        {&window.SSP_PleaseWait, "50 50 50 50"}};
    std::vector<RECT> before;
    for (const auto& [control, moves] : wanted) {
        before.push_back(PlaceOf(*control));
    }
    Enlarge(run.top(), 200, 100);
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        EXPECT_EQ(wanted[i].second, Moved(before[i], PlaceOf(*wanted[i].first)))
            << wanted[i].first->name();
    }
    Enlarge(run.top(), -200, -100);
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        EXPECT_EQ("0 0 0 0", Moved(before[i], PlaceOf(*wanted[i].first)))
            << wanted[i].first->name();
    }
}

TEST_F(Resizing, PagesFillTheTabsOfAnEnlargedWindow) {
    const Run run(*this);
    Enlarge(run.top(), 200, 100);
    RECT inside = OuterOf(HandleOf(run.window.TAB_Backup));
    Send(HandleOf(run.window.TAB_Backup), TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&inside));
    EXPECT_EQ(Numbers(inside), Numbers(OuterOf(GetParent(HandleOf(run.window.Cmd_Backup)))));
}

TEST_F(Resizing, DesignedSizeIsTheSmallest) {
    const Run run(*this);
    const RECT designed = OuterOf(run.top());
    Enlarge(run.top(), -300, -300);
    EXPECT_EQ(Numbers(designed), Numbers(OuterOf(run.top())));
}

// The widths only: the frame of the window, which is a part of the heights, does not scale here.
TEST_F(Resizing, GrowthScalesWithTheDpi) {
    const Run run(*this);
    const auto right_edge_at = [&](int dpi) {
        ChangeDpi(run.top(), dpi);
        return PlaceOf(run.window.Fld_Log).right;
    };
    const LONG designed_at_120 = right_edge_at(120);
    const LONG designed = right_edge_at(96);
    Enlarge(run.top(), 200, 0);
    EXPECT_EQ(250, right_edge_at(120) - designed_at_120);
    EXPECT_EQ(200, right_edge_at(96) - designed);
}

TEST_F(Resizing, SizeAndPositionComeBack) {
    RECT left{};
    {
        const Run run(*this);
        SetWindowPos(run.top(), nullptr, 11, 22, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
        Enlarge(run.top(), 200, 100);
        left = OuterOf(run.top());
    }
    const Run again(*this);
    EXPECT_EQ(Numbers(left), Numbers(OuterOf(again.top())));
    EXPECT_EQ(11, left.left);
}

TEST_F(Resizing, MaximizedWindowComesBackMaximizedAndKnowsItsOtherSize) {
    RECT normal{};
    {
        const Run run(*this);
        Enlarge(run.top(), 60, 40);
        normal = OuterOf(run.top());
        ShowWindow(run.top(), SW_MAXIMIZE);
        program.desktop.DoEvents();
        EXPECT_LT(normal.right - normal.left, ClientOf(run.top()).right);
    }
    const Run again(*this);
    EXPECT_TRUE(IsZoomed(again.top()));
    ShowWindow(again.top(), SW_RESTORE);
    program.desktop.DoEvents();
    EXPECT_EQ(Numbers(normal), Numbers(OuterOf(again.top())));
}

TEST_F(Resizing, PositionOnAScreenThatIsGoneIsCorrected) {
    Stored("Frm_Mainmenu") = "-5000 90000 -4000 90900 96 normal";
    const Run run(*this);
    const RECT outer = OuterOf(run.top());
    const RECT screen{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    EXPECT_EQ(1000, outer.right - outer.left);
    RECT seen{};
    IntersectRect(&seen, &screen, &outer);
    EXPECT_EQ(Numbers(outer), Numbers(seen));
}

TEST_F(Resizing, SizeThatIsTooSmallBecomesTheDesignedSize) {
    RECT designed{};
    {
        const Run run(*this);
        designed = OuterOf(run.top());
    }
    Stored("Frm_Mainmenu") = "0 0 10 10 96 normal";
    const Run run(*this);
    EXPECT_EQ(Moved(designed, designed),
              Moved({0, 0, designed.right - designed.left, designed.bottom - designed.top},
                    OuterOf(run.top())));
}

TEST_F(Resizing, UnattendedRunNeitherReadsNorWritesPlacements) {
    Stored("Frm_Mainmenu") = "0 0 1100 900 96 normal";
    process.command_line = "DAILY.INI";
    {
        const Run run(*this);
        EXPECT_NE(1100, OuterOf(run.top()).right);
        Enlarge(run.top(), 10, 10);
    }
    EXPECT_EQ(0, settings.reads);
    EXPECT_EQ(0, settings.writes);
}

TEST_F(Resizing, FoldersOfADialogTakeItsGrowth) {
    WhereWindow dialog(program);
    program.desktop.ShowModeless(dialog);
    const RECT list = PlaceOf(dialog.Dir_DirList);
    const RECT ok = PlaceOf(dialog.Cmd_Ok);
    Enlarge(TopOf(dialog), 120, 80);
    EXPECT_EQ("0 0 120 80", Moved(list, PlaceOf(dialog.Dir_DirList)));
    EXPECT_EQ("120 80 120 80", Moved(ok, PlaceOf(dialog.Cmd_Ok)));
    program.desktop.Unload(dialog);
}

TEST_F(Resizing, RunWindowIsResizedAndComesBackInThatSize) {
    const Run run(*this);
    RECT before{};
    RECT list{};
    {
        RunWindow backup(program);
        program.desktop.ShowModeless(backup);
        list = PlaceOf(backup.Lst_Details);
        Enlarge(TopOf(backup), 120, 80);
        before = OuterOf(TopOf(backup));
        const RECT enlarged = PlaceOf(backup.Lst_Details);
        EXPECT_EQ(120, enlarged.right - list.right);
        EXPECT_NEAR(80, enlarged.bottom - list.bottom, 15);  // in full rows
        program.desktop.Unload(backup);
    }
    RunWindow backup(program);
    program.desktop.ShowModeless(backup);
    const RECT after = OuterOf(TopOf(backup));
    EXPECT_EQ(before.right - before.left, after.right - after.left);
    EXPECT_EQ(before.bottom - before.top, after.bottom - after.top);
    program.desktop.Unload(backup);
}

}  // namespace

}  // namespace vantrel::test
