#include "zip/pkunzip.h"

#include <utility>

#include "zip/disks/archive_reader.h"
#include "zip/reader/archive_extractor.h"

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
               action == unzip_id::kActionExtract;
    }
    return id != unzip_id::kEntryCount && id != unzip_id::kEntryName;
}

void PKUNZIP::RunAction(std::int16_t action) {
    switch (action) {
        case unzip_id::kActionCount:
            return ReadNames();
        case unzip_id::kActionEntry:
            return ReadEntry();
        default:
            return Extract();
    }
}

// Damage is only information here: an extraction reports it again, as an error.
void PKUNZIP::ReadNames() {
    names_.clear();
    counted_bytes_ = 0;
    std::string trouble;
    const std::string archive = FullPath(Property<std::string>(unzip_id::kArchive));
    try {
        ArchiveReader source(machine().files, archive);
        source.AskForDisks(machine().drives, [this](const ComponentMessage& failure) {
            if (questions == nullptr || !questions->AskRetry(failure.text)) {
                throw Error(failure.code, "", ErrorText(failure.code));
            }
        });
        Directory directory = ReadDirectory(source, &source, machine().code_page, machine().clock);
        trouble = directory.trouble;
        names_.reserve(directory.entries.size());
        for (StoredEntry& entry : directory.entries) {
            counted_bytes_ += entry.size;
            names_.push_back({std::move(entry.name), entry.is_folder});
        }
    } catch (const Error& error) {
        trouble = FailureText("The archive cannot be read", archive, error);
    }
    Keep(unzip_id::kEntryCount, static_cast<std::int32_t>(names_.size() + 1));
    if (!trouble.empty()) {
        OnMessage({MessageKind::kInformation, 0, 0, archive, trouble,
                   static_cast<std::int32_t>(names_.size())});
    }
}

// The archive itself is entry 0, and has no name in it.
void PKUNZIP::ReadEntry() {
    const auto index = Property<std::int32_t>(unzip_id::kEntryIndex);
    const bool exists = index > 0 && static_cast<std::size_t>(index) <= names_.size();
    Keep(unzip_id::kEntryName,
         exists ? names_[static_cast<std::size_t>(index) - 1].name : std::string());
}

void PKUNZIP::Extract() {
    ExtractOptions options;
    options.archive = FullPath(Property<std::string>(unzip_id::kArchive));
    options.destination = FullPath(Property<std::string>(unzip_id::kDestination));
    if (const auto& spec = Property<std::string>(unzip_id::kFileSpec); !spec.empty()) {
        options.mask = spec;
    }
    failed_ = 0;
    failed_ = ExtractArchive(machine(), options, *this).failed;
}

std::vector<std::string> PKUNZIP::TargetFolders(const std::string& destination) const {
    return zip::TargetFolders(machine(), names_, FullPath(destination));
}

}  // namespace vantrel::zip
