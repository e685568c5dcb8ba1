#include "zip/pkzip.h"

#include "common/error.h"
#include "zip/base/paths.h"
#include "zip/raised_events.h"
#include "zip/writer/archive_writer.h"

namespace vantrel::zip {

namespace {

constexpr std::int16_t kHighestLevel = 9;

// The value that a property has before it is set; its type is the property's type.
Value InitialValue(int id) {
    switch (id) {
        case zip_id::kArchive:
        case zip_id::kFileSpec:
            return std::string();
        case zip_id::kOption3:
        case zip_id::kOption4:
        case zip_id::kOption5:
        case zip_id::kOption32:
        case zip_id::kSubFolders:
        case zip_id::kVolumeOption:
            return false;
        case zip_id::kLevel:
        case zip_id::kAction:
            return std::int16_t{0};
        case zip_id::kMultiVolume:
            return std::int32_t{0};
        default:
            RaiseError(error_number::kInvalidPropertyValue);
    }
}

bool IsAcceptable(int id, const Value& value) {
    if (value.index() != InitialValue(id).index()) {
        return false;
    }
    if (id == zip_id::kLevel) {
        const auto level = std::get<std::int16_t>(value);
        return level >= 0 && level <= kHighestLevel;
    }
    return id != zip_id::kAction || std::get<std::int16_t>(value) == zip_id::kActionAdd;
}

}  // namespace

Value PKZIP::Get(int id) const {
    const auto found = values_.find(id);
    return found != values_.end() ? found->second : InitialValue(id);
}

void PKZIP::Set(int id, const Value& value) {
    if (!IsAcceptable(id, value)) {
        RaiseError(error_number::kInvalidPropertyValue);
    }
    values_[id] = value;
    if (id == zip_id::kAction) {
        AddFiles();
    }
}

void PKZIP::AddFiles() {
    WriterOptions options;
    const std::string application_folder = machine_.process.ApplicationFolder();
    options.archive = WithDrive(Text(zip_id::kArchive), application_folder);
    options.source = ParseFileSpec(Text(zip_id::kFileSpec));
    options.source.folder = WithDrive(options.source.folder, application_folder);
    options.source.sub_folders = std::get<bool>(Get(zip_id::kSubFolders));
    options.level = std::get<std::int16_t>(Get(zip_id::kLevel));
    options.spanning =
        (std::get<std::int32_t>(Get(zip_id::kMultiVolume)) & zip_id::kSpanVolumes) != 0;
    RaisedEvents<PKZIP> events(*this);
    const WriterResult result = WriteArchive(machine_, options, events);
    skipped_ = result.skipped;
    if (result.outcome == RunOutcome::kFailed && FatalStop) {
        FatalStop();
    }
}

}  // namespace vantrel::zip
