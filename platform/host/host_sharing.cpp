#include "platform/host/host_sharing.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

#include "common/error.h"

namespace vantrel::platform {

namespace {

constexpr unsigned kReading = 1;
constexpr unsigned kWriting = 2;
constexpr unsigned kMoving = 4;  // renaming, replacing, removing

struct Terms {
    unsigned wants;
    unsigned lets;
};

Terms TermsOf(OpenMode mode) {
    switch (mode) {
        case OpenMode::kRead:
            return {kReading, kReading | kWriting | kMoving};
        case OpenMode::kWrite:
            return {kWriting, kReading};
        case OpenMode::kAppend:
            return {kWriting, kReading | kWriting};
        case OpenMode::kCreateNew:
            break;
    }
    return {kReading | kWriting, 0};
}

bool Agree(Terms one, Terms other) {
    return (one.wants & ~other.lets) == 0 && (other.wants & ~one.lets) == 0;
}

struct Table {
    std::mutex mutex;
    std::map<std::pair<dev_t, ino_t>, std::vector<OpenMode>> open;
};

Table& OpenFiles() {
    static Table table;
    return table;
}

// With the table's mutex held.
void Check(const Table& table, std::pair<dev_t, ino_t> file, Terms wanted) {
    const auto found = table.open.find(file);
    if (found == table.open.end()) return;
    for (const OpenMode mode : found->second) {
        if (!Agree(TermsOf(mode), wanted)) RaiseError(error_number::kPermissionDenied);
    }
}

}  // namespace

HostShare::HostShare(dev_t device, ino_t number, OpenMode mode)
    : device_(device), number_(number), mode_(mode) {
    Table& table = OpenFiles();
    const std::lock_guard lock(table.mutex);
    Check(table, {device, number}, TermsOf(mode));
    table.open[{device, number}].push_back(mode);
}

HostShare::~HostShare() {
    Table& table = OpenFiles();
    const std::lock_guard lock(table.mutex);
    const auto found = table.open.find({device_, number_});
    auto& modes = found->second;
    modes.erase(std::find(modes.begin(), modes.end(), mode_));
    if (modes.empty()) table.open.erase(found);
}

void HostShare::CheckMovable(dev_t device, ino_t number) {
    Table& table = OpenFiles();
    const std::lock_guard lock(table.mutex);
    Check(table, {device, number}, {kMoving, kReading | kWriting | kMoving});
}

}  // namespace vantrel::platform
