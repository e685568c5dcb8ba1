#include "system/clsSystem.h"

#include "forms/control.h"
#include "tests/support/matchers.h"
#include "tests/support/program_fixture.h"

namespace vantrel::test {
namespace {

constexpr const char* kPage = "C:\\Vantrel\\guide.html";

class Guide : public ProgramFixture {
  protected:
    void InstallPage() { machine.PutFile(kPage, "<html></html>"); }
    void Ask() { ShowGuide(program, window); }
    std::vector<std::string> Told() {
        std::vector<std::string> texts;
        for (const forms::Box& box : desktop.boxes) {
            texts.push_back(box.text);
        }
        return texts;
    }
    forms::Form window{program, "Frm_Mainmenu"};
};

TEST_F(Guide, PageOfTheApplicationFolderIsHandedToTheShell) {
    InstallPage();
    Ask();
    EXPECT_THAT(machine.shell.opened, ElementsAre(kPage));
    EXPECT_THAT(machine.shell.verbs, ElementsAre(platform::ShellVerb::kOpen));
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(Guide, MissingPageIsToldWithItsPlaceAndNothingIsOpened) {
    Ask();
    EXPECT_THAT(Told(), ElementsAre("The Guide cannot be found.\r\n\r\nIt should be the file "
                                    "C:\\Vantrel\\guide.html"));
    EXPECT_EQ(desktop.boxes.at(0).title, "Guide");
    EXPECT_EQ(desktop.boxes.at(0).icon, forms::Icon::kExclamation);
    EXPECT_THAT(machine.shell.opened, IsEmpty());
}

TEST_F(Guide, FolderOfThatNameIsNoPage) {
    machine.MakeFolders(kPage);
    Ask();
    EXPECT_EQ(desktop.boxes.size(), 1u);
    EXPECT_THAT(machine.shell.opened, IsEmpty());
}

TEST_F(Guide, ShellAnswerOf32IsToldAnd33IsNot) {
    InstallPage();
    machine.shell.answer = 33;
    Ask();
    EXPECT_THAT(Told(), IsEmpty());
    machine.shell.answer = 32;
    Ask();
    EXPECT_THAT(Told(),
                ElementsAre("The Guide could not be opened.\r\n\r\nIt is a page for your Web "
                            "Browser, the file C:\\Vantrel\\guide.html"));
}

TEST_F(Guide, WhileAHandlerRunsThePageOpensButNoBoxHoldsItUp) {
    const forms::HandlerScope run(window);
    Ask();
    InstallPage();
    Ask();
    machine.shell.answer = 2;
    Ask();
    EXPECT_THAT(machine.shell.opened, ElementsAre(kPage, kPage));
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(Guide, AskedAgainInsideItsOwnBoxItTellsOnlyOnce) {
    desktop.on_box = [this](const forms::Box&) { Ask(); };
    Ask();
    EXPECT_EQ(desktop.boxes.size(), 1u);
    EXPECT_EQ(window.running_handlers, 0);
}

TEST_F(Guide, NothingHappensInAnUnattendedRun) {
    Unattended("DAILY.INI");
    Ask();
    InstallPage();
    Ask();
    EXPECT_THAT(machine.shell.opened, IsEmpty());
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

}  // namespace
}  // namespace vantrel::test
