#include "zip/reader/archive_extractor.h"

#include <algorithm>
#include <optional>
#include <thread>
#include <vector>

#include "common/display_text.h"
#include "zip/base/paths.h"
#include "zip/reader/extract_worker.h"

namespace vantrel::zip {

namespace {

// A thread holds up to 33 MB while it restores large files.
constexpr int kMostThreads = 8;
// So many entries are planned before the other threads hear of them: a few batches for each.
constexpr std::size_t kPlannedAtOnce = 512;

int ThreadCount(int wanted, platform::Process& process, std::size_t files) {
    const int most = static_cast<int>(std::min<std::size_t>(files, kMostThreads));
    return std::clamp(wanted > 0 ? wanted : process.Processors(), 1, std::max(most, 1));
}

class ExtractRun {
  public:
    ExtractRun(const platform::Machine& machine, const ExtractOptions& options, RunChannel& channel)
        : machine_(machine), options_(options), channel_(channel) {}

    // On a background thread.
    void Run() {
        ReadTheDirectory();
        const DosMask mask(machine_.code_page, options_.mask);
        ExtractionPlanner planner(
            directory_, mask, machine_.code_page,
            [this](ComponentMessage message) { channel_.Tell(std::move(message)); });
        // Nothing of the plan is needed to begin where everything fits anyway.
        if (!planner.IsInOrder() || !EverythingFits()) {
            planner.PlanAll();
            failed = planner.Plan().failed;
            CheckSpace(planner.Plan());
        }
        MakeDestination();
        RestoreAll(planner);
        channel_.RaiseLastEvent();
        if (!directory_.IsComplete()) {
            channel_.Fail({error_number::kDeviceIo, options_.archive, directory_.trouble});
        }
    }

    std::uint64_t entries = 0;
    std::int32_t failed = 0;

  private:
    void ReadTheDirectory() {
        UntilItWorks(channel_, Cannot("The archive cannot be read", options_.archive), [this] {
            ArchiveSource source(machine_.files, options_.archive);
            source.AskForDisks(machine_.drives, [this](const StepFailure& failure) {
                channel_.RetryOrStop(failure);
            });
            directory_ = ReadDirectory(source, machine_.code_page, machine_.clock);
            if (directory_.entries.empty() && !directory_.IsComplete()) {
                throw Error(error_number::kDeviceIo, "", directory_.trouble);
            }
        });
    }

    // Whether all entries together fit, those that will not be restored among them.
    bool EverythingFits() {
        const std::uint64_t free = FreeBytes();
        std::uint64_t room = free;
        const auto fits = [&room](const StoredEntry& entry) {
            const bool does = entry.size <= room;
            room -= does ? entry.size : 0;
            return does;
        };
        return IsUnknown(free) ||
               std::all_of(directory_.entries.begin(), directory_.entries.end(), fits);
    }

    // Said before the first byte is written.
    void CheckSpace(const ExtractionPlan& plan) {
        for (;;) {
            const std::uint64_t free = FreeBytes();
            if (IsUnknown(free) || plan.bytes <= free || plan.bytes - ReplacedBytes(plan) <= free) {
                return;
            }
            channel_.RetryOrStop({error_number::kDiskFull, options_.destination,
                                  "The destination is too small: " + options_.destination + " (" +
                                      Counted(plan.bytes, "byte", "bytes") + " needed, " +
                                      std::to_string(free) + " free)."});
        }
    }
    // 0 is also "cannot be told"; a full disk will say so itself.
    static bool IsUnknown(std::uint64_t free) { return free == 0; }

    // Free where the destination is or will be.
    std::uint64_t FreeBytes() {
        std::string folder = options_.destination;
        while (!Exists(folder) && !ParentOf(folder).empty()) {
            folder = ParentOf(folder);
        }
        return machine_.drives.FreeBytes(folder);
    }

    // What files of the destination that will be replaced give back.
    std::uint64_t ReplacedBytes(const ExtractionPlan& plan) {
        std::uint64_t bytes = 0;
        for (const PlannedEntry& planned : plan.files) {
            channel_.CheckStop();
            bytes += SizeOf(JoinPath(options_.destination, planned.path));
        }
        return std::min(bytes, plan.bytes);
    }
    std::uint64_t SizeOf(const std::string& path) {
        try {
            const auto found = machine_.files.Find(path);
            return found ? found->size : 0;
        } catch (const Error&) {
            return 0;
        }
    }
    bool Exists(const std::string& path) {
        try {
            return machine_.files.Find(path).has_value();
        } catch (const Error&) {
            return true;  // there, but not for us to look at
        }
    }

    void MakeDestination() {
        UntilItWorks(channel_, Cannot("The destination cannot be used", options_.destination),
                     [this] {
                         channel_.CheckStop();
                         MakeFolders(options_.destination);
                     });
    }
    void MakeFolders(const std::string& folder) {
        if (folder.empty()) {
            RaiseError(error_number::kPathNotFound);
        }
        if (!Exists(folder)) {
            const std::string parent = ParentOf(folder);
            if (parent.empty()) {
                RaiseError(error_number::kDeviceUnavailable);
            }
            MakeFolders(parent);
            machine_.files.MakeFolder(folder);
        }
    }

    void RestoreAll(ExtractionPlanner& planner) {
        FolderMaker folders(machine_, options_.destination,
                            [this](const std::string& folder, const std::string& name) {
                                TellAlias(folder, name);
                            });
        Extraction run(machine_, options_.archive, directory_, planner.Plan(), folders, channel_);
        Work(planner, run);
        Count(run);
        channel_.CheckStop();
        RestoreFolders(run, folders);
        Count(run);
    }

    void Count(const Extraction& run) {
        entries = run.restored;
        failed = run.plan.failed + run.failed;
    }

    void TellAlias(const std::string& folder, const std::string& name) {
        const std::string path = JoinPath(folder, name);
        channel_.Tell(
            {MessageKind::kWarning, 0, 0, path,
             "A folder is restored as " + path + ": its name is another folder's short name.", 0});
    }

    // This thread plans, while the others restore already what is planned, and then joins in.
    void Work(ExtractionPlanner& planner, Extraction& run) {
        std::vector<std::jthread> others;
        channel_.FailOnError([&] {
            // Disks are put in one after the other, and so must be read.
            const int wanted = directory_.disks.IsSet() ? 1 : options_.threads;
            for (int i = ThreadCount(wanted, machine_.process, directory_.entries.size()); i > 1;
                 --i) {
                others.emplace_back(
                    [this, &run] { channel_.FailOnError([&run] { ExtractWorker(run).Work(); }); });
            }
            PlanRest(planner, run);
            ExtractWorker(run).Work();
        });
    }

    void PlanRest(ExtractionPlanner& planner, Extraction& run) {
        for (bool more = true; more;) {
            channel_.CheckStop();
            more = planner.PlanMore(kPlannedAtOnce);
            run.queue.SetPlanned(run.plan.files.size(), !more);
        }
        channel_.SetTotal(run.plan.bytes);
    }

    // Their times come last, when nothing is put into them any more.
    void RestoreFolders(Extraction& run, FolderMaker& folders) {
        std::vector<std::string> paths(run.plan.folders.size());
        for (std::size_t i = 0; i < paths.size(); ++i) {
            const PlannedEntry& planned = run.plan.folders[i];
            run.Restore(planned.index, [&] { paths[i] = folders.Ensure(planned.path); });
        }
        for (std::size_t i = 0; i < paths.size(); ++i) {
            channel_.CheckStop();
            if (!paths[i].empty()) {
                FinishFolder(run, run.plan.folders[i].index, paths[i]);
            }
        }
    }

    void FinishFolder(Extraction& run, std::uint32_t index, const std::string& path) {
        constexpr std::uint32_t kMeant =
            platform::attribute::kReadOnly | platform::attribute::kHidden |
            platform::attribute::kSystem | platform::attribute::kArchive;
        const StoredEntry& entry = directory_.entries[index];
        try {
            machine_.files.SetTimes(path, entry.times);
            if ((entry.attributes & kMeant) != 0) {
                machine_.files.SetAttributes(path, entry.attributes & kMeant);
            }
        } catch (const Error& error) {
            run.channel.Tell(EntryWarning(
                directory_, index, error.number(),
                entry.name + " keeps its time and attributes: " + error.description() + "."));
        }
    }

    platform::Machine machine_;
    const ExtractOptions& options_;
    RunChannel& channel_;
    Directory directory_;
};

}  // namespace

ExtractResult ExtractArchive(const platform::Machine& machine, const ExtractOptions& options,
                             RunEvents& events) {
    RunChannel channel;
    ExtractRun run(machine, options, channel);
    ExtractResult result;
    result.outcome = channel.Run(machine.clock, events, [&run] { run.Run(); });
    result.entries = run.entries;
    result.failed = run.failed;
    return result;
}

}  // namespace vantrel::zip
