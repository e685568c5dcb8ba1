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
            return directory_.entries[a].offset < directory_.entries[b].offset;
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
        const StoredEntry& entry = directory_.entries[index];
        // Without a local header there is only the data.
        const bool has_header = entry.data_at == 0;
        const std::uint64_t header =
            has_header ? local_header::kFixedSize + entry.RawName().size() : 0;
        if (!has_header && entry.packed_size == 0) {
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

ComponentMessage NotRestoredWarning(const Directory& directory, std::uint32_t index, int code,
                                    const std::string& why) {
    ComponentMessage message = EntryWarning(
        directory, index, code, directory.entries[index].name + " is not restored: " + why + ".");
    message.left_out = true;
    return message;
}

ExtractionPlanner::ExtractionPlanner(const Directory& directory, const DosMask& mask,
                                     platform::CodePage& code_page, Report report)
    : directory_(directory),
      mask_(mask),
      code_page_(code_page),
      report_(std::move(report)),
      names_(directory.entries.size()) {
    Overlaps overlaps(directory);
    in_order_ = overlaps.IsInOrder();
    overlaps_ = overlaps.Take();
    // The maximum: what is planned may not move any more.
    plan_.files.reserve(directory.entries.size());
}

bool ExtractionPlanner::PlanMore(std::size_t count) {
    const std::size_t left = directory_.entries.size() - next_;
    for (std::size_t portion = std::min(count, left); portion > 0; --portion) {
        Add(next_++);
    }
    if (count < left) {
        return true;
    }
    if (left > 0 && !in_order_) {
        SortFiles();
    }
    return false;
}

void ExtractionPlanner::PlanAll() {
    while (PlanMore(std::numeric_limits<std::size_t>::max())) {
    }
}

const StoredEntry& ExtractionPlanner::Of(const PlannedEntry& planned) const {
    return directory_.entries[planned.index];
}

void ExtractionPlanner::SortFiles() {
    std::stable_sort(plan_.files.begin(), plan_.files.end(),
                     [this](const PlannedEntry& a, const PlannedEntry& b) {
                         return Of(a).offset < Of(b).offset;
                     });
}

void ExtractionPlanner::Add(std::uint32_t index) {
    const StoredEntry& entry = directory_.entries[index];
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
        return AddFolder(index, std::move(name));
    }
    AddFile(index, std::move(name));
}

void ExtractionPlanner::AddFolder(std::uint32_t index, SafeName name) {
    if (!TakeFolders(name.path)) {
        return Refuse(index, "a file of the archive has its name");
    }
    WarnOfChanges(index, name);
    if (directory_.entries[index].size != 0) {
        Warn(index, "is a folder, and the data stored with it is left out");
    }
    plan_.folders.push_back({index, std::move(name.path)});
}

void ExtractionPlanner::AddFile(std::uint32_t index, SafeName name) {
    const path::Halves path = path::Split(name.path);
    const auto folder = TakeFolders(path.folder);
    if (!folder) {
        return Refuse(index, "a file of the archive has the name of its folder");
    }
    const auto [number, is_new] = Take(*folder, path.name);
    if (!is_new) {
        if (taken_[number].folder != 0) {
            return Refuse(index, "a folder of the archive has its name");
        }
        name.path = FreePath(*folder, name.path, number);
        name.changes.push_back("another entry has its name already");
    }
    WarnOfChanges(index, name);
    const StoredEntry& entry = directory_.entries[index];
    if (UnreadableBecause(entry).empty()) {
        plan_.bytes += std::min(entry.size, ~plan_.bytes);
    }
    plan_.files.push_back({index, std::move(name.path)});
}

TakenNames::Taken ExtractionPlanner::Take(std::uint32_t folder, std::string_view name) {
    const auto place = names_.Take(KeyInFolder(code_page_, folder, std::string(name)));
    if (place.is_new) {
        taken_.emplace_back();
    }
    return place;
}

// For an entry whose own name has `taken` already.
std::string ExtractionPlanner::FreePath(std::uint32_t folder, const std::string& path,
                                        std::size_t taken) {
    for (;;) {
        std::string numbered = NumberedPath(path, taken_[taken].next_number++);
        if (Take(folder, path::Name(numbered)).is_new) {
            return numbered;
        }
    }
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
        const auto [place, is_new] = Take(number, path.substr(start, end - start));
        if (is_new) {
            taken_[place].folder = ++folders_;
        }
        if (taken_[place].folder == 0) {
            return std::nullopt;
        }
        number = taken_[place].folder;
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
    report_(NotRestoredWarning(directory_, index, error_number::kBadFileName, why));
}

}  // namespace vantrel::zip
