// The user of the program's windows: the actions on each kind of control, and its visible state.
// The suite uses controls through this class and their objects only. Each build links either
// plain_user.cpp, which works on the objects alone, or win32_user.cpp, which works real windows.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "forms/controls.h"
#include "forms/file_lists.h"
#include "forms/form.h"
#include "forms/lists.h"

namespace vantrel::test {

enum class Key { kBlank, kEnter, kDown };

class ControlUser {
  public:
    virtual ~ControlUser() = default;
    // Where the windows are shown.
    virtual forms::Desktop& desktop() = 0;
    // Numbers of the errors that came of what the person did.
    std::vector<int> errors;

    // Doing. What is hidden or disabled cannot be reached: then nothing happens, as with a real
    // mouse. The tab page that the control is on has to be in front.

    // On a button, a check box or a label; once, or twice so quickly that it is a double click.
    virtual void Click(forms::Control& control) = 0;
    virtual void ClickTwice(forms::Control& control) = 0;
    // On a file list or a tree, with the other button.
    virtual void RightClick(forms::Control& control) = 0;
    // Entry `index` of a combo, list box, drive list or file list, with the mouse. On a folder list
    // this is one click, which highlights.
    virtual void Choose(forms::Control& list, int index) = 0;
    virtual void DoubleClick(forms::FolderList& list, int index) = 0;
    // Takes the keyboard to the control and presses a key: a space on buttons and check boxes,
    // Enter on folder lists, the arrow down on all other lists.
    virtual void Press(forms::Control& control, Key key) = 0;
    virtual void ChooseNode(forms::Tree& tree, int node) = 0;
    // Key by key, at the end of the text. "\r" is Enter.
    virtual void Type(forms::TextBox& box, const std::string& keys) = 0;
    virtual void ClickTab(forms::Tabs& tabs, int tab) = 0;
    // Opens the menu in the menu bar and chooses an entry there.
    virtual void ChooseInMenuBar(forms::MenuItem& entry) = 0;
    // Runs `open`, which pops a menu up, and chooses an entry there; closes the menu without a
    // choice when the entry is disabled.
    virtual void ChooseInPopUp(forms::MenuItem& entry, const forms::Event& open) = 0;
    // Long enough for every timer that runs to tick.
    virtual void LetTimePass(forms::Form& form) = 0;

    // Seeing.

    // Caption or contents; the chosen entry of a combo.
    virtual std::string Text(forms::Control& control) = 0;
    virtual bool Enabled(forms::Control& control) = 0;
    // Whether it is to be seen where it stands; its tab page need not be the one in front.
    virtual bool Visible(forms::Control& control) = 0;
    virtual bool HasKeyboard(forms::Control& control) = 0;
    // Entries of any list.
    virtual std::vector<std::string> Items(forms::Control& list) = 0;
    // The highlighted entry of any list, -1 for none.
    virtual int Highlighted(forms::Control& list) = 0;
    virtual bool Checked(forms::CheckBox& box) = 0;
    virtual forms::Label::Color Color(forms::Label& label) = 0;
    // How much of a bar or a panel is filled; a screen shows it to the nearest pixel.
    virtual double Percent(forms::Control& bar) = 0;
    virtual bool Playing(forms::Animation& clip) = 0;
    virtual int ShownTab(forms::Tabs& tabs) = 0;
    virtual std::vector<std::string> TabCaptions(forms::Tabs& tabs) = 0;
    // A line for each node, from top to bottom: a space for each level, then its text.
    virtual std::vector<std::string> Nodes(forms::Tree& tree) = 0;
    // The picture number of each of these lines, 0 for none.
    virtual std::vector<int> Pictures(forms::Tree& tree) = 0;
    // Text of the selected node, "" for none.
    virtual std::string SelectedNode(forms::Tree& tree) = 0;
};

std::unique_ptr<ControlUser> NewControlUser();

}  // namespace vantrel::test
