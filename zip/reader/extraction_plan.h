// What an extraction will do, decided before the first byte is written: which entries, under which
// paths, in which order. No look at any disk.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/machine.h"
#include "zip/base/component_events.h"
#include "zip/base/dos_mask.h"
#include "zip/records/directory_reader.h"

namespace vantrel::zip {

struct PlannedEntry {
    std::uint32_t index = 0;  // in the directory
    std::string path;         // below the destination
};

struct ExtractionPlan {
    std::vector<PlannedEntry> files;    // in the order of their data in the archive
    std::vector<PlannedEntry> folders;  // in the archive's order
    std::uint64_t bytes = 0;            // of all files together
    std::int32_t failed = 0;            // selected entries that will not come back
};

// Names made safe, later ones of the same path numbered, and everything refused that cannot be or
// must not be written: links, names that lead out, overlapping data, files where folders are.
// `tell` gets a warning for each of them, and for each entry that comes back under another name.
ExtractionPlan MakePlan(const Directory& directory, const DosMask& mask,
                        platform::CodePage& code_page,
                        const std::function<void(ComponentMessage)>& tell);

// A warning about entry `index` of the directory (numbered from 1 for the user).
ComponentMessage EntryWarning(const Directory& directory, std::uint32_t index, int code,
                              const std::string& text);

}  // namespace vantrel::zip
