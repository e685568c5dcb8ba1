#include "zip/writer/source_scan.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "zip/base/dos_mask.h"
#include "zip/base/little_endian.h"
#include "zip/base/paths.h"
#include "zip/records/entry_records.h"

namespace vantrel::zip {

namespace {

using platform::FileInfo;

class Scanner {
  public:
    Scanner(const platform::Machine& machine, const SourceSpec& spec, const OwnFiles& own,
            RunChannel& channel)
        : machine_(machine),
          spec_(spec),
          own_(own),
          channel_(channel),
          mask_(machine.code_page, spec.mask),
          archive_(FindArchive()),
          temporary_name_(machine.code_page.Fold(LeafOf(own.temporary))) {}

    SourceList Run() {
        pending_.push_back({});
        while (!pending_.empty()) {
            const FileInfo folder = std::move(pending_.back());
            pending_.pop_back();
            ScanFolder(folder);
        }
        return std::move(list_);
    }

  private:
    std::optional<FileInfo> FindArchive() {
        try {
            return machine_.files.Find(own_.archive);
        } catch (const Error&) {
            return std::nullopt;  // what cannot be looked at cannot be stored either
        }
    }

    // `folder.name` is its path below the source folder, "" for that folder itself.
    void ScanFolder(const FileInfo& folder) {
        std::vector<FileInfo> found;
        const std::string path = JoinPath(spec_.folder, folder.name);
        if (!List(folder, path, found)) {
            return;
        }
        std::sort(found.begin(), found.end(),
                  [](const FileInfo& a, const FileInfo& b) { return a.name < b.name; });
        const std::size_t first_pending = pending_.size();
        bool holds_something = false;
        for (FileInfo& info : found) {
            holds_something |= Consider(folder.name, path, info);
        }
        std::reverse(pending_.begin() + static_cast<std::ptrdiff_t>(first_pending), pending_.end());
        if (!holds_something && !folder.name.empty() && mask_.IsEverything()) {
            Add({folder.name, folder.attributes, 0, folder.times});
        }
    }

    // One pass over a folder. False when it cannot be read, which has then been said.
    bool List(const FileInfo& folder, const std::string& path, std::vector<FileInfo>& found) {
        for (;;) {
            try {
                found.clear();
                machine_.files.List(path, [&](const FileInfo& info) {
                    found.push_back(info);
                    return !channel_.Token().stop_requested();
                });
                channel_.CheckStop();
                return true;
            } catch (const Error& error) {
                if (folder.name.empty() || SourceIsGone()) {
                    channel_.RetryOrStop(
                        {error.number(), spec_.folder,
                         Sentence("The folder to back up cannot be read", spec_.folder, error)});
                    continue;
                }
                ++list_.skipped;
                Warn(error.number(), path,
                     Sentence("Skipped a folder that cannot be read", path, error));
                return false;
            }
        }
    }

    bool SourceIsGone() {
        try {
            return !machine_.files.Find(spec_.folder);
        } catch (const Error&) {
            return false;
        }
    }

    // Whether the folder is more than an empty one because of this entry.
    bool Consider(const std::string& folder_name, const std::string& folder, FileInfo& info) {
        const std::string path = JoinPath(folder, info.name);
        const bool wanted = info.IsFolder() ? spec_.sub_folders : mask_.Matches(info.name);
        if (!wanted) {
            return false;
        }
        if (info.is_link) {
            Warn(0, path, "Skipped a link, which is not followed: " + path);
            return false;
        }
        if ((info.attributes & platform::attribute::kDevice) != 0) {
            Warn(0, path, "Skipped a device, which holds no data to back up: " + path);
            return false;
        }
        if (!info.IsFolder() && IsOwn(info, path)) {
            return true;
        }
        info.name = JoinPath(folder_name, info.name);
        if (info.name.size() >= kLongestName) {
            ++list_.skipped;
            Warn(error_number::kBadFileName, path, "Skipped, the path is too long: " + path);
            return true;
        }
        if (info.IsFolder()) {
            pending_.push_back(std::move(info));
        } else {
            Add({info.name, info.attributes, info.size, info.times});
        }
        return true;
    }

    // Compares names and figures first, because asking the disk for every file would take long.
    bool IsOwn(const FileInfo& info, const std::string& path) {
        const bool like_archive = archive_ && archive_->size == info.size &&
                                  archive_->times.modified == info.times.modified;
        return (like_archive && Same(path, own_.archive)) ||
               (machine_.code_page.Fold(info.name) == temporary_name_ &&
                Same(path, own_.temporary));
    }

    bool Same(const std::string& path, const std::string& other) {
        try {
            return machine_.files.SameFile(path, other);
        } catch (const Error&) {
            return false;  // stored rather than lost
        }
    }

    void Add(const SourceItem& item) {
        list_.items.Append(PackItem(item));
        list_.bytes += item.size;
    }

    void Warn(int number, const std::string& path, const std::string& text) {
        channel_.Tell({MessageKind::kWarning, number, 0, path, text, 0});
    }

    platform::Machine machine_;
    const SourceSpec& spec_;
    const OwnFiles& own_;
    RunChannel& channel_;
    DosMask mask_;
    std::optional<FileInfo> archive_;
    std::string temporary_name_;
    std::vector<FileInfo> pending_;  // folders to scan, the next one last
    SourceList list_;
};

}  // namespace

std::string PackItem(const SourceItem& item) {
    std::string record;
    record.reserve(36 + item.name.size());
    Put32(record, item.attributes);
    Put64(record, item.size);
    Put64(record, item.times.modified);
    Put64(record, item.times.accessed);
    Put64(record, item.times.created);
    record += item.name;
    return record;
}

SourceItem UnpackItem(std::string_view record) {
    return {std::string(record.substr(36)),
            GetNumber<std::uint32_t>(record, 0),
            GetNumber<std::uint64_t>(record, 4),
            {GetNumber<std::uint64_t>(record, 12), GetNumber<std::uint64_t>(record, 20),
             GetNumber<std::uint64_t>(record, 28)}};
}

SourceList ScanSource(const platform::Machine& machine, const SourceSpec& spec, const OwnFiles& own,
                      RunChannel& channel) {
    return Scanner(machine, spec, own, channel).Run();
}

}  // namespace vantrel::zip
