// Reading around what a medium cannot read: an unreadable sector is read as zeros, and what lies
// behind it is read as usual. An object belongs to one thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

#include "platform/machine.h"
#include "zip/base/bytes.h"

namespace vantrel::zip {

class SectorReader : public ByteSource {
  public:
    // Both are borrowed.
    SectorReader(ByteSource& source, platform::Clock& clock) : source_(source), clock_(clock) {}

    std::uint64_t Size() override { return source_.Size(); }
    // Error 57 of the source is retried sector by sector, 4 times in 0.3 s; other errors are
    // raised. No sector is tried again later.
    std::size_t ReadAt(std::uint64_t offset, void* out, std::size_t count) override;
    std::string WhyUnreadable(std::uint64_t begin, std::uint64_t end) const override;

  private:
    std::size_t ReadRange(std::uint64_t offset, char* out, std::size_t count);
    std::size_t ReadSector(std::uint64_t offset, char* out, std::size_t count);

    ByteSource& source_;
    platform::Clock& clock_;
    std::map<std::uint64_t, std::uint64_t> unreadable_;  // begin to end, apart from each other
};

}  // namespace vantrel::zip
