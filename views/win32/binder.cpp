#include "views/win32/binder.h"

#include <algorithm>
#include <map>
#include <utility>

#include "common/error.h"
#include "forms/form.h"
#include "views/win32/own_texts.h"
#include "views/win32/text.h"

namespace vantrel::views {

using forms::Aspect;
using forms::Kind;

Binder::Binder(BinderWindow& window, forms::Control& control, HWND handle, int id)
    : window_(window), control_(control), handle_(handle), id_(id) {}

Binder::~Binder() { Release(); }

void Binder::Release() {
    if (std::exchange(released_, true)) {
        return;
    }
    deferred_.clear();
    control_.Bind(nullptr);
}

void Binder::Start() {
    for (Aspect aspect : {Aspect::kText, Aspect::kItems, Aspect::kSelection, Aspect::kValue,
                          Aspect::kColor, Aspect::kEnabled, Aspect::kVisible}) {
        Changed(aspect);
    }
    control_.Bind(this);
}

void Binder::Flush() {
    for (Aspect aspect : std::exchange(deferred_, {})) {
        Show(aspect);
    }
}

void Binder::Changed(Aspect aspect) {
    if (Defers(aspect)) {
        if (std::find(deferred_.begin(), deferred_.end(), aspect) == deferred_.end()) {
            deferred_.push_back(aspect);
        }
        return;
    }
    if (aspect == Aspect::kRedraw) {
        Flush();
    }
    if (handle_) {
        switch (aspect) {
            case Aspect::kEnabled:
                Enable(control_.Enabled());
                break;
            case Aspect::kVisible:
                ShowOrHide(ShouldShow());
                window_.ContainerShown(control_);
                break;
            case Aspect::kFocus:
                SetFocus(handle_);
                break;
            case Aspect::kRedraw:
                RedrawWindow(handle_, nullptr, nullptr, RDW_UPDATENOW);
                break;
            default:
                break;
        }
    }
    Show(aspect);
}

bool Binder::ShouldShow() const {
    const forms::Control* container = window_.ContainerOf(control_);
    return control_.Visible() && (!container || container->Visible());
}

void Binder::Enable(bool enabled) {
    if (!enabled) {
        MoveFocusAway();
    }
    EnableWindow(handle_, enabled);
}

// The area behind a hidden control is painted at once: long handlers show their waiting panel by
// hiding a control, and handle no event meanwhile.
void Binder::ShowOrHide(bool show) {
    if (!show) {
        MoveFocusAway();
    }
    ShowWindow(handle_, show ? SW_SHOWNA : SW_HIDE);
    if (!show) {
        RedrawArea();
    }
}

void Binder::RedrawArea() const {
    const HWND parent = GetParent(handle_);
    RECT area{};
    GetWindowRect(handle_, &area);
    MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&area), 2);
    RedrawWindow(parent, &area, nullptr,
                 RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
}

// Moves the focus first: hiding or disabling the focused control would lose the keyboard.
void Binder::MoveFocusAway() {
    if (GetFocus() == handle_) {
        SendMessageW(window_.handle(), WM_NEXTDLGCTL, 0, FALSE);
    }
}

void Binder::Rescale(int dpi) {
    OwnedFont font = ControlFont(id_, dpi);
    if (!font) {
        return;
    }
    SendMessageW(handle_, WM_SETFONT, reinterpret_cast<WPARAM>(font.get()), TRUE);
    font_ = std::move(font);
}

std::string Binder::Tip() const {
    const std::string tip = control_.Tooltip().empty() ? OwnTip(id_) : control_.Tooltip();
    const std::string text = ShortenedText();
    return tip.empty() || text.empty() ? tip + text : tip + "\r\n" + text;
}

POINT BelowInside(HWND list, const RECT& entry) {
    RECT inside{};
    GetClientRect(list, &inside);
    return {std::clamp((entry.left + entry.right) / 2, inside.left, inside.right),
            std::clamp(entry.bottom, inside.top, inside.bottom)};
}

namespace {

BinderMaker MakerFor(Kind kind) {
    static const std::map<Kind, BinderMaker> kMakers = {
        {Kind::kLabel, kLabelBinder},
        {Kind::kButton, kButtonBinder},
        {Kind::kCheckBox, kCheckBoxBinder},
        {Kind::kFrame, kFrameBinder},
        {Kind::kPicture, kPictureBinder},
        {Kind::kStatusBar, kStatusBarBinder},
        {Kind::kProgressBar, kProgressBarBinder},
        {Kind::kPanel, kPanelBinder},
        {Kind::kAnimation, kAnimationBinder},
        {Kind::kTextBox, kTextBoxBinder},
        {Kind::kTabs, kTabsBinder},
        {Kind::kComboBox, kComboBoxBinder},
        {Kind::kListBox, kListBoxBinder},
        {Kind::kDriveList, kDriveListBinder},
        {Kind::kFolderList, kFolderListBinder},
        {Kind::kFileList, kFileListBinder},
        {Kind::kTree, kTreeBinder},
        {Kind::kMenu, kMenuBinder},
        {Kind::kTimer, kTimerBinder},
    };
    return kMakers.at(kind);
}

}  // namespace

std::unique_ptr<Binder> MakeBinder(BinderWindow& window, forms::Control& control, HWND handle,
                                   int id) {
    const Kind kind = control.kind();
    if (kind != Kind::kTimer && (id == 0 || (!handle && kind != Kind::kMenu))) {
        throw Error(error_number::kInvalidPropertyValue, "MakeBinder",
                    "The window " + control.owner().name() + " has no real control \"" +
                        control.name() + "\"");
    }
    return MakerFor(kind)(window, control, handle, id);
}

}  // namespace vantrel::views
