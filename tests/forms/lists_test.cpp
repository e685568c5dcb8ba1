#include "forms/lists.h"

#include "tests/forms/bare_form.h"

namespace vantrel::test {

namespace {

class Lists : public FormsFixture {
  protected:
    Lists() {
        combo.Click = [this] { clicked.push_back(combo.Text()); };
        for (const char* text : {"Daily.ini", "Weekly.ini", "Letters.INI"}) {
            combo.Add(text);
        }
    }
    forms::ComboBox combo{form, "Cmb_BackupSet"};
    std::vector<std::string> clicked;
};

TEST_F(Lists, StartWithoutSelection) {
    EXPECT_EQ(-1, combo.Index());
    EXPECT_EQ("", combo.Text());
    EXPECT_TRUE(clicked.empty());
}

TEST_F(Lists, ChoosingFromCodeRaisesClick) {
    combo.SetIndex(1);
    EXPECT_EQ(std::vector<std::string>{"Weekly.ini"}, clicked);
}

TEST_F(Lists, ChoosingTheSelectedEntryAgainRaisesClickAgain) {
    combo.SetIndex(1);
    combo.SetIndex(1);
    EXPECT_EQ((std::vector<std::string>{"Weekly.ini", "Weekly.ini"}), clicked);
}

TEST_F(Lists, ChoosingNoneRaisesClickWithEmptyText) {
    combo.SetIndex(1);
    combo.SetIndex(-1);
    EXPECT_EQ((std::vector<std::string>{"Weekly.ini", ""}), clicked);
}

TEST_F(Lists, ChoosingWhatIsNotThereRaises380AndKeepsTheSelection) {
    combo.SetIndex(1);
    EXPECT_EQ(380, ErrorOf([&] { combo.SetIndex(3); }));
    EXPECT_EQ(380, ErrorOf([&] { combo.SetIndex(-2); }));
    EXPECT_EQ(1, combo.Index());
    EXPECT_EQ(1u, clicked.size());
}

TEST_F(Lists, ComboTextSelectsWithoutRegardToCaseAndBecomesTheEntryAsListed) {
    combo.SetText("LETTERS.ini");
    EXPECT_EQ(2, combo.Index());
    EXPECT_EQ("Letters.INI", combo.Text());
    EXPECT_EQ(std::vector<std::string>{"Letters.INI"}, clicked);
}

TEST_F(Lists, ComboTextThatIsNoEntryRaises383AndKeepsTheSelection) {
    combo.SetIndex(0);
    EXPECT_EQ(383, ErrorOf([&] { combo.SetText("Monthly.ini"); }));
    EXPECT_EQ("Daily.ini", combo.Text());
    EXPECT_EQ(1u, clicked.size());
}

TEST_F(Lists, EmptyComboTextSelectsNoneAndRaisesClick) {
    combo.SetIndex(0);
    combo.SetText("");
    EXPECT_EQ(-1, combo.Index());
    EXPECT_EQ(2u, clicked.size());
}

TEST_F(Lists, RemovingTheSelectedEntryLeavesNoSelectionAndNoEvent) {
    combo.SetIndex(1);
    combo.Remove(1);
    EXPECT_EQ(-1, combo.Index());
    EXPECT_EQ("", combo.Text());
    EXPECT_EQ(1u, clicked.size());
}

TEST_F(Lists, RemovingAnEarlierEntryKeepsTheSelectedOne) {
    combo.SetIndex(2);
    combo.Remove(0);
    EXPECT_EQ("Letters.INI", combo.Text());
    EXPECT_EQ(1u, clicked.size());
}

TEST_F(Lists, EntriesOutOfRangeReadAsEmpty) {
    EXPECT_EQ("", combo.Item(3));
    EXPECT_EQ("", combo.Item(-1));
    EXPECT_EQ("", combo.Item(combo.Index()));
}

TEST_F(Lists, PuttingTheSelectionBackRaisesNoClick) {
    combo.RestoreIndex(2);
    EXPECT_EQ("Letters.INI", combo.Text());
    EXPECT_TRUE(clicked.empty());
}

TEST_F(Lists, ClearingTellsTheViewAndRaisesNothing) {
    combo.SetIndex(1);
    RecordingView view;
    combo.Bind(&view);
    combo.Clear();
    EXPECT_EQ(0, combo.Count());
    EXPECT_EQ(-1, combo.Index());
    EXPECT_EQ(std::vector{forms::Aspect::kItems}, view.changes);
    EXPECT_EQ(1u, clicked.size());
}

}  // namespace

}  // namespace vantrel::test
