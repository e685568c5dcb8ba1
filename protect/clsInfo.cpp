#include "protect/clsInfo.h"

#include "common/error.h"
#include "forms/form.h"

namespace vantrel {

// The text shows a dot before the number, although a restore writes an underscore.
void clsInfo::SecureData(forms::TextBox& box) {
    Reported("clsInfo:SecureData Method", [&] {
        const std::string& line = box.owner().program().globals.CrLf;
        const std::string paragraph = line + line;
        box.SetText(
            "When restoring files, the User MUST be sure that the "
            "Process will not overwrite the existing data and "
            "destroy updated information." +
            paragraph +
            "This function allows selected Directories (or Folders) "
            "to be 'Protected'.  What this means is a Restore process "
            "will NEVER overwrite anything in the Protected Directory." +
            paragraph +
            "If Vantrel detects that a 'Protected' Directory is about to "
            "be overwritten, it renames the 'Protected' Directory and then "
            "allows the Restore Process to continue." +
            paragraph +
            "For example if 'C:\\My Directory' is Protected and a Restore "
            "process is conducted whereupon ANY files in the 'C:\\My Directory' "
            "is about to be overwritten, then 'C:\\My Directory' is renamed to "
            "'C:\\My Directory.xxx' where xxx is a number from 001 to 999.  The "
            "Restore process then continues." +
            paragraph +
            "To Create a 'Protected' Directory, select a Directory in the Tree, "
            "use the Right Mouse Button and Add It.  To Delete a 'Protected' "
            "Directory, select the Directory in the Tree, use the Right Mouse "
            "Button and Delete it." +
            paragraph + "For futher Information please contact Corvane.");
    });
}

}  // namespace vantrel
