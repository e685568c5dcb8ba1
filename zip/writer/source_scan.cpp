#include "zip/writer/source_scan.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "common/dos_mask.h"
#include "common/path.h"
#include "zip/base/bytes.h"
#include "zip/base/folders.h"
#include "zip/base/retry.h"
#include "zip/records/entry_records.h"
#include "zip/writer/folder_queue.h"

namespace vantrel::zip {

namespace {

using platform::FileInfo;

// Bytes of an encoded item before its name: attributes, size and three times.
constexpr std::size_t kEncodedHeaderSize = 4 + 8 + 3 * 8;

class Scanner {
  public:
    Scanner(const platform::Machine& machine, const SourceSpec& spec, const OwnFiles& own,
            RunContext& channel, int threads)
        : machine_(machine),
          spec_(spec),
          own_(own),
          channel_(channel),
          source_(machine, channel, spec.folder),
          mask_(machine.code_page.Fold(spec.mask)),
          // One that cannot be found cannot be stored either.
          archive_(TryFind(machine.files, own.archive)),
          temporary_name_(machine.code_page.Fold(path::Name(own.temporary))),
          queue_(machine.files, spec.folder, channel.Token(), threads) {}

    SourceList Run() {
        ScanFolder({});
        while (auto listed = queue_.Next()) {
            ScanFolder(std::move(*listed));
        }
        channel_.CheckStop();
        return std::move(list_);
    }

  private:
    // The folder's name is its path below the source folder, "" for that folder itself.
    void ScanFolder(FolderQueue::ListedFolder listed) {
        const FileInfo& folder = listed.folder;
        const std::string path = path::Join(spec_.folder, folder.name);
        if (!listed.listing) {
            listed.listing = List(folder, path);
        }
        channel_.CheckStop();
        if (!listed.listing) {
            return;
        }
        bool is_empty = true;
        for (FileInfo& info : *listed.listing) {
            is_empty &= !AddEntry(folder.name, path, info);
        }
        channel_.SetFound(list_.files);
        queue_.Add(std::exchange(sub_folders_, {}));
        if (is_empty && !folder.name.empty() && mask_.IsEverything()) {
            Add({folder.name, folder.attributes, 0, folder.times});
        }
    }

    // Nothing when the folder cannot be read; the warning has been reported.
    std::optional<FolderQueue::Listing> List(const FileInfo& folder, const std::string& path) {
        for (;;) {
            try {
                return queue_.List(folder.name);
            } catch (const Error& error) {
                if (folder.name.empty() || source_.IsGone()) {
                    source_.AskForSource(error);
                    continue;
                }
                LeaveOut(error.number(), path,
                         FailureText("Skipped a folder that cannot be read", path, error));
                return std::nullopt;
            }
        }
    }

    // Adds one entry of a folder to the list or to sub_folders_. False when the entry is not part
    // of the backup, so that a folder with only such entries is stored as an empty one.
    bool AddEntry(const std::string& folder_name, const std::string& folder, FileInfo& info) {
        const std::string path = path::Join(folder, info.name);
        const bool wanted = info.IsFolder() ? spec_.sub_folders : IsWanted(info.name);
        if (!wanted) {
            return false;
        }
        if (info.is_link) {
            Warn(path, "Skipped a link, which is not followed: " + path);
            return false;
        }
        if ((info.attributes & platform::attribute::kDevice) != 0) {
            Warn(path, "Skipped a device, which holds no data to back up: " + path);
            return false;
        }
        if (!info.IsFolder() && IsOwn(info, path)) {
            return true;
        }
        info.name = path::Join(folder_name, info.name);
        if (info.name.size() >= kMaxNameLength) {
            LeaveOut(error_number::kBadFileName, path, "Skipped, the path is too long: " + path);
            return true;
        }
        if (info.IsFolder()) {
            sub_folders_.push_back(std::move(info));
        } else {
            Add({info.name, info.attributes, info.size, info.times});
        }
        return true;
    }

    bool IsWanted(const std::string& name) const {
        return mask_.IsEverything() || mask_.Matches(machine_.code_page.Fold(name));
    }

    // Compares names, sizes and times first: asking the disk about every file would be slow.
    bool IsOwn(const FileInfo& info, const std::string& path) {
        const bool like_archive = archive_ && archive_->size == info.size &&
                                  archive_->times.modified == info.times.modified;
        return (like_archive && IsSameFile(path, own_.archive)) ||
               (machine_.code_page.Fold(info.name) == temporary_name_ &&
                IsSameFile(path, own_.temporary));
    }

    bool IsSameFile(const std::string& path, const std::string& other) {
        try {
            return machine_.files.SameFile(path, other);
        } catch (const Error&) {
            return false;  // in doubt the file is stored
        }
    }

    void Add(const SourceItem& item) {
        list_.items.Append(EncodeItem(item));
        list_.bytes += item.size;
        list_.files += item.IsFolder() ? 0 : 1;
    }

    void LeaveOut(int number, const std::string& path, const std::string& text) {
        ++list_.skipped;
        channel_.Report(LeftOutWarning(path, text, number));
    }

    void Warn(const std::string& path, const std::string& text) {
        channel_.Report(Warning(path, text));
    }

    platform::Machine machine_;
    const SourceSpec& spec_;
    const OwnFiles& own_;
    RunContext& channel_;
    SourceFolder source_;
    DosMask mask_;
    std::optional<FileInfo> archive_;
    std::string temporary_name_;
    std::vector<FileInfo> sub_folders_;  // of the folder in progress
    SourceList list_;
    FolderQueue queue_;
};

}  // namespace

std::string StoredName(const SourceItem& item) {
    std::string name = item.name;
    std::replace(name.begin(), name.end(), '\\', '/');
    return item.IsFolder() ? name + '/' : name;
}

std::string EncodeItem(const SourceItem& item) {
    std::string record;
    record.reserve(kEncodedHeaderSize + item.name.size());
    Put32(record, item.attributes);
    Put64(record, item.size);
    Put64(record, item.times.modified);
    Put64(record, item.times.accessed);
    Put64(record, item.times.created);
    record += item.name;
    return record;
}

SourceItem DecodeItem(std::string_view record) {
    return {std::string(record.substr(kEncodedHeaderSize)),
            GetNumber<std::uint32_t>(record, 0),
            GetNumber<std::uint64_t>(record, 4),
            {GetNumber<std::uint64_t>(record, 12), GetNumber<std::uint64_t>(record, 20),
             GetNumber<std::uint64_t>(record, 28)}};
}

SourceSpec ParseFileSpec(std::string_view text) {
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"') {
        text = text.substr(1, text.size() - 2);
    }
    const std::size_t slash = text.rfind('\\');
    const std::size_t folder_size = slash == std::string_view::npos ? 0 : slash + 1;
    SourceSpec spec;
    // The parent of "C:\Data\x" is "C:\Data", of "C:\x" it is "C:\".
    spec.folder = path::Parent(std::string(text.substr(0, folder_size)) + "x");
    if (folder_size < text.size()) {
        spec.mask = text.substr(folder_size);
    }
    return spec;
}

SourceList ScanSource(const platform::Machine& machine, const SourceSpec& spec, const OwnFiles& own,
                      RunContext& channel, int threads) {
    return Scanner(machine, spec, own, channel, threads).Run();
}

}  // namespace vantrel::zip
