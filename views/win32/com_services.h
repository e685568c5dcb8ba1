// Services of the system that are COM objects: names and roles for screen readers, and the progress
// on the taskbar. Used on the user-interface thread only.
#pragma once

#include <windows.h>
// Needs the types of windows.h.
#include <shobjidl.h>

#include <string>
#include <vector>

namespace vantrel::views {

// A COM object, created when it is needed first. A system may lack it.
class ComService {
  public:
    ComService(const CLSID& class_id, const IID& interface_id)
        : class_id_(class_id), interface_id_(interface_id) {}
    ~ComService();
    ComService(const ComService&) = delete;
    ComService& operator=(const ComService&) = delete;

    // The interface of `interface_id`; nullptr when the system lacks it.
    void* Get();

  private:
    const CLSID& class_id_;
    const IID& interface_id_;
    IUnknown* object_ = nullptr;
    bool tried_ = false;
    bool initialized_ = false;
};

// What a screen reader reads about controls that do not name themselves, for Microsoft Active
// Accessibility, by its dynamic annotation.
class Annotations {
  public:
    Annotations();

    // A system without annotations keeps the standard name and role.
    void SetName(HWND control, const std::string& name);
    // `role` is one of ROLE_SYSTEM_PUSHBUTTON and so on.
    void SetRole(HWND control, LONG role);
    // Call it before the controls are destroyed: their handles are used again.
    void Clear();

  private:
    ComService services_;
    std::vector<HWND> controls_;
};

// The program's button on the taskbar, which shows the progress of a long run.
class Taskbar {
  public:
    Taskbar();

    // `window` has the button; `percent` is 0 to 100, less than 0 for nothing to show. Systems
    // without such buttons show nothing.
    void ShowProgress(HWND window, int percent);

  private:
    ComService list_;
    bool ready_ = false;
};

}  // namespace vantrel::views
