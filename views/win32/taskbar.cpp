#include "views/win32/taskbar.h"

namespace vantrel::views {

Taskbar::~Taskbar() {
    if (list_) list_->Release();
    if (initialized_) CoUninitialize();
}

bool Taskbar::Connect() {
    if (tried_) return list_ != nullptr;
    tried_ = true;
    initialized_ = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
    void* list = nullptr;
    if (FAILED(CoCreateInstance(CLSID_TaskbarList, nullptr, CLSCTX_INPROC_SERVER, IID_ITaskbarList3,
                                &list)))
        return false;
    list_ = static_cast<ITaskbarList3*>(list);
    if (SUCCEEDED(list_->HrInit())) return true;
    list_->Release();
    list_ = nullptr;
    return false;
}

void Taskbar::ShowProgress(HWND window, int percent) {
    if (!window || !Connect()) return;
    if (percent < 0) {
        list_->SetProgressState(window, TBPF_NOPROGRESS);
    } else {
        list_->SetProgressValue(window, static_cast<ULONGLONG>(percent), 100);
    }
}

}  // namespace vantrel::views
