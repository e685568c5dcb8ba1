// A person in front of real windows: works them with posted mouse and keyboard messages, and reads
// what they show, never the objects.
#pragma once

#include <functional>
#include <map>

#include "tests/views/control_user.h"
#include "tests/views/menu_person.h"
#include "tests/views/real_controls.h"
#include "views/win32/win32_desktop.h"

namespace vantrel::test {

class Win32User : public ControlUser {
  public:
    Win32User();
    forms::Desktop& desktop() override { return desktop_; }

    void Click(forms::Control& control) override;
    void ClickTwice(forms::Control& control) override;
    void RightClick(forms::Control& control) override;
    void Choose(forms::Control& list, int index) override;
    void DoubleClick(forms::FolderList& list, int index) override;
    void Press(forms::Control& control, Key key) override;
    void ChooseNode(forms::Tree& tree, int node) override;
    void Type(forms::TextBox& box, const std::string& keys) override;
    void ClickTab(forms::Tabs& tabs, int tab) override;
    void ChooseInMenuBar(forms::MenuItem& entry) override;
    void ChooseInPopUp(forms::MenuItem& entry, const forms::Event& open) override;
    void LetTimePass(forms::Form& form) override;

    std::string Text(forms::Control& control) override;
    bool Enabled(forms::Control& control) override;
    bool Visible(forms::Control& control) override;
    bool HasKeyboard(forms::Control& control) override;
    std::vector<std::string> Items(forms::Control& list) override;
    int Highlighted(forms::Control& list) override;
    bool Checked(forms::CheckBox& box) override;
    forms::Label::Color Color(forms::Label& label) override;
    double Percent(forms::Control& bar) override;
    bool Playing(forms::Animation& clip) override;
    int ShownTab(forms::Tabs& tabs) override;
    std::vector<std::string> TabCaptions(forms::Tabs& tabs) override;
    std::vector<std::string> Nodes(forms::Tree& tree) override;
    std::vector<int> Pictures(forms::Tree& tree) override;
    std::string SelectedNode(forms::Tree& tree) override;

    // Handles events until `done()`. Throws when that does not happen in time.
    void WaitUntil(const std::function<bool()>& done);

  private:
    // Everything that waits is handled first, then the control is looked for.
    HWND Settled(const forms::Control& control);
    void Click(const forms::Control& control, POINT at, Mouse how);
    // The middle of an entry, brought into view.
    POINT PlaceOf(HWND list, int index);
    SeenEntry LookAtEntry(forms::Control& entry);

    views::Win32Desktop desktop_;
    // Entries of pop-up menus, as they were when the menu was open last.
    std::map<int, SeenEntry> in_pop_ups_;
};

}  // namespace vantrel::test
