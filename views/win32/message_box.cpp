#include "common/product.h"
#include "views/win32/text.h"
#include "views/win32/win32_desktop.h"

namespace vantrel::views {

using forms::Answer;
using forms::Buttons;
using forms::Icon;

namespace {

UINT StyleOf(const forms::Box& box) {
    UINT style = box.right_aligned ? MB_RIGHT : 0U;
    switch (box.buttons) {
        case Buttons::kOk:
            style |= MB_OK;
            break;
        case Buttons::kYesNo:
            style |= MB_YESNO;
            break;
        case Buttons::kRetryCancel:
            style |= MB_RETRYCANCEL;
            break;
    }
    switch (box.icon) {
        case Icon::kNone:
            break;
        case Icon::kCritical:
            style |= MB_ICONERROR;
            break;
        case Icon::kQuestion:
            style |= MB_ICONQUESTION;
            break;
        case Icon::kExclamation:
            style |= MB_ICONEXCLAMATION;
            break;
        case Icon::kInformation:
            style |= MB_ICONINFORMATION;
            break;
    }
    if (box.default_button == 2) style |= MB_DEFBUTTON2;
    return style;
}

Answer AnswerOf(int pressed) {
    switch (pressed) {
        case IDYES:
            return Answer::kYes;
        case IDNO:
            return Answer::kNo;
        case IDRETRY:
            return Answer::kRetry;
        case IDCANCEL:
            return Answer::kCancel;
        default:
            return Answer::kOk;
    }
}

}  // namespace

Answer Win32Desktop::ShowBox(const forms::Box& box) {
    const std::wstring title = Wide(box.title.empty() ? product::kName : box.title);
    const HWND owner = BoxOwner();
    const UINT style = StyleOf(box) | (owner ? 0U : static_cast<UINT>(MB_TASKMODAL));
    return AnswerOf(MessageBoxW(owner, Wide(box.text).c_str(), title.c_str(), style));
}

}  // namespace vantrel::views
