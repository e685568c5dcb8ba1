#include "log/show_error.h"

#include "log/clsLog.h"

namespace vantrel {

void ShowError(forms::Program& program, const Error& error) {
    if (!program.Unattended()) {
        program.desktop.Show(
            {.text = error.description(), .icon = forms::Icon::kCritical, .title = "Error"});
        return;
    }
    try {
        clsLog(program).WriteToLog("Backup", false, error.description());
    } catch (const Error&) {
        return;
    }
}

}  // namespace vantrel
