// Drive questions of the backup rules. Keeps no state.
#pragma once

#include <string>

#include "forms/program.h"

namespace vantrel {

class clsDrives {
  public:
    explicit clsDrives(forms::Program& program) : program_(program) {}

    // Whether the drive type of `root` (passed on unchanged) is `type`.
    bool VerifyDriveType(const std::string& root, int type);
    // "A: B: " for the drives of `type` (2 to 6), "Nil" when there is none.
    std::string ShowDrives(int type);
    // Free bytes on the drive of that letter; 0 when it cannot be told. Raises 6 (Overflow) from
    // 2,147,483,648 bytes on: callers see a failure, not a clipped value.
    double FreeSpace(const std::string& letter);

  private:
    forms::Program& program_;
};

}  // namespace vantrel
