// The listing of an archive's entries in the Restore tab.
#pragma once

#include <string>

#include "forms/program.h"
#include "platform/file_system.h"
#include "restore/restore_controls.h"

namespace vantrel {

// What tells one archive from another without opening it.
struct ListedArchive {
    std::string path;
    std::uint64_t size = 0;
    platform::Ticks modified = 0;
    bool operator==(const ListedArchive&) const = default;
};

// The archive at `path` as it is now; only the path when it is not there or may not be looked at,
// which is one to the existence test, too. Never raises.
ListedArchive LookAtArchive(forms::Program& program, const std::string& path);

// Fills the tree with one node an entry and the total with their number; the fill of the panel
// shows how far it has come. A path that is no file leaves the tree hidden and empty and the total
// at "0". Whether every entry of the archive is listed: false when it is not there, or its list
// cannot be read to the end. Errors: "clsFiles:ShowZipContents Method".
bool ShowZipContents(forms::Program& program, const RestoreControls& controls,
                     const std::string& path);

}  // namespace vantrel
