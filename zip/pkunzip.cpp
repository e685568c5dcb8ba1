#include "zip/pkunzip.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "zip/base/paths.h"
#include "zip/raised_events.h"
#include "zip/reader/archive_extractor.h"
#include "zip/reader/archive_source.h"
#include "zip/reader/target_folders.h"
#include "zip/records/directory_reader.h"

namespace vantrel::zip {

namespace {

// Booleans that callers set; the component always restores every entry with its folders, and
// overwrites without asking.
constexpr int kFirstFlag = 5;
constexpr int kOtherFlags[] = {6, 7, 10, 11, 14, 35};

bool IsFlag(int id) {
    return id == kFirstFlag ||
           std::find(std::begin(kOtherFlags), std::end(kOtherFlags), id) != std::end(kOtherFlags);
}

bool IsAnswer(int id) { return id == unzip_id::kEntryCount || id == unzip_id::kEntryName; }

// The value that a property has before it is set; its type is the property's type.
Value InitialValue(int id) {
    switch (id) {
        case unzip_id::kArchive:
        case unzip_id::kFileSpec:
        case unzip_id::kDestination:
        case unzip_id::kEntryName:
            return std::string();
        case unzip_id::kEntryIndex:
            return std::int32_t{0};
        case unzip_id::kEntryCount:
            return std::int32_t{1};
        case unzip_id::kAction:
            return std::int16_t{0};
        default:
            break;
    }
    if (!IsFlag(id)) {
        RaiseError(error_number::kInvalidPropertyValue);
    }
    return false;
}

bool IsAction(std::int16_t action) {
    return action == unzip_id::kActionCount || action == unzip_id::kActionEntry ||
           action == unzip_id::kActionExtract;
}

}  // namespace

struct PKUNZIP::State {
    explicit State(platform::Machine& its_machine) : machine(its_machine) {}

    std::string Text(int id) const {
        const auto found = values.find(id);
        return found == values.end() ? "" : std::get<std::string>(found->second);
    }
    std::string Path(const std::string& path) const {
        return WithDrive(path, machine.process.ApplicationFolder());
    }
    void ReadNames(const PKUNZIP& component);
    void ReadEntry();
    void Extract(PKUNZIP& component);

    platform::Machine& machine;
    std::map<int, Value> values;
    std::vector<EntryName> names;  // of the entries that the last count has found
    std::int32_t failed = 0;
};

// Trouble is only information here: an extraction says it again, as an error.
void PKUNZIP::State::ReadNames(const PKUNZIP& component) {
    names.clear();
    std::string trouble;
    const std::string archive = Path(Text(unzip_id::kArchive));
    try {
        ArchiveSource source(machine.files, archive);
        source.AskForDisks(machine.drives, [&component](const StepFailure& failure) {
            if (component.questions == nullptr || !component.questions->AskRetry(failure.text)) {
                throw Error(failure.number, "", ErrorText(failure.number));
            }
        });
        Directory directory = ReadDirectory(source, machine.code_page, machine.clock);
        trouble = directory.trouble;
        names.reserve(directory.entries.size());
        for (StoredEntry& entry : directory.entries) {
            names.push_back({std::move(entry.name), entry.is_folder});
        }
    } catch (const Error& error) {
        trouble = Sentence("The archive cannot be read", archive, error);
    }
    values[unzip_id::kEntryCount] = static_cast<std::int32_t>(names.size() + 1);
    if (!trouble.empty() && component.Message) {
        component.Message({MessageKind::kInformation, 0, 0, archive, trouble,
                           static_cast<std::int32_t>(names.size())});
    }
}

// The archive itself is entry 0, and has no name in it.
void PKUNZIP::State::ReadEntry() {
    const auto index = std::get<std::int32_t>(
        values.try_emplace(unzip_id::kEntryIndex, std::int32_t{0}).first->second);
    const bool exists = index > 0 && static_cast<std::size_t>(index) <= names.size();
    values[unzip_id::kEntryName] =
        exists ? names[static_cast<std::size_t>(index) - 1].name : std::string();
}

void PKUNZIP::State::Extract(PKUNZIP& component) {
    ExtractOptions options;
    options.archive = Path(Text(unzip_id::kArchive));
    options.destination = Path(Text(unzip_id::kDestination));
    if (const std::string spec = Text(unzip_id::kFileSpec); !spec.empty()) {
        options.mask = spec;
    }
    RaisedEvents<PKUNZIP> events(component);
    failed = 0;
    failed = ExtractArchive(machine, options, events).failed;
}

PKUNZIP::PKUNZIP(platform::Machine& machine) : state_(std::make_unique<State>(machine)) {}
PKUNZIP::~PKUNZIP() = default;

Value PKUNZIP::Get(int id) const {
    const auto found = state_->values.find(id);
    return found != state_->values.end() ? found->second : InitialValue(id);
}

void PKUNZIP::Set(int id, const Value& value) {
    const bool fits = value.index() == InitialValue(id).index() && !IsAnswer(id);
    if (!fits || (id == unzip_id::kAction && !IsAction(std::get<std::int16_t>(value)))) {
        RaiseError(error_number::kInvalidPropertyValue);
    }
    state_->values[id] = value;
    if (id != unzip_id::kAction) {
        return;
    }
    switch (std::get<std::int16_t>(value)) {
        case unzip_id::kActionCount:
            return state_->ReadNames(*this);
        case unzip_id::kActionEntry:
            return state_->ReadEntry();
        default:
            return state_->Extract(*this);
    }
}

std::vector<std::string> PKUNZIP::TargetFolders(const std::string& destination) const {
    return zip::TargetFolders(state_->machine, state_->names, state_->Path(destination));
}

std::int32_t PKUNZIP::FailedEntries() const { return state_->failed; }

}  // namespace vantrel::zip
