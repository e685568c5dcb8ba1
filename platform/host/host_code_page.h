// Windows-1252 and OEM 437 from tables, letter case from the host's Unicode data. The host's own
// locale plays no part.
#pragma once

#include "platform/machine.h"

namespace vantrel::platform {

class HostCodePage : public CodePage {
  public:
    std::optional<std::string> Encode(const std::string& utf8) override;
    std::string EncodeLossy(const std::string& utf8) override;
    std::string Decode(const std::string& bytes) override;
    std::string DecodeOem(const std::string& bytes) override;
    std::string Upper(const std::string& utf8) override;
    std::string Fold(const std::string& utf8) override;
};

// What HostCodePage::Fold does: simple capitals, one code point for one, all of the basic plane.
std::string HostFold(const std::string& utf8);

}  // namespace vantrel::platform
