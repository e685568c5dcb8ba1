// Everything about the product that an owner may want to configure: its name, version, addresses
// and notice lines. The version stands here and nowhere else; the build takes it from these lines.
#pragma once

#include <string>
#include <vector>

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

// Shown on the About tab and the splash window; the addresses are of the reserved example domains.
inline constexpr const char* kAddressLine1 = "1 Example Street";
inline constexpr const char* kAddressLine2 = "Exampleton EX1 1EX";
inline constexpr const char* kWebAddress = "https://www.example.com/vantrel";
inline constexpr const char* kSupportAddress = "support@example.com";
inline constexpr const char* kWarningText =
    "Warning: this program is protected by copyright law and international treaties. Copying or "
    "distributing it, or any part of it, without permission may be prosecuted under the law.";
inline constexpr const char* kSplashWarning =
    "This program is protected by copyright law as described on the About tab.";

// Major, minor and revision joined by "." without leading zeros, e.g. 3.0.6.
std::string VersionText();

// The five comment lines at the top of every file that the program makes: set files and the
// protected-folder list. Without line ends; all but the third, which ends with the version, have 28
// characters. Their widths and spaces are part of the formats.
std::vector<std::string> FileHeader();

}  // namespace vantrel::product
