#include "zip/reader/extraction_plan.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>

#include "common/error.h"
#include "common/path.h"
#include "zip/reader/entry_data.h"
#include "zip/records/entry_name.h"

namespace vantrel::zip {

namespace {

// The owner of a name is a file or, with this bit, a folder (ExtractionPlanner::KeyOf).
constexpr std::uint32_t kFolderBit = 0x80000000;

// Which entries share bytes of the archive with another one, or reach into the directory.
class Overlaps {
  public:
    explicit Overlaps(const Directory& directory)
        : directory_(directory), overlaps_(directory.entries.size()) {
        std::vector<std::uint32_t> order(directory.entries.size());
        for (std::uint32_t i = 0; i < order.size(); ++i) {
            order[i] = i;
        }
        const auto earlier = [this](std::uint32_t a, std::uint32_t b) {
            return directory_.entries.ExtentOf(a).offset < directory_.entries.ExtentOf(b).offset;
        };
        in_order_ = std::is_sorted(order.begin(), order.end(), earlier);
        if (!in_order_) {
            std::sort(order.begin(), order.end(), earlier);
        }
        for (const std::uint32_t index : order) {
            Add(index);
        }
    }
    // By the entry's index.
    std::vector<bool> Take() { return std::move(overlaps_); }
    bool IsInOrder() const { return in_order_; }

  private:
    void Add(std::uint32_t index) {
        const EntryList::Extent entry = directory_.entries.ExtentOf(index);
        const std::uint64_t header = entry.header_length;
        if (header == 0 && entry.packed_size == 0) {
            return;
        }
        const std::uint64_t available = directory_.start - std::min(directory_.start, entry.offset);
        if (available < header || available - header < entry.packed_size) {
            overlaps_[index] = true;
            return;  // its end is no bound for others
        }
        if (entry.offset < end_) {
            overlaps_[index] = true;
            overlaps_[owner_] = true;
        }
        const std::uint64_t end = entry.offset + header + entry.packed_size;
        if (end > end_) {
            end_ = end;
            owner_ = index;
        }
    }

    const Directory& directory_;
    std::vector<bool> overlaps_;
    bool in_order_ = false;
    std::uint64_t end_ = 0;
    std::uint32_t owner_ = 0;
};

}  // namespace

bool HasOverlaps(const Directory& directory) {
    const std::vector<bool> overlaps = Overlaps(directory).Take();
    return std::find(overlaps.begin(), overlaps.end(), true) != overlaps.end();
}

ComponentMessage EntryWarning(const Directory& directory, std::uint32_t index, int code,
                              const std::string& text) {
    return {
        MessageKind::kWarning,         code, static_cast<std::int32_t>(index + 1),
        directory.entries[index].name, text, static_cast<std::int32_t>(directory.entries.size())};
}

std::string NotRestored(const std::string& name, const std::string& why, bool verify_only) {
    return name + (verify_only ? " cannot be restored: " : " is not restored: ") + why + ".";
}

ComponentMessage NotRestoredWarning(const Directory& directory, std::uint32_t index,
                                    const Error& error, bool verify_only) {
    ComponentMessage message =
        EntryWarning(directory, index, error.number(),
                     NotRestored(directory.entries[index].name, error.description(), verify_only));
    message.left_out = true;
    return message;
}

ExtractionPlanner::ExtractionPlanner(const Directory& directory, const DosMask& mask,
                                     platform::CodePage& code_page, Report report, bool verify_only)
    : directory_(directory),
      mask_(mask),
      code_page_(code_page),
      report_(std::move(report)),
      verify_only_(verify_only),
      names_(directory.entries.size(), [this](std::uint32_t owner) { return KeyOf(owner); }) {
    Overlaps overlaps(directory);
    in_order_ = overlaps.IsInOrder();
    overlaps_ = overlaps.Take();
    // The maximum: what is planned may not move any more.
    plan_.files.reserve(directory.entries.size());
    folder_keys_.emplace_back();  // the destination has none
}

bool ExtractionPlanner::PlanMore(std::size_t count) {
    const std::size_t left = directory_.entries.size() - next_;
    const std::size_t portion = in_order_ ? std::min(count, left) : left;
    for (std::size_t i = 0; i < portion; ++i) {
        Add(next_++);
    }
    if (left > 0 && !in_order_) {
        SortFiles();
    }
    return portion < left;
}

void ExtractionPlanner::PlanAll() {
    while (PlanMore(std::numeric_limits<std::size_t>::max())) {
    }
}

void ExtractionPlanner::SortFiles() {
    const auto offset = [this](const PlannedEntry& planned) {
        return directory_.entries.ExtentOf(planned.index).offset;
    };
    std::stable_sort(
        plan_.files.begin(), plan_.files.end(),
        [&](const PlannedEntry& a, const PlannedEntry& b) { return offset(a) < offset(b); });
}

std::string ExtractionPlanner::PathOf(const PlannedEntry& planned, const std::string& name) const {
    if (planned.renamed == 0) {
        return MakeSafeName(name).path;
    }
    const std::lock_guard lock(mutex_);
    return renamed_[planned.renamed - 1];
}

void ExtractionPlanner::Add(std::uint32_t index) {
    const StoredEntry entry = directory_.entries[index];
    SafeName name = MakeSafeName(entry.name);
    if (!mask_.IsEverything() &&
        (entry.is_folder || !mask_.Matches(code_page_.Fold(path::Name(name.path))))) {
        return;
    }
    if (!name.refusal.empty()) {
        return Refuse(index, name.refusal);
    }
    if (name.path.empty()) {
        if (!entry.is_folder) {
            Refuse(index, "its name means the destination itself");
        }
        return;
    }
    if (entry.is_link) {
        return Refuse(index, "it is a link, and links are not made");
    }
    if (overlaps_[index] && !(entry.is_folder && entry.packed_size == 0)) {
        return Refuse(index, "its data overlaps other data of the archive");
    }
    if (entry.is_folder) {
        return AddFolder(entry, index, name);
    }
    AddFile(entry, index, std::move(name));
}

void ExtractionPlanner::AddFolder(const StoredEntry& entry, std::uint32_t index,
                                  const SafeName& name) {
    const auto number = TakeFolders(name.path);
    if (!number) {
        return Refuse(index, "a file of the archive has its name");
    }
    WarnOfChanges(index, name);
    if (entry.size != 0) {
        Warn(index, "is a folder, and the data stored with it is left out");
    }
    plan_.folders.push_back({index, *number, 0});
}

void ExtractionPlanner::AddFile(const StoredEntry& entry, std::uint32_t index, SafeName name) {
    const path::Halves path = path::Split(name.path);
    const auto folder = TakeFolders(path.folder);
    if (!folder) {
        return Refuse(index, "a file of the archive has the name of its folder");
    }
    const auto position = static_cast<std::uint32_t>(plan_.files.size());
    const std::uint32_t owner = TakeForNextFile(*folder, path.name);
    std::uint32_t renamed = 0;
    if (owner != position) {
        if ((owner & kFolderBit) != 0) {
            return Refuse(index, "a folder of the archive has its name");
        }
        name.path = FreePath(*folder, name.path, owner);
        name.changes.push_back("another entry has its name already");
        renamed = KeepRenamed(name.path);
    }
    WarnOfChanges(index, name);
    if (UnreadableBecause(entry).empty()) {
        plan_.bytes += std::min(entry.size, ~plan_.bytes);
    }
    plan_.files.push_back({index, *folder, renamed});
}

// The key that the owner of a name took it with.
std::string ExtractionPlanner::KeyOf(std::uint32_t owner) const {
    if ((owner & kFolderBit) != 0) {
        return folder_keys_[owner - kFolderBit];
    }
    const PlannedEntry& file = plan_.files[owner];
    return KeyInFolder(code_page_, file.folder, std::string(path::Name(PathOf(file))));
}

std::uint32_t ExtractionPlanner::TakeForNextFile(std::uint32_t folder, std::string_view name) {
    return names_.Take(KeyInFolder(code_page_, folder, std::string(name)),
                       static_cast<std::uint32_t>(plan_.files.size()));
}

// For the next file, whose own name has an owner.
std::string ExtractionPlanner::FreePath(std::uint32_t folder, const std::string& path,
                                        std::uint32_t owner) {
    int& next = next_numbers_.try_emplace(owner, 2).first->second;
    for (;;) {
        std::string numbered = NumberedPath(path, next++);
        if (TakeForNextFile(folder, path::Name(numbered)) == plan_.files.size()) {
            return numbered;
        }
    }
}

std::uint32_t ExtractionPlanner::KeepRenamed(std::string path) {
    const std::lock_guard lock(mutex_);
    renamed_.push_back(std::move(path));
    return static_cast<std::uint32_t>(renamed_.size());
}

// Takes a folder and all folders above it, and returns its number (0 for the destination); nothing
// when a file has taken the name of one of them.
std::optional<std::uint32_t> ExtractionPlanner::TakeFolders(std::string_view path) {
    if (path == last_folder_) {
        return last_number_;
    }
    std::uint32_t number = 0;
    for (std::size_t start = 0; start < path.size();) {
        const std::size_t end = std::min(path.find('\\', start), path.size());
        const auto next = static_cast<std::uint32_t>(folder_keys_.size());
        std::string key =
            KeyInFolder(code_page_, number, std::string(path.substr(start, end - start)));
        const std::uint32_t owner = names_.Take(key, kFolderBit | next);
        if ((owner & kFolderBit) == 0) {
            return std::nullopt;
        }
        number = owner - kFolderBit;
        if (number == next) {
            folder_keys_.push_back(std::move(key));
        }
        start = end + 1;
    }
    last_folder_ = path;
    last_number_ = number;
    return number;
}

void ExtractionPlanner::WarnOfChanges(std::uint32_t index, const SafeName& name) {
    std::string reasons;
    for (const std::string& change : name.changes) {
        reasons += (reasons.empty() ? "" : ", ") + change;
    }
    if (!reasons.empty()) {
        Warn(index, "is restored as " + name.path + ": " + reasons);
    }
}
void ExtractionPlanner::Warn(std::uint32_t index, const std::string& what) {
    report_(EntryWarning(directory_, index, 0, directory_.entries[index].name + " " + what + "."));
}
void ExtractionPlanner::Refuse(std::uint32_t index, const std::string& why) {
    ++plan_.failed;
    report_(NotRestoredWarning(directory_, index, Error(error_number::kBadFileName, "", why),
                               verify_only_));
}

}  // namespace vantrel::zip
