// Windows paths as text: the one place that splits and joins them. Nothing here looks at a disk.
//
// A path is on a drive ("C:\a"), on a share ("\\server\share\a"), rooted ("\a", on the drive of
// whatever it is resolved against) or relative ("a\b"). "C:" and "C:a" are relative names: they
// have no root. Only "\" separates names, except for Normalize, which takes "/" as well.
//
//   path                  Root               Parent             Name
//   ""                    ""                 ""                 ""
//   "C:"                  ""                 ""                 "C:"
//   "C:\"                 "C:\"              ""                 ""
//   "C:\a", "C:\a\"       "C:\"              "C:\"              "a"
//   "C:\a\b"              "C:\"              "C:\a"             "b"
//   "\\server\share"      "\\server\share"   ""                 ""
//   "\\server\share\"     "\\server\share\"  ""                 ""
//   "\\server\share\a"    "\\server\share\"  "\\server\share\"  "a"
//   "\"                   "\"                ""                 ""
//   "\a"                  "\"                "\"                "a"
//   "a"                   ""                 ""                 "a"
//   "a\b"                 ""                 "a"                "b"
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vantrel::path {

// Whether the path begins with a drive's letter and a colon.
bool HasDrive(std::string_view path);

// The part of a path that has no parent; "" for a relative path.
std::string Root(std::string_view path);
// The folder that holds the path, without a "\" at its end unless it is a root.
std::string Parent(std::string_view path);
// The last name.
std::string Name(std::string_view path);

// Folder and name with one "\" between them; an empty part adds none.
std::string Join(std::string_view folder, std::string_view name);
// The path with a "\" at its end; "" becomes "\".
std::string WithBackslash(std::string path);

// A path in two at its last "\", which is in neither part: "a\b\c" is "a\b" and "c". The folder is
// "" where there is no "\". The views are into the argument.
struct Halves {
    std::string_view folder, name;
};
Halves Split(std::string_view path);

// The path on the drive of `folder` when it begins with exactly one "\" and `folder` with a drive;
// otherwise as it is.
std::string OnDriveOf(std::string_view folder, std::string path);

// A folder as the program shows it: the drive's letter is a capital, "/" is "\", and a "\" stands
// at the end of a drive's root only. "c:" and a drive list's entry "c: [LABEL]" are "C:\". "" for
// anything that is neither on a drive nor on the network.
std::string Normalize(std::string_view path);
// The folders from the root to `path`, both included; the path is spelled as Normalize does it.
std::vector<std::string> Ancestors(const std::string& path);

// The parts of a path as backup sets use them. The drive is the first three characters, those of
// `application_folder` for a path without a drive. The folder ends with the last "\"; the file is
// what follows it. A path whose only "\" is its first character has neither folder nor file.
std::string DrivePart(std::string_view path, std::string_view application_folder);
std::string FolderPart(std::string_view path);
std::string FilePart(std::string_view path);

}  // namespace vantrel::path
