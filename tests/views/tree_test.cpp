#include "tests/views/windows_under_test.h"

namespace vantrel::test {

namespace {

class Trees : public WindowFixture<MainWindow> {
  protected:
    Trees() {
        window.TAB_Backup.SetTab(MainWindow::kSecure);
        window.SSP_PleaseWait.SetVisible(false);
        documents = Add("Documents", 0);
        letters = Add("Letters", documents);
        music = Add("Music", 0);
        Happened();
    }
    int Add(const std::string& text, int parent, int image = 0) {
        return tree.Add({.text = text,
                         .tag = "C:\\" + text,
                         .parent = parent,
                         .image = image,
                         .selected_image = image});
    }
    void ExpectSelected(int node, const std::string& text) {
        EXPECT_EQ(node, tree.Selected());
        EXPECT_EQ(text, user->SelectedNode(tree));
    }
    forms::Tree& tree = window.TV_SecureMode;
    int documents, letters, music;
};

TEST_F(Trees, ShowNodesBelowTheirParentsInTheOrderOfAdding) {
    Add("Work", documents);
    EXPECT_EQ((Lines{"Documents", " Letters", " Work", "Music"}), user->Nodes(tree));
    EXPECT_EQ(Lines{}, Happened());
}

TEST_F(Trees, NodeWithoutItsParentRaises380AndIsNotShown) {
    EXPECT_EQ(380, ErrorOf([&] { Add("Lost", 9); }));
    EXPECT_EQ((Lines{"Documents", " Letters", "Music"}), user->Nodes(tree));
}

TEST_F(Trees, ShowThePicturesOfTheirNodes) {
    const int folder = Add("Folder", 0, 1);
    EXPECT_EQ((std::vector{0, 0, 0, 1}), user->Pictures(tree));
    tree.SetImages(folder, 3, 3);
    tree.SetImages(documents, 2, 2);
    EXPECT_EQ((std::vector{2, 0, 0, 3}), user->Pictures(tree));
}

TEST_F(Trees, StartWithoutASelection) { ExpectSelected(0, ""); }

TEST_F(Trees, NodeClickedByTheUserIsSelected) {
    user->ChooseNode(tree, letters);
    ExpectSelected(letters, "Letters");
    user->ChooseNode(tree, music);
    ExpectSelected(music, "Music");
    EXPECT_EQ(Lines{}, Happened());
}

TEST_F(Trees, NodeSelectedByTheProgramIsSeen) {
    tree.Select(letters);
    ExpectSelected(letters, "Letters");
    tree.Select(0);
    ExpectSelected(0, "");
    EXPECT_EQ(Lines{}, Happened());
}

TEST_F(Trees, SelectingWhatIsNotThereRaises380AndKeepsTheSelection) {
    tree.Select(music);
    EXPECT_EQ(380, ErrorOf([&] { tree.Select(4); }));
    ExpectSelected(music, "Music");
}

TEST_F(Trees, ClearedSelectNothing) {
    tree.Select(letters);
    tree.Clear();
    EXPECT_EQ(Lines{}, user->Nodes(tree));
    ExpectSelected(0, "");
}

TEST_F(Trees, FilledAgainShowOnlyTheNewNodes) {
    tree.Clear();
    for (const char* name : {"One", "Two", "Three", "Four"}) {
        Add(name, 0);
    }
    EXPECT_EQ((Lines{"One", "Two", "Three", "Four"}), user->Nodes(tree));
    user->ChooseNode(tree, 4);
    ExpectSelected(4, "Four");
}

TEST_F(Trees, AddingNodesKeepsTheSelection) {
    tree.Select(music);
    Add("Pictures", 0);
    ExpectSelected(music, "Music");
}

TEST_F(Trees, RightButtonRaisesMouseDownOnceAndKeepsTheSelection) {
    tree.Select(music);
    user->RightClick(tree);
    EXPECT_EQ(Lines{"TV_SecureMode MouseDown 2"}, Happened());
    ExpectSelected(music, "Music");
}

TEST_F(Trees, DisabledSelectNothing) {
    tree.SetEnabled(false);
    user->ChooseNode(tree, music);
    user->RightClick(tree);
    EXPECT_EQ(Lines{}, Happened());
    ExpectSelected(0, "");
}

}  // namespace

}  // namespace vantrel::test
