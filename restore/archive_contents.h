// The listing of an archive's entries in the Restore tab.
#pragma once

#include <string>

#include "forms/program.h"
#include "platform/file_system.h"
#include "restore/restore_controls.h"

namespace vantrel {

// Identifies an archive without opening it.
struct ListedArchive {
    std::string path;
    std::uint64_t size = 0;
    platform::Ticks modified = 0;
    bool operator==(const ListedArchive&) const = default;
};

// The archive at `path` as it is now; the path alone when the file is missing or may not be read.
// Never raises.
ListedArchive LookAtArchive(forms::Program& program, const std::string& path);

struct ListingOutcome {
    bool complete = false;   // every entry of the archive is listed
    bool cancelled = false;  // the user refused to insert a disk that holds a part of the directory
    // A handler that ran meanwhile has listed another archive, emptied the tree or closed the
    // window. What the tree has now is not of this listing.
    bool replaced = false;
    // Why it is not complete, in the words of the component's question during an extraction.
    std::string trouble{};
};

// Fills the tree with one node for each entry and the total with their number; the panel's fill is
// the progress. Waiting events are handled meanwhile. A path that is no file leaves the tree hidden
// and empty and the total at "0"; a directory that cannot be read to its end lists the entries
// before that point. Errors: "clsFiles:ShowZipContents Method".
ListingOutcome ShowZipContents(forms::Program& program, const RestoreControls& controls,
                               const std::string& path);

}  // namespace vantrel
