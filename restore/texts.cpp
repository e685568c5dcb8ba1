#include "restore/texts.h"

namespace vantrel {

std::string LocationWarning(const forms::Program& program) {
    const std::string& line = program.globals.CrLf;
    return "Vantrel has been designed to allow the user to "
           "manualy select the Restore Location themselves "
           "as this can cause major risks to Users Data." +
           line + line + "PLEASE SELECT THE RESTORE LOCATION WITH CARE!";
}

}  // namespace vantrel
