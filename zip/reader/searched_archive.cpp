#include "zip/reader/searched_archive.h"

#include <utility>

#include "zip/base/retry.h"
#include "zip/disks/sector_reader.h"

namespace vantrel::zip {

Directory ReadDamagedDirectory(const platform::Machine& machine, ArchiveReader& source,
                               const SearchProgress& progress) {
    SectorReader sectors(source, machine.clock);
    Directory directory = ReadDirectory(sectors, &source, machine.code_page, machine.clock);
    const std::string unreadable = sectors.WhyUnreadable(directory.start, directory.archive_size);
    if (directory.IsComplete() && !unreadable.empty()) {
        directory.trouble = "The archive's directory is damaged: " + unreadable + ".";
    }
    if (!directory.disks.IsSpanned() && NeedsSearch(directory)) {
        if (directory.IsComplete()) {
            directory.trouble =
                "The archive's directory is damaged: its entries contradict each other.";
        }
        SearchArchive(sectors, machine.code_page, machine.clock, progress, directory);
    }
    return directory;
}

SearchResult FindEntries(const platform::Machine& machine, const std::string& path,
                         RunEvents& events) {
    RunContext channel;
    SearchResult result;
    std::shared_ptr<Directory> found;
    result.outcome = channel.Run(machine.clock, events, [&] {
        RetryOrAsk(channel, DescribeFailure("The archive cannot be read", path), [&] {
            ArchiveReader source(machine.files, path);
            source.AskForDisks(machine.drives, [&channel](const ComponentMessage& failure) {
                channel.AskRetryOrStop(failure);
            });
            channel.SetTotal(0, source.Size());
            std::uint64_t reported = 0;
            const auto progress = [&](std::uint64_t done) {
                channel.CheckStop();
                if (done > reported) {
                    channel.AddDone(done - reported);
                    reported = done;
                }
            };
            found = std::make_shared<Directory>(ReadDamagedDirectory(machine, source, progress));
        });
        channel.RaiseLastEvent();
    });
    if (result.outcome == RunOutcome::kComplete) {
        result.directory = std::move(found);
    }
    return result;
}

}  // namespace vantrel::zip
