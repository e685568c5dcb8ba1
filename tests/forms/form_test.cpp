#include "forms/controls.h"
#include "tests/forms/bare_form.h"

namespace vantrel::test {

namespace {

class Forms : public FormsFixture {};

TEST_F(Forms, TellTheirViewOfCaptionBoxesAndRepainting) {
    RecordingView view;
    form.Bind(&view);
    form.SetCaption("Vantrel");
    form.DrawBox({0, 0, 1440, 60, 0, 0, 255});
    form.Refresh();
    EXPECT_EQ((std::vector{forms::Aspect::kText, forms::Aspect::kValue, forms::Aspect::kRedraw}),
              view.changes);
    ASSERT_EQ(1u, form.Boxes().size());
    EXPECT_EQ(1440, form.Boxes()[0].right);
    form.ClearBoxes();
    EXPECT_TRUE(form.Boxes().empty());
}

TEST_F(Forms, SizeIsWhatTheScreenTells) {
    EXPECT_EQ(0, form.Width());
    form.MarkSize(8250, 5850);
    EXPECT_EQ(8250, form.Width());
    EXPECT_EQ(5850, form.Height());
}

TEST_F(Forms, PopUpMenusAreOpenedByTheirView) {
    forms::MenuItem menu(form, "Menu_Options", "&Options");
    RecordingView view;
    menu.Bind(&view);
    menu.PopUp();
    EXPECT_EQ(std::vector{forms::Aspect::kPopUp}, view.changes);
    EXPECT_EQ(1, menu.PopUps());
}

TEST_F(Forms, ScrollingATextIsTheViewsWork) {
    forms::TextBox text(form, "Fld_Log", true, true);
    RecordingView view;
    text.Bind(&view);
    text.ScrollLines(1000);
    EXPECT_EQ(std::vector{forms::Aspect::kScroll}, view.changes);
    EXPECT_EQ(1000, text.ScrolledLines());
}

}  // namespace

}  // namespace vantrel::test
