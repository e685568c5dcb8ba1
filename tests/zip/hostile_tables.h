// The parts of the table of hostile archives.
#pragma once

#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "tests/zip/hostile_archives.h"
#include "tests/zip/zip_builder.h"

namespace vantrel::test {

using Tricks = std::vector<HostileArchive>;
using Strings = std::vector<std::string>;

Tricks HostileNames();        // where entries want to go
Tricks HostileLinks();        // what entries claim to be
Tricks HostileData();         // sizes, checksums, methods, overlaps
Tricks HostileDirectories();  // the structures that hold all this together

inline std::string Built(std::vector<BuiltEntry> entries) {
    BuiltArchive archive;
    archive.entries = std::move(entries);
    return archive.Bytes();
}

inline void Append(Tricks& all, Tricks more) {
    std::move(more.begin(), more.end(), std::back_inserter(all));
}

}  // namespace vantrel::test
