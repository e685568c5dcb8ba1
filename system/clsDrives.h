// Drive type and free space, as the rules of a backup need them. Keeps no state.
#pragma once

#include <string>

#include "forms/program.h"

namespace vantrel {

class clsDrives {
  public:
    explicit clsDrives(forms::Program& program) : program_(program) {}

    // Whether the drive type of `root` ("C:\\", passed to the system unchanged) is `type`, one of
    // platform::drive_type.
    bool VerifyDriveType(const std::string& root, int type);
    // "A: B: " for the drives of `type` (2 to 6), "Nil" when there is none.
    std::string ShowDrives(int type);
    // Free bytes on the drive of that letter, 0 when the system cannot tell. Raises 6 (Overflow)
    // for 2,147,483,648 bytes and more: the result is an error, never a clipped number.
    double FreeSpace(const std::string& letter);

  private:
    forms::Program& program_;
};

}  // namespace vantrel
