#include "zip/reader/archive_extractor.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include "common/display_text.h"
#include "common/path.h"
#include "zip/base/folders.h"
#include "zip/base/retry.h"
#include "zip/reader/extract_worker.h"
#include "zip/reader/searched_archive.h"

namespace vantrel::zip {

namespace {

// Work for a file besides its bytes, in bytes that are decompressed in the same time: creating and
// closing it (docs/performance.md).
constexpr std::uint64_t kFileCost = 128 * 1024;
// Entries planned before the other threads are notified: a few batches for each.
constexpr std::size_t kPlannedAtOnce = 512;

// Throws when the archive has other entries than those that were listed.
void RequireListed(const Directory& directory, const EntryList* listed) {
    const auto same = [](const StoredEntry& entry, const StoredEntry& other) {
        return entry.name == other.name && entry.is_folder == other.is_folder;
    };
    if (listed != nullptr && !std::ranges::equal(directory.entries, *listed, same)) {
        throw Error(error_number::kDeviceIo, "", "It is another archive than the one listed");
    }
}

Directory ReadOnce(const platform::Machine& machine, const ExtractOptions& options,
                   RunContext& channel) {
    const AskForDisk ask = AskWith(channel);
    ArchiveReader source(machine.files, options.archive);
    source.AskForDisks(machine.drives, ask);
    const auto check_stop = [&channel](std::uint64_t) { channel.CheckStop(); };
    Directory directory = options.search
                              ? ReadDamagedDirectory(machine, options.archive, ask, check_stop)
                              : ReadDirectory(source, &source, machine.code_page, machine.clock);
    if (directory.entries.empty() && directory.lost.empty() && !directory.IsComplete()) {
        throw Error(error_number::kDeviceIo, "", directory.trouble);
    }
    RequireListed(directory, options.listed);
    return directory;
}

// Entries that cannot be restored completely become entries like the others.
void AddLost(Directory& directory) {
    for (const LostEntry& lost : directory.lost) {
        directory.entries.Append(lost.entry);
    }
    directory.lost.clear();
    directory.start = ~std::uint64_t{0};  // their data may end behind the archive
}

std::shared_ptr<const Directory> ReadDirectoryOrAsk(const platform::Machine& machine,
                                                    const ExtractOptions& options,
                                                    RunContext& channel) {
    if (options.searched) {
        return options.searched;
    }
    const auto directory = std::make_shared<Directory>(
        RetryOrAsk(channel, DescribeFailure("The archive cannot be read", options.archive),
                   [&] { return ReadOnce(machine, options, channel); }));
    if (options.keep_broken) {
        AddLost(*directory);
    }
    return directory;
}

// The planning thread of an extraction.
class Extractor {
  public:
    explicit Extractor(Extraction& run)
        : run_(run), machine_(run.machine), options_(run.options), channel_(run.channel) {}

    void Run() {
        ReportLost();
        const bool fits = options_.verify_only || EverythingFits();
        // Otherwise files are restored before planning ends.
        if (!fits) {
            run_.planner.PlanAll();
            RequireSpace();
        }
        if (!options_.verify_only) {
            MakeDestination();
        }
        RestoreFiles();
        channel_.CheckStop();
        channel_.SetFinishing();
        if (options_.verify_only) {
            run_.restored += run_.plan.folders.size();
        } else {
            RestoreFolders();
        }
        channel_.RaiseLastEvent();
        if (!run_.directory.IsComplete() && !run_.directory.searched) {
            channel_.Fail(
                Failure(error_number::kDeviceIo, options_.archive, run_.directory.trouble));
        }
    }

  private:
    // What a search has found and cannot be restored.
    void ReportLost() {
        const Directory& directory = run_.directory;
        if (directory.searched) {
            channel_.Report(
                Warning(options_.archive, directory.trouble + " It was searched for its files."));
        }
        for (const LostEntry& lost : directory.lost) {
            ++run_.failed;
            channel_.Report(LeftOutWarning(
                lost.entry.name, NotRestored(lost.entry.name, lost.why, options_.verify_only),
                error_number::kDeviceIo));
        }
        if (directory.lost_unnamed > 0) {
            run_.failed += static_cast<std::int32_t>(
                std::min<std::uint64_t>(directory.lost_unnamed, INT32_MAX / 2));
            channel_.Report(Warning(
                options_.archive,
                Counted(directory.lost_unnamed, "more damaged file is", "more damaged files are") +
                    " not restored."));
        }
    }

    // Whether all entries together fit, including those that will not be restored.
    bool EverythingFits() {
        const std::uint64_t free = FreeBytes();
        std::uint64_t left = free;
        const auto fits = [&left](const StoredEntry& entry) {
            const bool does = entry.size <= left;
            left -= does ? entry.size : 0;
            return does;
        };
        const auto& entries = run_.directory.entries;
        return IsUnknown(free) || std::all_of(entries.begin(), entries.end(), fits);
    }

    // Asks until the plan fits, before the first byte is written.
    void RequireSpace() {
        const ExtractionPlan& plan = run_.plan;
        for (;;) {
            const std::uint64_t free = FreeBytes();
            if (IsUnknown(free) || plan.bytes <= free) {
                return;
            }
            const std::uint64_t needed = plan.bytes - ReplacedBytes();
            if (needed <= free) {
                return;
            }
            const NumberFormat numbers;
            channel_.AskRetryOrStop(
                Failure(error_number::kDiskFull, options_.destination,
                        "The destination is too small: " + options_.destination + " needs about " +
                            SizeText(needed - free, numbers) + " more (" + SizeText(free, numbers) +
                            " free)."));
        }
    }
    // 0 is also reported where the free space is unknown; a full disk fails by itself.
    static bool IsUnknown(std::uint64_t free) { return free == 0; }

    // Free where the destination is or will be.
    std::uint64_t FreeBytes() {
        std::string folder = options_.destination;
        while (!MayExist(machine_.files, folder) && !path::Parent(folder).empty()) {
            folder = path::Parent(folder);
        }
        return machine_.drives.FreeBytes(folder);
    }

    // Freed by the files of the destination that will be replaced.
    std::uint64_t ReplacedBytes() {
        std::uint64_t bytes = 0;
        for (const PlannedEntry& planned : run_.plan.files) {
            channel_.CheckStop();
            const auto replaced = TryFind(
                machine_.files, path::Join(options_.destination, run_.planner.PathOf(planned)));
            bytes += replaced ? replaced->size : 0;
        }
        return std::min(bytes, run_.plan.bytes);
    }

    void MakeDestination() {
        RetryOrAsk(channel_,
                   DescribeFailure("The destination cannot be used", options_.destination),
                   [this] { MakeDestinationFolders(); });
    }
    void MakeDestinationFolders() {
        if (options_.destination.empty()) {
            RaiseError(error_number::kPathNotFound);
        }
        const auto missing = MissingFolders(machine_.files, options_.destination);
        if (!missing.empty() && path::Parent(missing.front()).empty()) {
            RaiseError(error_number::kDeviceUnavailable);
        }
        for (const std::string& folder : missing) {
            machine_.files.MakeFolder(folder);
        }
    }

    // This thread plans while the others restore what is planned already, and then joins them.
    void RestoreFiles() {
        std::vector<std::jthread> others;
        channel_.FailOnError([&] {
            for (int i = run_.threads; i > 1; --i) {
                others.emplace_back(
                    [this] { channel_.FailOnError([this] { ExtractWorker(run_).Work(); }); });
            }
            PlanRest();
            ExtractWorker(run_).Work();
        });
    }

    void PlanRest() {
        for (bool more = true; more;) {
            channel_.CheckStop();
            more = run_.planner.PlanMore(kPlannedAtOnce);
            run_.queue.SetPlanned(run_.plan.files.size(), !more);
        }
        channel_.SetTotal(run_.plan.files.size(), run_.plan.bytes);
    }

    // The times of folders are set last: writing into a folder changes them.
    void RestoreFolders() {
        const std::vector<PlannedEntry>& planned = run_.plan.folders;
        std::vector<std::string> paths(planned.size());
        for (std::size_t i = 0; i < paths.size(); ++i) {
            run_.Restore(planned[i].index,
                         [&] { paths[i] = run_.folders.Ensure(run_.planner.PathOf(planned[i])); });
        }
        for (std::size_t i = 0; i < paths.size(); ++i) {
            channel_.CheckStop();
            if (!paths[i].empty()) {
                FinishFolder(planned[i].index, paths[i]);
            }
        }
    }

    void FinishFolder(std::uint32_t index, const std::string& path) {
        constexpr std::uint32_t kSettable =
            platform::attribute::kReadOnly | platform::attribute::kHidden |
            platform::attribute::kSystem | platform::attribute::kArchive;
        const StoredEntry& entry = run_.directory.entries[index];
        try {
            machine_.files.SetTimes(path, entry.times);
            if ((entry.attributes & kSettable) != 0) {
                machine_.files.SetAttributes(path, entry.attributes & kSettable);
            }
        } catch (const Error& error) {
            channel_.Report(EntryWarning(
                run_.directory, index, error.number(),
                entry.name + " keeps its time and attributes: " + error.description() + "."));
        }
    }

    Extraction& run_;
    const platform::Machine& machine_;
    const ExtractOptions& options_;
    RunContext& channel_;
};

}  // namespace

ExtractResult ExtractArchive(const platform::Machine& machine, const ExtractOptions& options,
                             RunEvents& events) {
    RunContext channel(kFileCost);
    std::optional<Extraction> run;
    ExtractResult result;
    result.outcome = channel.Run(machine.clock, events, [&] {
        run.emplace(machine, options, channel, ReadDirectoryOrAsk(machine, options, channel));
        Extractor(*run).Run();
    });
    if (run) {
        result.entries = run->restored;
        result.failed = run->plan.failed + run->failed;
        result.directory_damaged = !run->directory.IsComplete();
    }
    return result;
}

}  // namespace vantrel::zip
