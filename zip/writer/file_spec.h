// The file specification of the zip component: folder and mask in one text, possibly in quotes.
#pragma once

#include <string_view>

#include "zip/writer/source_scan.h"

namespace vantrel::zip {

// "C:\Data\*.txt" in or without double quotes: folder "C:\Data", mask "*.txt". A root keeps its
// backslash; without a mask it is "*.*".
SourceSpec ParseFileSpec(std::string_view text);

}  // namespace vantrel::zip
