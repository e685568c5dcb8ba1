// Profile access and existence tests. Keeps no state; created where it is needed.
#pragma once

#include <string>

#include "forms/program.h"

namespace vantrel {

class clsFiles {
  public:
    explicit clsFiles(forms::Program& program) : program_(program) {}

    // The value of `key` in `section` of profile `file`, at most 254 bytes of it in the code page;
    // "" when key, section or file is missing. Never raises for a file that cannot be read.
    std::string ReadINI(const std::string& section, const std::string& key,
                        const std::string& file);
    // Sets the key in place, keeping every other byte of the file; a missing section, key or file
    // is made. A file that cannot be written stays as it is, silently.
    void WriteINI(const std::string& section, const std::string& key, const std::string& value,
                  const std::string& file);
    // Whether a drive, folder or file is there. "" counts as existing; with `file_test` the mask
    // "*.*" is satisfied by its folder. Never raises.
    bool Exist(const std::string& path, bool file_test);

  private:
    forms::Program& program_;
};

}  // namespace vantrel
