#include "views/win32/com_services.h"

#include <oleacc.h>

#include <utility>

#include "views/win32/text.h"

namespace vantrel::views {

namespace {

constexpr auto kClient = static_cast<DWORD>(OBJID_CLIENT);

IAccPropServices* AnnotationsOf(ComService& service) {
    return static_cast<IAccPropServices*>(service.Get());
}

}  // namespace

ComService::~ComService() {
    if (object_) {
        object_->Release();
    }
    if (initialized_) {
        CoUninitialize();
    }
}

void* ComService::Get() {
    if (!std::exchange(tried_, true)) {
        initialized_ = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
        void* object = nullptr;
        CoCreateInstance(class_id_, nullptr, CLSCTX_INPROC_SERVER, interface_id_, &object);
        object_ = static_cast<IUnknown*>(object);
    }
    return object_;
}

Annotations::Annotations() : services_(CLSID_AccPropServices, IID_IAccPropServices) {}

void Annotations::SetName(HWND control, const std::string& name) {
    auto* const services = AnnotationsOf(services_);
    if (services && SUCCEEDED(services->SetHwndPropStr(control, kClient, CHILDID_SELF,
                                                       PROPID_ACC_NAME, Wide(name).c_str()))) {
        controls_.push_back(control);
    }
}

void Annotations::SetRole(HWND control, LONG role) {
    VARIANT value{};
    value.vt = VT_I4;
    value.lVal = role;
    auto* const services = AnnotationsOf(services_);
    if (services &&
        SUCCEEDED(services->SetHwndProp(control, kClient, CHILDID_SELF, PROPID_ACC_ROLE, value))) {
        controls_.push_back(control);
    }
}

void Annotations::Clear() {
    MSAAPROPID properties[] = {PROPID_ACC_NAME, PROPID_ACC_ROLE};
    for (const HWND control : controls_) {
        AnnotationsOf(services_)->ClearHwndProps(control, kClient, CHILDID_SELF, properties, 2);
    }
    controls_.clear();
}

Taskbar::Taskbar() : list_(CLSID_TaskbarList, IID_ITaskbarList3) {}

void Taskbar::ShowProgress(HWND window, int percent) {
    auto* const list = window ? static_cast<ITaskbarList3*>(list_.Get()) : nullptr;
    ready_ = ready_ || (list && SUCCEEDED(list->HrInit()));
    if (!list || !ready_) {
        return;
    }
    if (percent < 0) {
        list->SetProgressState(window, TBPF_NOPROGRESS);
    } else {
        list->SetProgressValue(window, static_cast<ULONGLONG>(percent), 100);
    }
}

}  // namespace vantrel::views
