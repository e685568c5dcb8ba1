// The application-level operations that start-up and others need. Keeps no state.
#pragma once

#include <string>

#include "forms/form.h"
#include "forms/program.h"

namespace vantrel {

// Errors: through the shared reporter, "clsApplication:PrevInstance Method" and so on.
class clsApplication {
  public:
    explicit clsApplication(forms::Program& program) : program_(program) {}

    // Whether another copy of the executable ran in the user's session when this one started.
    bool PrevInstance();
    // Unloads the splash window if it is loaded (nullptr: there is none); nothing else.
    void ShutDown(forms::Form* splash);
    // Major, minor and revision: "3.0.6".
    std::string VersionNo();

  private:
    forms::Program& program_;
};

}  // namespace vantrel
