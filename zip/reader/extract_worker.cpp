#include "zip/reader/extract_worker.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "common/path.h"
#include "zip/base/folders.h"
#include "zip/disks/disk_prompt.h"

namespace vantrel::zip {

namespace {

constexpr int kMaxThreads = 32;
// Added to the name of a file that is damaged.
constexpr const char* kBrokenSuffix = ".damaged";

int ThreadCount(const Directory& directory, const ExtractOptions& options,
                platform::Process& process) {
    if (directory.disks.IsSpanned()) {
        return 1;  // its disks are inserted, and read, one after the other
    }
    const auto files =
        static_cast<int>(std::min<std::size_t>(directory.entries.size(), kMaxThreads));
    return std::clamp(options.threads > 0 ? options.threads : process.Processors(), 1,
                      std::max(files, 1));
}

}  // namespace

Extraction::Extraction(const platform::Machine& seam, const ExtractOptions& wanted, RunContext& run,
                       std::shared_ptr<const Directory> listed)
    : machine(seam),
      options(wanted),
      channel(run),
      held(std::move(listed)),
      directory(*held),
      threads(ThreadCount(directory, options, machine.process)),
      mask(machine.code_page.Fold(options.mask)),
      planner(
          directory, mask, machine.code_page,
          [this](ComponentMessage message) { channel.Report(std::move(message)); },
          options.verify_only),
      plan(planner.Plan()),
      folders(machine, options.destination,
              [this](const std::string& folder, const std::string& name) {
                  const std::string path = path::Join(folder, name);
                  channel.Report(Warning(path, "A folder is restored as " + path +
                                                   ": its name is another folder's short name."));
              }),
      queue(directory, plan, channel.Token()),
      memory(threads, directory.entries.size()) {}

void Extraction::Fail(std::uint32_t index, const Error& error) {
    ++failed;
    channel.Report(NotRestoredWarning(directory, index, error, options.verify_only));
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
           (number == error_number::kPathNotFound && !MayExist(machine.files, options.destination));
}

ExtractWorker::ExtractWorker(Extraction& run)
    : run_(run),
      range_(run.queue.Join()),
      source_(run.machine.files, run.options.archive),
      data_(source_, run.memory) {
    source_.AskOn(run.channel, run.directory, run.machine.clock);
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
            data_.Prefetch(run_.directory.entries.ExtentOf(first.index).offset, batch.bytes);
        }
        for (std::size_t i = batch.begin; i < batch.end; ++i) {
            const PlannedEntry& planned = run_.plan.files[i];
            StoredEntry entry = run_.directory.entries[planned.index];
            std::string path = run_.planner.PathOf(planned, entry.name);
            RestoreFile({planned.index, std::move(entry), std::move(path)});
        }
        LeaveFolder();
    }
}

// Before its data: a large file takes minutes.
void ExtractWorker::ReportFile(const PlannedFile& planned) {
    if (!run_.channel.WantsEachFile()) {
        return;
    }
    const std::string path = run_.options.verify_only
                                 ? planned.path
                                 : path::Join(run_.options.destination, planned.path);
    run_.channel.Report({MessageKind::kInformation, 0, static_cast<std::int32_t>(planned.index + 1),
                         path, "Extracting " + path,
                         static_cast<std::int32_t>(run_.directory.entries.size())});
}

void ExtractWorker::RestoreFile(const PlannedFile& planned) {
    ReportFile(planned);
    counted_ = 0;
    const bool restored = run_.Restore(planned.index, [&] {
        try {
            Restore(planned);
        } catch (const Error& error) {
            LeaveFolder();  // the answer to a question may replace it by another one
            if (run_.options.keep_broken && error.number() == error_number::kDeviceIo) {
                KeepBroken(planned);
            }
            throw;
        }
    });
    const std::uint64_t size = planned.entry.size;
    if (restored) {
        run_.channel.AddDone(size - std::min(size, counted_));
        run_.channel.AddFile();
    } else {
        run_.channel.LeaveOut(size, std::min(size, counted_));
    }
}

// Where the directory does not agree with the data the local header may.
void ExtractWorker::Restore(const PlannedFile& planned) {
    const StoredEntry& entry = planned.entry;
    const auto restore = [&](const StoredEntry& described) {
        run_.options.verify_only ? VerifyOnce(planned, described) : RestoreOnce(planned, described);
    };
    try {
        return restore(entry);
    } catch (const Error& error) {
        const bool may_differ =
            run_.options.use_local_headers && !run_.directory.searched &&
            (error.number() == error_number::kDeviceIo || !UnreadableBecause(entry).empty());
        const auto local = may_differ ? ByLocalHeader(entry) : std::nullopt;
        if (!local) {
            throw;
        }
        counted_ = std::max(counted_, entry.size);
        restore(*local);
    }
    run_.Warn(planned.index, entry.name +
                                 " differs in directory and local header; it is restored by the "
                                 "one that its data agrees with.");
}

// The entry with the numbers of its local header when these differ and its data agrees with them.
std::optional<StoredEntry> ExtractWorker::ByLocalHeader(const StoredEntry& entry) {
    if (entry.size == 0 && entry.packed_size == 0 && entry.crc == 0) {
        StoredEntry empty = entry;  // nothing of it is anywhere else
        empty.data_at = entry.offset + local_header::kFixedSize;
        return empty;
    }
    auto record = ReadLocalRecord(entry);
    if (!probe_) {
        probe_ = std::make_unique<EntryProbe>(source_, run_.memory,
                                              [this] { run_.channel.CheckStop(); });
    }
    if (!record || !probe_->Check(*record, false).IsIntact()) {
        return std::nullopt;
    }
    const StoredEntry& local = record->entry;
    if (local.crc == entry.crc && local.size == entry.size &&
        local.packed_size == entry.packed_size && UnreadableBecause(entry).empty()) {
        return std::nullopt;  // they agree: something else has failed
    }
    StoredEntry described = entry;
    described.method = local.method;
    described.flags = local.flags;
    described.crc = local.crc;
    described.size = local.size;
    described.packed_size = local.packed_size;
    return described;
}

// Nothing when there is no local header with the entry's name.
std::optional<LocalRecord> ExtractWorker::ReadLocalRecord(const StoredEntry& entry) {
    const auto header = ParseLocalHeader(source_.Bytes(entry.offset, local_header::kFixedSize));
    if (!header) {
        return std::nullopt;
    }
    auto record = ParseLocalRecord(source_.Bytes(entry.offset, header->Length()), entry.offset,
                                   run_.machine.code_page, run_.machine.clock);
    return record && record->entry.RawName() == entry.RawName() ? std::move(record) : std::nullopt;
}

void ExtractWorker::Count(std::uint64_t written, std::uint64_t size) {
    run_.channel.CheckStop();
    if (written > counted_) {
        run_.channel.AddDone(written - counted_);
        counted_ = written;
    }
    const double share = static_cast<double>(written) / static_cast<double>(size);
    run_.channel.SetFilePercent(static_cast<int>(share * 100));
}

void ExtractWorker::VerifyOnce(const PlannedFile& planned, const StoredEntry& entry) {
    std::uint64_t checked = 0;
    const auto count = [&](const std::uint8_t*, std::size_t bytes) {
        checked += bytes;
        Count(checked, entry.size);
    };
    ReportRestored(planned, planned.path, data_.Read(entry, std::ref(count)));
}

// Writes what can be read of a damaged file, unless that is nothing.
void ExtractWorker::KeepBroken(const PlannedFile& planned) {
    std::optional<TargetFile> target;
    EntryData data(source_, run_.memory);
    data.PassDamaged();
    const auto put = [&](const std::uint8_t* bytes, std::size_t count) {
        run_.channel.CheckStop();
        Open(target, planned.path + kBrokenSuffix, planned.entry.size);
        target->Write(bytes, count);
    };
    const StoredEntry& entry = planned.entry;
    try {
        data.Read(entry, std::ref(put));
    } catch (const Error& error) {
        if (error.number() != error_number::kDeviceIo) {
            throw;
        }
    }
    if (target) {
        target->Commit(entry.times, entry.attributes);
        run_.Warn(planned.index,
                  "What can be read of " + entry.name + " is " + target->Path() + ".");
    }
}

void ExtractWorker::RestoreOnce(const PlannedFile& planned, const StoredEntry& entry) {
    std::optional<TargetFile> target;
    std::uint64_t written = 0;
    const auto put = [&](const std::uint8_t* bytes, std::size_t count) {
        run_.channel.CheckStop();
        Open(target, planned.path, entry.size);
        target->Write(bytes, count);
        written += count;
        Count(written, entry.size);
    };
    // std::ref: a copy of `put` would be allocated for each file.
    const std::string disagreement = data_.Read(entry, std::ref(put));
    Open(target, planned.path, entry.size);
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

void ExtractWorker::Open(std::optional<TargetFile>& target, std::string_view path,
                         std::uint64_t size) {
    if (!target) {
        const path::Halves halves = path::Split(path);
        EnterFolder(halves.folder);
        target.emplace(run_.machine, *folder_, folder_path_, std::string(halves.name),
                       run_.options.archive, size);
    }
}

void ExtractWorker::ReportRestored(const PlannedFile& planned, const std::string& path,
                                   const std::string& disagreement) {
    const std::uint32_t index = planned.index;
    const std::string& name = planned.entry.name;
    if (!disagreement.empty()) {
        run_.Warn(index, name + " has another " + disagreement +
                             " in its local header; the directory's holds.");
    }
    if (path::Split(path).name != path::Split(planned.path).name) {
        run_.Warn(index,
                  name + " is restored as " + path + ": its name is another file's short name.");
    }
}

}  // namespace vantrel::zip
