// Reading a drive's folders on the Secure Data tab, until Esc or the end of the session.
#include "protect/clsCfg.h"
#include "tests/support/matchers.h"
#include "tests/support/program_fixture.h"
#include "ui/Frm_Mainmenu.h"

namespace vantrel::test {
namespace {

class StoppedReading : public ProgramFixture {
  protected:
    StoppedReading() {
        machine.MakeFolders("C:\\Data\\Sub");
        desktop.ShowModeless(window);
    }

    forms::Tree& Nodes() { return window.Secure.TV_SecureMode; }

    static constexpr int kTab = 4;
    Frm_Mainmenu window{program};
};

TEST_F(StoppedReading, ShowsTheTreeAsReadSoFar) {
    desktop.on_paint = [this] { return Nodes().Count() == 1; };
    window.TAB_Backup.SetTab(kTab);
    ASSERT_EQ(Nodes().Count(), 1);
    EXPECT_TRUE(Nodes().Visible());
    EXPECT_FALSE(window.Secure.SSP_PleaseWait.Visible());
    EXPECT_EQ(desktop.pointer, forms::Pointer::kDefault);
    EXPECT_THAT(desktop.boxes, IsEmpty());
    Nodes().UserSelect(1);
    window.Menu_Secure_Add.UserChoose();
    EXPECT_THAT(clsCfg(program).ReturnProtected(), ElementsAre("C:\\DATA"));
}

TEST_F(StoppedReading, EndOfTheSessionLeavesAfterwards) {
    desktop.on_paint = [this] {
        desktop.EndSession();
        EXPECT_TRUE(window.Loaded()) << "no handler runs during the reading";
        return false;
    };
    desktop.on_events = {[this] { window.TAB_Backup.SetTab(kTab); }};
    desktop.DoEvents();
    EXPECT_EQ(Nodes().Count(), 0);
    EXPECT_FALSE(window.Loaded());
    EXPECT_THAT(LogRecords(), Contains(HasSubstr("Windows O/S is ending.")));
}

}  // namespace
}  // namespace vantrel::test
