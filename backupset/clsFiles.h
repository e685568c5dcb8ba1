// Profile access, existence tests and the list of set files. The objects keep no state and are
// created where they are needed. Window thread only. docs/formats.md describes the set file.
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
    // Sets the key in place and keeps every other byte of the file; creates a missing section, key
    // or file. Reports no failure: a file that cannot be written stays as it is, and so does a key
    // whose value the code page or the format cannot hold.
    void WriteINI(const std::string& section, const std::string& key, const std::string& value,
                  const std::string& file);
    // The same for several keys in one step: the file then has all of the new values or none.
    void WriteINI(const std::vector<ProfileKey>& keys, const std::string& file);
    // Creates a missing `file` with these keys alone. An existing file, readable or not, stays as
    // it is.
    void MakeINI(const std::vector<ProfileKey>& keys, const std::string& file);
    // The values of these keys, read in one pass; nothing when the file is missing or cannot be
    // read.
    std::optional<std::vector<ProfileValue>> ReadINI(const std::vector<ProfileKey>& keys,
                                                     const std::string& file);
    // Whether a drive, folder or file exists; never raises. "" counts as existing. The drive of the
    // path must be ready; a path without a drive is on the application folder's drive. Without
    // `file_test` the complete path must be a folder. With it the folder must have a file of
    // exactly that name, letter case aside; hidden and system files count, folders do not, and the
    // mask "*.*" needs only the folder. The program has no current folder: a relative path does not
    // exist.
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
