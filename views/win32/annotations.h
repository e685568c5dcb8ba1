// What a screen reader reads about controls that do not name themselves: names and roles for
// Microsoft Active Accessibility, by its dynamic annotation. Used on the user-interface thread
// only.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

struct IAccPropServices;

namespace vantrel::views {

class Annotations {
  public:
    Annotations() = default;
    ~Annotations();
    Annotations(const Annotations&) = delete;
    Annotations& operator=(const Annotations&) = delete;

    // A system without annotations keeps the standard name and role.
    void SetName(HWND control, const std::string& name);
    // `role` is one of ROLE_SYSTEM_PUSHBUTTON and so on.
    void SetRole(HWND control, LONG role);
    // Call it before the controls are destroyed: their handles are used again.
    void Clear();

  private:
    bool Connect();

    IAccPropServices* services_ = nullptr;
    std::vector<HWND> controls_;
    bool tried_ = false;
    bool initialized_ = false;
};

}  // namespace vantrel::views
