#include "zip/reader/searched_archive.h"

#include <utility>

#include "zip/base/retry.h"
#include "zip/disks/sector_reader.h"

namespace vantrel::zip {

namespace {

// Searches one file, or the disks of a set from the first one on.
void Search(const platform::Machine& machine, const std::string& path, const AskForDisk& ask,
            const SearchProgress& progress, Directory& directory) {
    if (directory.IsComplete()) {
        directory.trouble =
            "The archive's directory is damaged: its entries contradict each other.";
    }
    const auto search = [&](ByteSource& source) {
        SectorReader sectors(source, machine.clock);
        SearchArchive(sectors, machine.code_page, machine.clock, progress, directory);
    };
    if (directory.disks.disks == 1) {
        ArchiveReader file(machine.files, path);
        directory.archive_size = file.Size();
        return search(file);
    }
    DiskSequence disks(machine.files, path, ask, directory.disks);
    search(disks);
    directory.disks = disks.Identity();
    directory.archive_size = directory.start - OffsetOnDisk(DiskOfOffset(directory.start), 0);
}

}  // namespace

Directory ReadDamagedDirectory(const platform::Machine& machine, const std::string& path,
                               const AskForDisk& ask, const SearchProgress& progress) {
    Directory directory;
    {
        ArchiveReader source(machine.files, path);
        source.AskForDisks(machine.drives, ask);
        SectorReader sectors(source, machine.clock);
        directory = ReadDirectory(sectors, &source, machine.code_page, machine.clock);
        const std::string unreadable =
            sectors.WhyUnreadable(directory.start, directory.archive_size);
        if (directory.IsComplete() && !unreadable.empty()) {
            directory.trouble = "The archive's directory is damaged: " + unreadable + ".";
        }
    }
    if (NeedsSearch(directory)) {
        Search(machine, path, ask, progress, directory);
    }
    return directory;
}

SearchResult FindEntries(const platform::Machine& machine, const std::string& path,
                         const Directory& damaged, RunEvents& events) {
    RunContext channel;
    SearchResult result;
    auto found = std::make_shared<Directory>();
    result.outcome = channel.Run(machine.clock, events, [&] {
        RetryOrAsk(channel, DescribeFailure("The archive cannot be read", path), [&] {
            *found = damaged;
            if (damaged.disks.disks == 1) {
                channel.SetTotal(0, ArchiveReader(machine.files, path).Size());
            }
            std::uint64_t reported = 0;
            const auto progress = [&](std::uint64_t done) {
                channel.CheckStop();
                if (done > reported) {
                    channel.AddDone(done - reported);
                    reported = done;
                }
            };
            Search(machine, path, AskWith(channel), progress, *found);
        });
        channel.RaiseLastEvent();
    });
    if (result.outcome == RunOutcome::kComplete) {
        result.directory = std::move(found);
    }
    return result;
}

}  // namespace vantrel::zip
