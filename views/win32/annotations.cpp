#include "views/win32/annotations.h"

#include <oleacc.h>

#include "views/win32/text.h"

namespace vantrel::views {

namespace {

constexpr auto kClient = static_cast<DWORD>(OBJID_CLIENT);

}  // namespace

Annotations::~Annotations() {
    if (services_) {
        services_->Release();
    }
    if (initialized_) {
        CoUninitialize();
    }
}

bool Annotations::Connect() {
    if (tried_) {
        return services_ != nullptr;
    }
    tried_ = true;
    initialized_ = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
    void* services = nullptr;
    if (SUCCEEDED(CoCreateInstance(CLSID_AccPropServices, nullptr, CLSCTX_INPROC_SERVER,
                                   IID_IAccPropServices, &services))) {
        services_ = static_cast<IAccPropServices*>(services);
    }
    return services_ != nullptr;
}

void Annotations::SetName(HWND control, const std::string& name) {
    if (Connect() && SUCCEEDED(services_->SetHwndPropStr(control, kClient, CHILDID_SELF,
                                                         PROPID_ACC_NAME, Wide(name).c_str()))) {
        controls_.push_back(control);
    }
}

void Annotations::SetRole(HWND control, LONG role) {
    VARIANT value{};
    value.vt = VT_I4;
    value.lVal = role;
    if (Connect() &&
        SUCCEEDED(services_->SetHwndProp(control, kClient, CHILDID_SELF, PROPID_ACC_ROLE, value))) {
        controls_.push_back(control);
    }
}

void Annotations::Clear() {
    MSAAPROPID properties[] = {PROPID_ACC_NAME, PROPID_ACC_ROLE};
    for (const HWND control : controls_) {
        services_->ClearHwndProps(control, kClient, CHILDID_SELF, properties, 2);
    }
    controls_.clear();
}

}  // namespace vantrel::views
