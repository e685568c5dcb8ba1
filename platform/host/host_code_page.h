// Windows-1252 and OEM 437 from tables, letter case from the host's Unicode data. The host's own
// locale plays no part.
#pragma once

#include "platform/machine.h"

namespace vantrel::platform {

// Simple capitals, one code point for one, all of the basic plane.
std::string HostFold(const std::string& utf8);

class HostCodePage : public CodePage {
  public:
    std::string Fold(const std::string& utf8) override { return HostFold(utf8); }
    std::optional<std::string> Encode(const std::string& utf8) override;
    std::string EncodeLossy(const std::string& utf8) override;
    std::string Decode(const std::string& bytes) override;
    std::string DecodeOem(const std::string& bytes) override;
    std::string Upper(const std::string& utf8) override;
};

}  // namespace vantrel::platform
