// What an extraction will do, decided before the first byte is written: which entries, under which
// paths, in which order. No look at any disk.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
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
    std::uint64_t bytes = 0;            // of all files together, at most what 64 bits hold
    std::int32_t failed = 0;            // selected entries that will not come back
};

// Names made safe, later ones of the same path numbered, and everything refused that cannot be or
// must not be written: links, names that lead out, overlapping data, files where folders are. Made
// in portions, so that the first files can be restored while later ones are planned. Used by one
// thread, but for what is said at Plan.
class ExtractionPlanner {
  public:
    using Tell = std::function<void(ComponentMessage)>;

    // `tell` gets a warning for each refused entry, and for each that comes back under another
    // name. The others are borrowed.
    ExtractionPlanner(const Directory& directory, const DosMask& mask,
                      platform::CodePage& code_page, Tell tell);
    ~ExtractionPlanner();
    ExtractionPlanner(const ExtractionPlanner&) = delete;
    ExtractionPlanner& operator=(const ExtractionPlanner&) = delete;

    // Whether entries stand in the directory in the order of their data, which is the rule.
    bool IsInOrder() const;

    // Decides about the next `count` entries. False when that was the last of them.
    bool PlanMore(std::size_t count);
    void PlanAll();

    // What is planned so far. With entries in order a file that is in the plan stays where it is,
    // and other threads may look at it meanwhile; without, the order is right in the end.
    const ExtractionPlan& Plan() const;

  private:
    class Planner;
    std::unique_ptr<Planner> planner_;
};

// A warning about entry `index` of the directory (numbered from 1 for the user).
ComponentMessage EntryWarning(const Directory& directory, std::uint32_t index, int code,
                              const std::string& text);

}  // namespace vantrel::zip
