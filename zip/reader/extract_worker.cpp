#include "zip/reader/extract_worker.h"

#include <algorithm>
#include <functional>
#include <optional>

#include "common/path.h"
#include "zip/disks/disk_prompt.h"
#include "zip/reader/target_file.h"

namespace vantrel::zip {

Extraction::Extraction(const platform::Machine& seam, const ExtractOptions& wanted, RunContext& run,
                       Directory listed)
    : machine(seam),
      options(wanted),
      channel(run),
      directory(std::move(listed)),
      mask(machine.code_page.Fold(options.mask)),
      planner(directory, mask, machine.code_page,
              [this](ComponentMessage message) { channel.Report(std::move(message)); }),
      plan(planner.Plan()),
      folders(machine, options.destination,
              [this](const std::string& folder, const std::string& name) {
                  const std::string path = path::Join(folder, name);
                  channel.Report(Warning(path, "A folder is restored as " + path +
                                                   ": its name is another folder's short name."));
              }),
      queue(directory, plan, channel.Token()) {}

void Extraction::Fail(std::uint32_t index, const Error& error) {
    ++failed;
    channel.Report(NotRestoredWarning(directory, index, error.number(), error.description()));
}

ComponentMessage Extraction::DescribeFull(std::uint32_t index) const {
    const StoredEntry& entry = directory.entries[index];
    std::string path = path::Join(options.destination, entry.name);
    std::replace(path.begin(), path.end(), '/', '\\');
    return Failure(error_number::kDiskFull, path,
                   FullDriveText(path, entry.size, machine.drives.FreeBytes(options.destination)));
}

// A drive that was pulled out may also be reported as a missing path.
bool Extraction::IsOfDestination(int number) {
    return number == error_number::kDiskFull || number == error_number::kDeviceUnavailable ||
           number == error_number::kDiskNotReady ||
           (number == error_number::kPathNotFound && folders.DestinationIsGone());
}

ExtractWorker::ExtractWorker(Extraction& run)
    : run_(run),
      range_(run.queue.Join()),
      source_(run.machine.files, run.options.archive),
      data_(source_) {
    source_.AskOn(run.channel, run.directory);
}

void ExtractWorker::Work() {
    for (;;) {
        run_.channel.CheckStop();
        const FileQueue::Batch batch = run_.queue.Next(range_);
        if (batch.IsEmpty()) {
            return;
        }
        if (batch.bytes > 0) {
            const PlannedEntry& first = run_.plan.files[batch.begin];
            data_.Prefetch(run_.directory.entries[first.index].offset, batch.bytes);
        }
        for (std::size_t i = batch.begin; i < batch.end; ++i) {
            RestoreFile(run_.plan.files[i]);
        }
        LeaveFolder();
    }
}

void ExtractWorker::RestoreFile(const PlannedEntry& planned) {
    counted_ = 0;
    const bool restored = run_.Restore(planned.index, [&] {
        try {
            RestoreOnce(planned);
        } catch (const Error&) {
            LeaveFolder();  // the answer to a question may replace it by another one
            throw;
        }
    });
    const std::uint64_t size = run_.directory.entries[planned.index].size;
    if (restored) {
        run_.channel.AddDone(size - counted_);
        run_.channel.AddFile();
    } else {
        run_.channel.LeaveOut(size, counted_);
    }
}

void ExtractWorker::RestoreOnce(const PlannedEntry& planned) {
    const StoredEntry& entry = run_.directory.entries[planned.index];
    std::optional<TargetFile> target;
    const auto open = [&] {
        if (!target) {
            const path::Halves path = path::Split(planned.path);
            EnterFolder(path.folder);
            target.emplace(run_.machine, *folder_, folder_path_, std::string(path.name),
                           run_.options.archive);
        }
    };
    std::uint64_t written = 0;
    const auto put = [&](const std::uint8_t* bytes, std::size_t count) {
        run_.channel.CheckStop();
        open();
        target->Write(bytes, count);
        written += count;
        if (written > counted_) {
            run_.channel.AddDone(written - counted_);
            counted_ = written;
        }
        const double share = static_cast<double>(written) / static_cast<double>(entry.size);
        run_.channel.SetFilePercent(static_cast<int>(share * 100));
    };
    // std::ref: a copy of `put` would be allocated for each file.
    const std::string disagreement = data_.Read(entry, std::ref(put));
    open();
    target->Commit(entry.times, entry.attributes);
    ReportRestored(planned, target->Path(), disagreement);
}

void ExtractWorker::EnterFolder(std::string_view name) {
    if (folder_path_.empty() || name != folder_name_) {
        const std::string wanted(name);
        LeaveFolder();
        folder_path_ = run_.folders.Ensure(wanted);
        folder_name_ = wanted;
    }
    if (!folder_) {
        folder_ = run_.machine.files.OpenFolder(folder_path_);
    }
}

void ExtractWorker::ReportRestored(const PlannedEntry& planned, const std::string& path,
                                   const std::string& disagreement) {
    const std::uint32_t index = planned.index;
    const std::string& name = run_.directory.entries[index].name;
    if (!disagreement.empty()) {
        run_.channel.Report(EntryWarning(run_.directory, index, 0,
                                         name + " has another " + disagreement +
                                             " in its local header; the directory's holds."));
    }
    if (path::Split(path).name != path::Split(planned.path).name) {
        run_.channel.Report(EntryWarning(
            run_.directory, index, 0,
            name + " is restored as " + path + ": its name is another file's short name."));
    }
    if (run_.channel.WantsEachFile()) {
        run_.channel.Report({MessageKind::kInformation, 0, static_cast<std::int32_t>(index + 1),
                             path, "Extracting " + path,
                             static_cast<std::int32_t>(run_.directory.entries.size())});
    }
}

}  // namespace vantrel::zip
