// The system's code pages and letter case. Holds nothing; any thread may call it.
#pragma once

#include "platform/machine.h"

namespace vantrel::platform {

class Win32CodePage final : public CodePage {
  public:
    std::optional<std::string> Encode(const std::string& utf8) override;
    std::string EncodeLossy(const std::string& utf8) override;
    std::string Decode(const std::string& bytes) override;
    std::string DecodeOem(const std::string& bytes) override;
    std::string Upper(const std::string& utf8) override;
    std::string Fold(const std::string& utf8) override;
};

// The form of a name by which the file system compares: every UTF-16 unit's capital, the same in
// every country.
std::wstring FoldWide(std::wstring text);

}  // namespace vantrel::platform
