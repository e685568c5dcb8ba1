// The drop-down list and the list box.
#include "tests/views/windows_under_test.h"

namespace vantrel::test {

namespace {

const Lines kSets{"Daily.ini", "Weekly.ini", "Letters.INI"};

class Combos : public WindowFixture<MainWindow> {
  protected:
    Combos() {
        for (const std::string& set : kSets) {
            combo.Add(set);
        }
    }
    // What is seen is what the object holds.
    void Expect(int index, const std::string& text) {
        EXPECT_EQ(index, combo.Index());
        EXPECT_EQ(text, combo.Text());
        EXPECT_EQ(index, user->Highlighted(combo));
        EXPECT_EQ(text, user->Text(combo));
    }
    forms::ComboBox& combo = window.Cmb_BackupSet;
};

class ListBoxes : public WindowFixture<RunWindow> {
  protected:
    ListBoxes() {
        for (const std::string& set : kSets) {
            list.Add(set);
        }
    }
    forms::ListBox& list = window.Lst_Details;
};

TEST_F(Combos, StartWithTheirEntriesAndNoSelection) {
    EXPECT_EQ(kSets, user->Items(combo));
    Expect(-1, "");
    EXPECT_EQ(Lines{}, Happened());
}

TEST_F(Combos, ChosenByTheUserRaiseOneClick) {
    user->Choose(combo, 2);
    EXPECT_EQ(Lines{"Cmb_BackupSet Click Letters.INI"}, Happened());
    Expect(2, "Letters.INI");
    user->Choose(combo, 0);
    EXPECT_EQ(Lines{"Cmb_BackupSet Click Daily.ini"}, Happened());
    Expect(0, "Daily.ini");
}

TEST_F(Combos, ArrowDownChoosesTheNextEntry) {
    combo.SetIndex(0);
    Happened();
    user->Press(combo, Key::kDown);
    user->Press(combo, Key::kDown);
    EXPECT_EQ((Lines{"Cmb_BackupSet Click Weekly.ini", "Cmb_BackupSet Click Letters.INI"}),
              Happened());
    Expect(2, "Letters.INI");
}

TEST_F(Combos, DisabledAreNotOpenedByTheUser) {
    combo.SetEnabled(false);
    user->Choose(combo, 1);
    EXPECT_EQ(Lines{}, Happened());
    Expect(-1, "");
}

TEST_F(Combos, ChosenFromCodeRaiseClickEachTimeAlsoForTheSameEntry) {
    combo.SetIndex(1);
    combo.SetIndex(1);
    EXPECT_EQ((Lines{"Cmb_BackupSet Click Weekly.ini", "Cmb_BackupSet Click Weekly.ini"}),
              Happened());
    Expect(1, "Weekly.ini");
}

TEST_F(Combos, ChoosingNoneRaisesClickAndEmptiesTheText) {
    combo.SetIndex(1);
    Happened();
    combo.SetIndex(-1);
    EXPECT_EQ(Lines{"Cmb_BackupSet Click"}, Happened());
    Expect(-1, "");
}

TEST_F(Combos, TextSelectsWithoutRegardToCaseAndIsThenAsListed) {
    combo.SetText("LETTERS.ini");
    EXPECT_EQ(Lines{"Cmb_BackupSet Click Letters.INI"}, Happened());
    Expect(2, "Letters.INI");
}

TEST_F(Combos, EmptyTextSelectsNoneAndRaisesClick) {
    combo.SetIndex(0);
    Happened();
    combo.SetText("");
    EXPECT_EQ(Lines{"Cmb_BackupSet Click"}, Happened());
    Expect(-1, "");
}

TEST_F(Combos, TextThatIsNoEntryRaises383AndShowsNothingNew) {
    combo.SetIndex(0);
    Happened();
    EXPECT_EQ(383, ErrorOf([&] { combo.SetText("Monthly.ini"); }));
    EXPECT_EQ(Lines{}, Happened());
    Expect(0, "Daily.ini");
    EXPECT_EQ(kSets, user->Items(combo));
}

TEST_F(Combos, IndexOutOfRangeRaises380AndShowsNothingNew) {
    combo.SetIndex(0);
    Happened();
    for (const int index : {3, -2}) {
        EXPECT_EQ(380, ErrorOf([&] { combo.SetIndex(index); })) << index;
    }
    EXPECT_EQ(Lines{}, Happened());
    Expect(0, "Daily.ini");
}

TEST_F(Combos, RemovingTheSelectedEntryLeavesNoSelectionEmptyTextAndNoEvent) {
    combo.SetIndex(1);
    Happened();
    combo.Remove(1);
    EXPECT_EQ(Lines{}, Happened());
    EXPECT_EQ((Lines{"Daily.ini", "Letters.INI"}), user->Items(combo));
    Expect(-1, "");
}

TEST_F(Combos, RemovingAnEarlierEntryKeepsTheSelectedOne) {
    combo.SetIndex(2);
    Happened();
    combo.Remove(0);
    EXPECT_EQ(Lines{}, Happened());
    Expect(1, "Letters.INI");
}

TEST_F(Combos, AddingAnEntryKeepsTheSelectedOneAndRaisesNothing) {
    combo.SetIndex(1);
    Happened();
    combo.Add("Monthly.ini");
    EXPECT_EQ(Lines{}, Happened());
    EXPECT_EQ("Monthly.ini", user->Items(combo).back());
    Expect(1, "Weekly.ini");
}

TEST_F(Combos, ClearedShowNothingAndRaiseNothing) {
    combo.SetIndex(1);
    Happened();
    combo.Clear();
    EXPECT_EQ(Lines{}, Happened());
    EXPECT_EQ(Lines{}, user->Items(combo));
    Expect(-1, "");
}

TEST_F(Combos, RefilledShowTheNewEntries) {
    combo.SetIndex(1);
    combo.Clear();
    combo.Add("One.ini");
    combo.SetText("one.INI");
    EXPECT_EQ(Lines{"One.ini"}, user->Items(combo));
    Expect(0, "One.ini");
}

TEST_F(Combos, PuttingTheSelectionBackRaisesNothing) {
    combo.RestoreIndex(2);
    EXPECT_EQ(Lines{}, Happened());
    Expect(2, "Letters.INI");
}

TEST_F(Combos, HandlerMayPutAnotherEntryInPlaceOfTheChosenOne) {
    combo.Click = [&] { combo.RestoreIndex(0); };
    user->Choose(combo, 2);
    Expect(0, "Daily.ini");
}

TEST_F(Combos, HandlerMayRemoveTheChosenEntry) {
    combo.Click = [&] { combo.Remove(combo.Index()); };
    user->Choose(combo, 1);
    EXPECT_EQ((Lines{"Daily.ini", "Letters.INI"}), user->Items(combo));
    Expect(-1, "");
}

TEST_F(Combos, ErrorOfTheHandlerLeavesTheChoiceAsItIs) {
    combo.Click = [] { RaiseError(error_number::kPathNotFound); };
    user->Choose(combo, 1);
    EXPECT_EQ(std::vector{76}, user->errors);
    Expect(1, "Weekly.ini");
}

TEST_F(ListBoxes, ShowWhatIsAdded) {
    EXPECT_EQ(kSets, user->Items(list));
    EXPECT_EQ(-1, user->Highlighted(list));
    for (int i = 0; i < 200; ++i) {
        list.Add(std::to_string(i));
    }
    const Lines items = user->Items(list);
    ASSERT_EQ(203u, items.size());
    EXPECT_EQ("199", items.back());
    EXPECT_EQ(Lines{}, Happened());
}

TEST_F(ListBoxes, ChosenFromCodeRaiseClickAndShowTheSelection) {
    list.SetIndex(1);
    EXPECT_EQ(Lines{"Lst_Details Click Weekly.ini"}, Happened());
    EXPECT_EQ(1, user->Highlighted(list));
    list.SetIndex(-1);
    EXPECT_EQ(Lines{"Lst_Details Click"}, Happened());
    EXPECT_EQ(-1, user->Highlighted(list));
}

TEST_F(ListBoxes, ChosenByTheUserRaiseOneClick) {
    user->Choose(list, 2);
    EXPECT_EQ(Lines{"Lst_Details Click Letters.INI"}, Happened());
    EXPECT_EQ(2, list.Index());
    EXPECT_EQ(2, user->Highlighted(list));
}

TEST_F(ListBoxes, RemovingEntriesKeepsTheRest) {
    list.SetIndex(2);
    Happened();
    list.Remove(0);
    EXPECT_EQ((Lines{"Weekly.ini", "Letters.INI"}), user->Items(list));
    EXPECT_EQ(1, user->Highlighted(list));
    list.Remove(1);
    EXPECT_EQ(-1, user->Highlighted(list));
    EXPECT_EQ(Lines{}, Happened());
}

TEST_F(ListBoxes, ClearedAndFilledAgainShowOnlyTheNewEntries) {
    EXPECT_EQ(3u, user->Items(list).size());
    list.Clear();
    for (const char* text : {"a", "b", "c", "d"}) {
        list.Add(text);
    }
    EXPECT_EQ((Lines{"a", "b", "c", "d"}), user->Items(list));
    EXPECT_EQ(-1, user->Highlighted(list));
}

}  // namespace

}  // namespace vantrel::test
