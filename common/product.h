// Everything about the product that an owner may want to configure: its name, version, addresses
// and notice lines. The version stands here and nowhere else; the build takes it from these lines.
#pragma once

#include <string>
#include <string_view>

namespace vantrel::product {

inline constexpr const char* kName = "Vantrel";
inline constexpr const char* kCompany = "Corvane Limited";

// File version: major.minor.build.revision. Users see major, minor and revision.
inline constexpr int kVersionMajor = 3;
inline constexpr int kVersionMinor = 0;
inline constexpr int kVersionBuild = 0;
inline constexpr int kVersionRevision = 6;

// Header lines of the transaction log.
inline constexpr const char* kNoticeLine = "Copyright 1999 Corvane Limited";
inline constexpr const char* kCreditLine = "Written by the Vantrel team";

// The nine-letter word in the fourth line of set files and of the protected-folder list.
inline constexpr const char* kNoticeWord = "Copyright";

// Major, minor and revision joined by "." without leading zeros, e.g. 3.0.6.
std::string VersionText();

}  // namespace vantrel::product
