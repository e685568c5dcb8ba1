#include "forms/controls.h"

#include "forms/lists.h"
#include "tests/forms/bare_form.h"

namespace vantrel::test {

namespace {

class Controls : public FormsFixture {
  protected:
    int raised = 0;
    forms::Event Count() {
        return [this] { ++raised; };
    }
};

TEST_F(Controls, AreFoundOnTheirFormByName) {
    forms::Button ok(form, "Cmd_Ok", "OK");
    EXPECT_EQ(&ok, form.Find("Cmd_Ok"));
    EXPECT_EQ(nullptr, form.Find("Cmd_ok"));
}

TEST_F(Controls, WindowIsNotifiedOnceWhenTheOutermostHandlerHasEnded) {
    struct Notified : BareForm {
        using BareForm::BareForm;
        void AfterEvent() override { ++events; }
        int events = 0;
    } window(program);
    forms::TextBox text(window, "Fld_INI");
    forms::Button button(window, "Cmd_Ok", "OK");
    text.Change = [] {};
    button.Click = [&] {
        text.SetText("a");
        EXPECT_EQ(0, window.events);
    };
    button.UserPress();
    EXPECT_EQ(1, window.events);
}

TEST_F(Controls, LineOfAStatusBarIsItsCaption) {
    forms::StatusBar bar(form, "Sta_Mainmenu");
    RecordingView view;
    bar.Bind(&view);
    bar.SetLine("Missing folder: C:\\Data.", "C:\\Data");
    bar.SetNote("F1");
    bar.SetLine("Missing folder: C:\\Data.", "C:\\Data");
    EXPECT_EQ("Missing folder: C:\\Data.", bar.Caption());
    EXPECT_EQ("C:\\Data", bar.Path());
    EXPECT_EQ("F1", bar.Note());
    EXPECT_EQ(2u, view.changes.size()) << "the same line once";
}

TEST_F(Controls, TextChangesOnlyWhenItBecomesAnother) {
    forms::TextBox text(form, "Fld_INI", true);
    text.Change = Count();
    text.SetText("a");
    text.SetText("a");
    text.UserType("a");
    EXPECT_EQ(1, raised);
    text.UserType("ab");
    EXPECT_EQ(2, raised);
    EXPECT_EQ("ab", text.Text());
}

TEST_F(Controls, AppendingToATextIsAChangeUnlessNothingIsAppended) {
    forms::TextBox text(form, "Fld_INI", true);
    text.Change = Count();
    text.Append("a");
    text.Append("b");
    text.Append("");
    EXPECT_EQ(2, raised);
    EXPECT_EQ("ab", text.Text());
}

TEST_F(Controls, ViewHearsOnlyRealChanges) {
    forms::Label label(form, "Lbl_Version", "Version");
    RecordingView view;
    label.Bind(&view);
    label.SetCaption("Version");
    label.SetVisible(true);
    EXPECT_TRUE(view.changes.empty());
    label.SetCaption("Version 3.0.6");
    label.SetVisible(false);
    EXPECT_EQ((std::vector{forms::Aspect::kText, forms::Aspect::kVisible}), view.changes);
}

TEST_F(Controls, HandlersAreCountedWhileTheyRunAlsoWhenTheyFail) {
    forms::Button button(form, "Cmd_Ok", "OK");
    int seen = 0;
    button.Click = [&] {
        seen = form.running_handlers;
        RaiseError(error_number::kPathNotFound);
    };
    EXPECT_EQ(76, ErrorOf([&] { button.UserPress(); }));
    EXPECT_EQ(1, seen);
    EXPECT_EQ(0, form.running_handlers);
}

TEST_F(Controls, FocusIsKnownToTheForm) {
    forms::TextBox text(form, "Fld_Log", true, true);
    forms::Button button(form, "Cmd_Refresh", "&Refresh");
    EXPECT_EQ(nullptr, form.ActiveControl());
    text.SetFocus();
    button.SetFocus();
    EXPECT_EQ(&button, form.ActiveControl());
}

TEST_F(Controls, TreeNodesCountFromOneAndNeedTheirParent) {
    forms::Tree tree(form, "TV_SecureMode");
    EXPECT_EQ(1, tree.Add({.text = "Data", .tag = "C:\\Data"}));
    EXPECT_EQ(2, tree.Add({.text = "Sub", .tag = "C:\\Data\\Sub", .parent = 1}));
    EXPECT_EQ(380, ErrorOf([&] { tree.Add({.text = "Lost", .tag = "", .parent = 3}); }));
    EXPECT_EQ(2, tree.Count());
    EXPECT_EQ(1, tree.At(2).parent);
    tree.SetImages(2, 3, 3);
    EXPECT_EQ(3, tree.At(2).image);
    tree.Select(2);
    tree.Clear();
    EXPECT_EQ(0, tree.Selected());
    EXPECT_EQ(380, ErrorOf([&] { tree.Select(1); }));
}

TEST_F(Controls, EntriesOfAListOutOfRangeReadAsEmpty) {
    forms::ComboBox combo(form, "Cmb_BackupSet");
    combo.Add("Daily.ini");
    for (const int index : {1, -1}) {
        EXPECT_EQ("", combo.Item(index)) << index;
    }
}

TEST_F(Controls, ClearingAListNotifiesTheViewAndRaisesNothing) {
    forms::ComboBox combo(form, "Cmb_BackupSet");
    combo.Add("Daily.ini");
    combo.SetIndex(0);
    combo.Click = Count();
    RecordingView view;
    combo.Bind(&view);
    combo.Clear();
    EXPECT_EQ(0, combo.Count());
    EXPECT_EQ(-1, combo.Index());
    EXPECT_EQ(std::vector{forms::Aspect::kItems}, view.changes);
    EXPECT_EQ(0, raised);
}

}  // namespace

}  // namespace vantrel::test
