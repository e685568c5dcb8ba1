// Profile access and existence tests. Keeps no state; created where it is needed.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "forms/program.h"

namespace vantrel {

// A key of a profile with its value.
struct ProfileKey {
    std::string section, key, value;
};

// A longer value, counted in bytes of the code page, is cut when it is read back.
constexpr std::size_t kMaxValueBytes = 254;

// Why a set file cannot store `path`, as a sentence: it holds characters that the code page lacks,
// or it is longer than a value may be. "" when it can.
std::string StorageProblem(platform::CodePage& code_page, const std::string& path);

// A value as a read gives it.
struct ProfileValue {
    std::string text;     // its first kMaxValueBytes bytes, decoded
    bool is_cut = false;  // whether the file holds more than that
};

// The text helper of the program's paths.
class clsString {
  public:
    // `text` with "\" at its end; "" becomes "\".
    std::string Backslash(const std::string& text);
};

// Names of the set files in the application folder, in the system's order: plain files, neither
// hidden nor system, whose extension is exactly "ini" without regard to case (the system's own
// search would also find longer extensions by their short names). Raises when the folder cannot be
// listed.
std::vector<std::string> SetFileNames(forms::Program& program);

class clsFiles {
  public:
    explicit clsFiles(forms::Program& program) : program_(program) {}

    // The value of `key` in `section` of profile `file`, at most 254 bytes of it in the code page;
    // "" when key, section or file is missing. Never raises for a file that cannot be read.
    std::string ReadINI(const std::string& section, const std::string& key,
                        const std::string& file);
    // Sets the key in place, keeping every other byte of the file; a missing section, key or file
    // is made. A file that cannot be written stays as it is, silently; so does one whose code page
    // or format cannot hold the value.
    void WriteINI(const std::string& section, const std::string& key, const std::string& value,
                  const std::string& file);
    // The same for several keys in one step: whatever happens, the file holds all of the new values
    // or none of them.
    void WriteINI(const std::vector<ProfileKey>& keys, const std::string& file);
    // Makes a missing `file` of these keys alone; one that is there, readable or not, stays as it
    // is.
    void MakeINI(const std::vector<ProfileKey>& keys, const std::string& file);
    // The values that these keys have in `file`, all of one moment and each as ReadINI gives it;
    // nothing when the file is missing or cannot be read.
    std::optional<std::vector<ProfileValue>> ReadINI(const std::vector<ProfileKey>& keys,
                                                     const std::string& file);
    // Whether a drive, folder or file is there; never raises. "" counts as existing. First the
    // drive of the path must be ready, for a path without one that of the application folder.
    // Without `file_test` the whole path must then be a folder. With it the file must stand in its
    // folder under exactly that name, letter case aside (a folder of that name is none, hidden and
    // system files count), and the mask "*.*" is satisfied by the folder alone.
    // A path that starts with one "\" is looked up on the application folder's drive. The program
    // has no current folder: a file without a folder part, and any other relative path, is not
    // there.
    bool Exist(const std::string& path, bool file_test);

  private:
    ProfileValue ValueIn(const std::string& text, const std::string& section,
                         const std::string& key);
    std::optional<std::string> Changed(const std::string& text,
                                       const std::vector<ProfileKey>& keys);
    bool Exists(const std::string& path, bool file_test);
    bool DriveReady(const std::string& drive);
    bool IsFolder(const std::string& path);
    bool HasFile(const std::string& folder, const std::string& name);
    // The full path of a folder as a folder list takes it, "" for one that it refuses.
    std::string OnDrive(const std::string& path);

    forms::Program& program_;
};

}  // namespace vantrel
