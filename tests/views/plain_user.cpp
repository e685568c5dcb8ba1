// The object is all there is: what it holds is what is seen.
#include <algorithm>
#include <map>

#include "common/error.h"
#include "tests/support/scripted_desktop.h"
#include "tests/views/control_user.h"

namespace vantrel::test {

namespace {

using forms::Kind;

template <typename T>
T& As(forms::Control& control) {
    return static_cast<T&>(control);
}

// Chooses an entry as soon as a menu pops up.
struct ChoosingView : forms::ControlView {
    explicit ChoosingView(forms::MenuItem& to_choose) : entry(to_choose) {}
    void Changed(forms::Aspect aspect) override {
        if (aspect == forms::Aspect::kPopUp) {
            entry.UserChoose();
        }
    }
    forms::MenuItem& entry;
};

class PlainUser : public ControlUser {
  public:
    forms::Desktop& desktop() override { return desktop_; }

    // The object itself knows whether the user may.
    void Click(forms::Control& control) override {
        Do([&] {
            switch (control.kind()) {
                case Kind::kButton:
                    return As<forms::Button>(control).UserPress();
                case Kind::kCheckBox:
                    return As<forms::CheckBox>(control).UserToggle();
                default:
                    return As<forms::Label>(control).UserClick();
            }
        });
    }
    void ClickTwice(forms::Control& control) override {
        Click(control);
        Click(control);
    }
    void RightClick(forms::Control& control) override {
        DoIfReached(control, [&] {
            if (control.kind() == Kind::kTree) {
                return As<forms::Tree>(control).UserMouseDown(2);
            }
            As<forms::FileList>(control).UserMouseDown(2);
        });
    }
    void Choose(forms::Control& list, int index) override {
        DoIfReached(list, [&] {
            switch (list.kind()) {
                case Kind::kDriveList:
                    As<forms::DriveList>(list).Reload();  // it opens
                    return As<forms::DriveList>(list).UserChoose(index);
                case Kind::kFolderList:
                    clicked_[&list] = {As<forms::FolderList>(list).Path(), index};
                    return;
                default:
                    return As<forms::List>(list).SetIndex(index);
            }
        });
    }
    void DoubleClick(forms::FolderList& list, int index) override {
        DoIfReached(list, [&] { list.UserOpen(index); });
    }
    void Press(forms::Control& control, Key key) override {
        if (key == Key::kBlank) {
            return Click(control);
        }
        if (key == Key::kDown) {
            return Choose(control, Highlighted(control) + 1);
        }
        DoubleClick(As<forms::FolderList>(control), Highlighted(control));
    }
    void ChooseNode(forms::Tree& tree, int node) override {
        DoIfReached(tree, [&] { tree.UserSelect(node); });
    }
    void Type(forms::TextBox& box, const std::string& keys) override {
        for (const char key : keys) {
            Do([&] { box.UserType(box.Text() + (key == '\r' ? "\r\n" : std::string(1, key))); });
        }
    }
    void ClickTab(forms::Tabs& tabs, int tab) override {
        DoIfReached(tabs, [&] { tabs.SetTab(tab); });
    }
    void ChooseInMenuBar(forms::MenuItem& entry) override {
        Do([&] { entry.UserChoose(); });
    }
    void ChooseInPopUp(forms::MenuItem& entry, const forms::Event& open) override {
        ChoosingView view(entry);
        for (forms::Control* control : entry.owner().controls()) {
            if (control->kind() == Kind::kMenu) {
                control->Bind(&view);
            }
        }
        Do(open);
        for (forms::Control* control : entry.owner().controls()) {
            if (control->kind() == Kind::kMenu) {
                control->Bind(nullptr);
            }
        }
    }
    void LetTimePass(forms::Form& form) override {
        for (forms::Control* control : form.controls()) {
            if (control->kind() == Kind::kTimer) {
                Do([&] { As<forms::Timer>(*control).Elapse(); });
            }
        }
    }

    std::string Text(forms::Control& control) override {
        switch (control.kind()) {
            case Kind::kTextBox:
                return As<forms::TextBox>(control).Text();
            case Kind::kComboBox:
                return As<forms::ComboBox>(control).Text();
            case Kind::kDriveList:
                return As<forms::DriveList>(control).Drive();
            default:
                return control.Caption();
        }
    }
    bool Enabled(forms::Control& control) override { return control.Enabled(); }
    bool Visible(forms::Control& control) override { return control.Visible(); }
    bool HasKeyboard(forms::Control& control) override {
        return control.owner().ActiveControl() == &control;
    }
    std::vector<std::string> Items(forms::Control& list) override {
        std::vector<std::string> items;
        switch (list.kind()) {
            case Kind::kDriveList:
                return As<forms::DriveList>(list).Entries();
            case Kind::kFolderList:
                for (const auto& entry : As<forms::FolderList>(list).Entries()) {
                    items.push_back(entry.name);
                }
                return items;
            default:
                for (int i = 0; i < As<forms::List>(list).Count(); ++i) {
                    items.push_back(As<forms::List>(list).Item(i));
                }
                return items;
        }
    }
    int Highlighted(forms::Control& list) override {
        switch (list.kind()) {
            case Kind::kDriveList:
                return As<forms::DriveList>(list).Index();
            case Kind::kFolderList:
                return HighlightedFolder(As<forms::FolderList>(list));
            default:
                return As<forms::List>(list).Index();
        }
    }
    bool Checked(forms::CheckBox& box) override { return box.Checked(); }
    forms::Label::Color Color(forms::Label& label) override { return label.ForeColor(); }
    double Percent(forms::Control& bar) override {
        if (bar.kind() == Kind::kPanel) {
            return As<forms::Panel>(bar).FloodPercent();
        }
        return As<forms::ProgressBar>(bar).Value();
    }
    bool Playing(forms::Animation& clip) override { return clip.Playing(); }
    int ShownTab(forms::Tabs& tabs) override { return tabs.Tab(); }
    std::vector<std::string> TabCaptions(forms::Tabs& tabs) override { return tabs.Captions(); }
    std::vector<std::string> Nodes(forms::Tree& tree) override {
        std::vector<std::string> lines;
        WalkNodes(tree, 0, "", [&](int node, const std::string& indent) {
            lines.push_back(indent + tree.At(node).text);
        });
        return lines;
    }
    std::vector<int> Pictures(forms::Tree& tree) override {
        std::vector<int> pictures;
        WalkNodes(tree, 0, "",
                  [&](int node, const std::string&) { pictures.push_back(tree.At(node).image); });
        return pictures;
    }
    std::string SelectedNode(forms::Tree& tree) override {
        return tree.Selected() ? tree.At(tree.Selected()).text : "";
    }

  private:
    struct Highlight {
        std::string path;
        int index;
    };

    template <typename Body>
    void Do(Body&& body) {
        try {
            body();
        } catch (const Error& error) {
            errors.push_back(error.number());
        }
    }
    template <typename Body>
    void DoIfReached(const forms::Control& control, Body&& body) {
        if (control.Enabled() && control.Visible()) {
            Do(body);
        }
    }

    // Highlighting is the screen's: until another folder is opened it is where the user clicked,
    // otherwise at the current folder.
    int HighlightedFolder(const forms::FolderList& list) const {
        const auto clicked = clicked_.find(&list);
        if (clicked != clicked_.end() && clicked->second.path == list.Path()) {
            return clicked->second.index;
        }
        return static_cast<int>(
                   std::ranges::count(list.Entries(), true, &forms::FolderList::Entry::open)) -
               1;
    }

    template <typename Visit>
    static void WalkNodes(const forms::Tree& tree, int parent, const std::string& indent,
                          const Visit& visit) {
        for (int node = 1; node <= tree.Count(); ++node) {
            if (tree.At(node).parent != parent) {
                continue;
            }
            visit(node, indent);
            WalkNodes(tree, node, indent + " ", visit);
        }
    }

    ScriptedDesktop desktop_;
    std::map<const forms::Control*, Highlight> clicked_;
};

}  // namespace

std::unique_ptr<ControlUser> NewControlUser() { return std::make_unique<PlainUser>(); }

}  // namespace vantrel::test
