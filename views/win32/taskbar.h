// The program's button on the taskbar, which shows how far a long run is.
#pragma once

#include <windows.h>

#include <shobjidl.h>

namespace vantrel::views {

class Taskbar {
  public:
    Taskbar() = default;
    ~Taskbar();
    Taskbar(const Taskbar&) = delete;
    Taskbar& operator=(const Taskbar&) = delete;

    // `window` has the button; `percent` is 0 to 100, less than 0 for nothing to show. Systems
    // without such buttons show nothing.
    void ShowProgress(HWND window, int percent);

  private:
    bool Connect();

    ITaskbarList3* list_ = nullptr;
    bool tried_ = false;
    bool initialized_ = false;
};

}  // namespace vantrel::views
