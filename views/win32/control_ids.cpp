#include "views/win32/control_ids.h"

#include "views/win32/resource.h"

namespace vantrel::views {

namespace {

struct Named {
    const char* name;
    int id;
};

// One line for each line of resource.h, made by the build.
constexpr Named kControls[] = {
#define VANTREL_CONTROL(control) {#control, control},
#include "control_ids.inc"
#undef VANTREL_CONTROL
};

}  // namespace

int ControlId(const std::string& form, const std::string& control) {
    const std::string name = form == "Frm_Mainmenu" ? control : form + "_" + control;
    for (const Named& named : kControls)
        if (name == named.name) return named.id;
    return 0;
}

}  // namespace vantrel::views
