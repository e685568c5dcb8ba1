#include "zip/pkunzip.h"

#include <algorithm>
#include <utility>

#include "zip/disks/archive_reader.h"
#include "zip/reader/archive_extractor.h"
#include "zip/reader/searched_archive.h"
#include "zip/reader/target_folders.h"

namespace vantrel::zip {

namespace {

std::map<int, Value> InitialValues() {
    using namespace unzip_id;
    std::map<int, Value> values = {{kArchive, std::string()},      {kFileSpec, std::string()},
                                   {kDestination, std::string()},  {kEntryName, std::string()},
                                   {kEntryIndex, std::int32_t{0}}, {kEntryCount, std::int32_t{1}},
                                   {kAction, std::int16_t{0}}};
    // Booleans that callers set; the component always restores every entry with its folders, and
    // overwrites without asking.
    for (const int id : {5, 6, 7, 10, 11, 14, 35}) {
        values[id] = false;
    }
    return values;
}

}  // namespace

PKUNZIP::PKUNZIP(platform::Machine& machine)
    : Component(machine, unzip_id::kAction, InitialValues()) {}

bool PKUNZIP::IsAcceptable(int id, const Value& value) const {
    if (id == unzip_id::kAction) {
        const auto action = std::get<std::int16_t>(value);
        return action == unzip_id::kActionCount || action == unzip_id::kActionEntry ||
               action == unzip_id::kActionSearch || action == unzip_id::kActionExtract;
    }
    return id != unzip_id::kEntryCount && id != unzip_id::kEntryName;
}

void PKUNZIP::RunAction(std::int16_t action) {
    switch (action) {
        case unzip_id::kActionCount:
            return CountEntries();
        case unzip_id::kActionEntry:
            return ReadEntry();
        case unzip_id::kActionSearch:
            return Search();
        default:
            return Extract();
    }
}

// Damage is only information here: an extraction reports it again, as an error.
void PKUNZIP::CountEntries() {
    const std::string archive = FullPath(Property<std::string>(unzip_id::kArchive));
    counted_ = {};
    Keep(unzip_id::kEntryCount, std::int32_t{1});
    Counted counted{.directory = SearchResultFor(archive)};
    RunContext channel;
    const RunOutcome outcome = channel.Run(machine().clock, *this, [&] {
        try {
            ReadEntries(archive, channel, counted);
        } catch (const Error& error) {
            auto unread = std::make_shared<Directory>();
            unread->trouble = "The archive's directory is damaged: it cannot be read.";
            counted = {.directory = std::move(unread),
                       .can_be_searched = error.number() == error_number::kDeviceIo,
                       .trouble = FailureText("The archive cannot be read", archive, error)};
        }
    });
    if (outcome != RunOutcome::kComplete) {
        return;
    }
    counted_ = std::move(counted);
    const auto count = static_cast<std::int32_t>(counted_.directory->entries.size());
    Keep(unzip_id::kEntryCount, count + 1);
    if (!counted_.trouble.empty()) {
        OnMessage({MessageKind::kInformation, 0, 0, archive, counted_.trouble, count});
    }
}

// `counted` has the result of a search, or none. Runs on a background thread.
void PKUNZIP::ReadEntries(const std::string& archive, RunContext& channel, Counted& counted) const {
    if (!counted.directory) {
        ArchiveReader source(machine().files, archive);
        source.AskForDisks(machine().drives, AskWith(channel));
        Directory read = ReadDirectory(source, &source, machine().code_page, machine().clock);
        counted.can_be_searched = NeedsSearch(read);
        counted.trouble = read.trouble;
        counted.directory = std::make_shared<Directory>(std::move(read));
    }
    for (const StoredEntry& entry : counted.directory->entries) {
        counted.bytes += entry.size;
    }
}

bool PKUNZIP::IsSearched(const std::string& archive) const {
    const auto found = machine().files.Find(archive);
    const auto& disks = searched_.directory->disks.listed;
    if (!found || disks.empty()) {
        return found && found->size == searched_.size &&
               found->times.modified == searched_.modified;
    }
    const auto file = machine().files.Open(archive, platform::OpenMode::kRead);
    const DiskIdentity::Listed here{found->size, DiskIdentity::HeadCrc(*file)};
    return std::any_of(disks.begin(), disks.end(),
                       [&](const auto& disk) { return disk.second == here; });
}

std::shared_ptr<const Directory> PKUNZIP::SearchResultFor(const std::string& archive) const {
    try {
        const bool same = searched_.directory && searched_.path == archive && IsSearched(archive);
        return same ? searched_.directory : nullptr;
    } catch (const Error&) {
        return nullptr;
    }
}

void PKUNZIP::Search() {
    const std::string archive = FullPath(Property<std::string>(unzip_id::kArchive));
    Directory damaged;
    damaged.disks = counted_.directory->disks;
    damaged.trouble = counted_.directory->trouble;
    // Looked at before the search: an archive that changes meanwhile is not the searched one.
    const bool is_file = damaged.disks.disks == 1;
    const auto found = is_file ? machine().files.Find(archive) : platform::FileInfo{};
    SearchResult result = FindEntries(machine(), archive, damaged, *this);
    if (found && result.directory) {
        searched_ = {archive, found->size, found->times.modified, std::move(result.directory)};
    }
}

void PKUNZIP::RestoreListed(const PKUNZIP& listed) {
    listed_ = listed.counted_.directory;
    searched_ = listed.searched_;
}

// The archive itself is entry 0, and has no name in it.
void PKUNZIP::ReadEntry() {
    const auto index = Property<std::int32_t>(unzip_id::kEntryIndex);
    const EntryList& entries = counted_.directory->entries;
    const bool exists = index > 0 && static_cast<std::size_t>(index) <= entries.size();
    Keep(unzip_id::kEntryName,
         exists ? entries[static_cast<std::size_t>(index) - 1].name : std::string());
}

void PKUNZIP::Extract() {
    ExtractOptions options;
    options.archive = FullPath(Property<std::string>(unzip_id::kArchive));
    options.destination = FullPath(Property<std::string>(unzip_id::kDestination));
    if (const auto& spec = Property<std::string>(unzip_id::kFileSpec); !spec.empty()) {
        options.mask = spec;
    }
    options.use_local_headers = true;
    options.searched = SearchResultFor(options.archive);
    options.listed = listed_ ? &listed_->entries : nullptr;
    failed_ = 0;
    failed_ = ExtractArchive(machine(), options, *this).failed;
}

std::vector<std::string> PKUNZIP::TargetFolders(const std::string& destination) const {
    return zip::TargetFolders(machine(), counted_.directory->entries, FullPath(destination));
}

}  // namespace vantrel::zip
