#include "zip/reader/extraction_plan.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>

#include "common/error.h"
#include "zip/base/paths.h"
#include "zip/reader/entry_data.h"
#include "zip/reader/folder_maker.h"
#include "zip/reader/taken_names.h"
#include "zip/records/entry_name.h"

namespace vantrel::zip {

namespace {

constexpr std::uint64_t kLocalHeaderSize = 30;  // APPNOTE 4.3.7, without name and extra fields

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
    bool operator[](std::uint32_t index) const { return overlaps_[index]; }
    bool IsInOrder() const { return in_order_; }

  private:
    void Add(std::uint32_t index) {
        const StoredEntry& entry = directory_.entries[index];
        const std::uint64_t header = kLocalHeaderSize + entry.RawName().size();
        const std::uint64_t room = directory_.start - std::min(directory_.start, entry.offset);
        if (room < header || room - header < entry.packed_size) {
            overlaps_[index] = true;
            return;  // its end says nothing about others
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

class ExtractionPlanner::Planner {
  public:
    Planner(const Directory& directory, const DosMask& mask, platform::CodePage& code_page,
            Tell tell)
        : directory_(directory),
          mask_(mask),
          code_page_(code_page),
          tell_(std::move(tell)),
          overlaps_(directory),
          names_(directory.entries.size()) {
        // As much as can be needed: what is planned may not move any more.
        plan_.files.reserve(directory.entries.size());
    }

    bool IsInOrder() const { return overlaps_.IsInOrder(); }
    const ExtractionPlan& Plan() const { return plan_; }

    bool PlanMore(std::size_t count) {
        const std::size_t left = directory_.entries.size() - next_;
        for (std::size_t portion = std::min(count, left); portion > 0; --portion) {
            Add(next_++);
        }
        if (count < left) {
            return true;
        }
        if (left > 0 && !IsInOrder()) {
            SortFiles();
        }
        return false;
    }

  private:
    struct Taken {
        std::uint32_t folder = 0;  // its number, 0 for a file
        int next_number = 2;
    };

    const StoredEntry& Of(const PlannedEntry& planned) const {
        return directory_.entries[planned.index];
    }

    void SortFiles() {
        std::stable_sort(plan_.files.begin(), plan_.files.end(),
                         [this](const PlannedEntry& a, const PlannedEntry& b) {
                             return Of(a).offset < Of(b).offset;
                         });
    }

    void Add(std::uint32_t index) {
        const StoredEntry& entry = directory_.entries[index];
        SafeName name = MakeSafeName(entry.name);
        if (!mask_.IsEverything() && (entry.is_folder || !mask_.Matches(LeafOf(name.path)))) {
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
        if (std::string why = UnreadableBecause(entry); !why.empty() && !entry.is_folder) {
            return Refuse(index, why);
        }
        if (overlaps_[index] && !(entry.is_folder && entry.packed_size == 0)) {
            return Refuse(index, "its data overlaps other data of the archive");
        }
        if (entry.is_folder) {
            return AddFolder(index, std::move(name));
        }
        AddFile(index, std::move(name));
    }

    void AddFolder(std::uint32_t index, SafeName name) {
        if (!TakeFolders(name.path)) {
            return Refuse(index, "a file of the archive has its name");
        }
        TellChanges(index, name);
        if (directory_.entries[index].size != 0) {
            Warn(index, "is a folder, and the data stored with it is left out");
        }
        plan_.folders.push_back({index, std::move(name.path)});
    }

    void AddFile(std::uint32_t index, SafeName name) {
        const CutPath path = Cut(name.path);
        const auto folder = TakeFolders(path.folder);
        if (!folder) {
            return Refuse(index, "a file of the archive has the name of its folder");
        }
        const auto [number, is_new] = Take(*folder, path.leaf);
        if (!is_new) {
            if (taken_[number].folder != 0) {
                return Refuse(index, "a folder of the archive has its name");
            }
            name.path = FreePath(*folder, name.path, number);
            name.changes.push_back("another entry has its name already");
        }
        TellChanges(index, name);
        plan_.bytes += std::min(directory_.entries[index].size, ~plan_.bytes);
        plan_.files.push_back({index, std::move(name.path)});
    }

    TakenNames::Place Take(std::uint32_t folder, std::string_view name) {
        const auto place = names_.Take(KeyInFolder(code_page_, folder, std::string(name)));
        if (place.is_new) {
            taken_.emplace_back();
        }
        return place;
    }

    // For an entry whose own name has `taken` already.
    std::string FreePath(std::uint32_t folder, const std::string& path, std::size_t taken) {
        for (;;) {
            std::string numbered = NumberedPath(path, taken_[taken].next_number++);
            if (Take(folder, LeafOf(numbered)).is_new) {
                return numbered;
            }
        }
    }

    // The number of a folder (0 for the destination) that is taken with all folders above it;
    // nothing when one of them cannot be a folder.
    std::optional<std::uint32_t> TakeFolders(std::string_view path) {
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

    void TellChanges(std::uint32_t index, const SafeName& name) {
        std::string reasons;
        for (const std::string& change : name.changes) {
            reasons += (reasons.empty() ? "" : ", ") + change;
        }
        if (!reasons.empty()) {
            Warn(index, "is restored as " + name.path + ": " + reasons);
        }
    }
    void Warn(std::uint32_t index, const std::string& what) {
        tell_(
            EntryWarning(directory_, index, 0, directory_.entries[index].name + " " + what + "."));
    }
    void Refuse(std::uint32_t index, const std::string& why) {
        ++plan_.failed;
        tell_(EntryWarning(directory_, index, error_number::kBadFileName,
                           directory_.entries[index].name + " is not restored: " + why + "."));
    }

    const Directory& directory_;
    const DosMask& mask_;
    platform::CodePage& code_page_;
    Tell tell_;
    Overlaps overlaps_;
    ExtractionPlan plan_;
    std::uint32_t next_ = 0;  // entry to decide about
    TakenNames names_;
    std::vector<Taken> taken_;  // by the numbers of names_
    std::uint32_t folders_ = 0;
    std::string last_folder_;
    std::uint32_t last_number_ = 0;
};

ComponentMessage EntryWarning(const Directory& directory, std::uint32_t index, int code,
                              const std::string& text) {
    return {
        MessageKind::kWarning,         code, static_cast<std::int32_t>(index + 1),
        directory.entries[index].name, text, static_cast<std::int32_t>(directory.entries.size())};
}

ExtractionPlanner::ExtractionPlanner(const Directory& directory, const DosMask& mask,
                                     platform::CodePage& code_page, Tell tell)
    : planner_(std::make_unique<Planner>(directory, mask, code_page, std::move(tell))) {}

ExtractionPlanner::~ExtractionPlanner() = default;

bool ExtractionPlanner::IsInOrder() const { return planner_->IsInOrder(); }

bool ExtractionPlanner::PlanMore(std::size_t count) { return planner_->PlanMore(count); }

void ExtractionPlanner::PlanAll() {
    while (PlanMore(std::numeric_limits<std::size_t>::max())) {
    }
}

const ExtractionPlan& ExtractionPlanner::Plan() const { return planner_->Plan(); }

}  // namespace vantrel::zip
