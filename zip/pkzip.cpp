#include "zip/pkzip.h"

#include "zip/writer/archive_writer.h"

namespace vantrel::zip {

namespace {

constexpr std::int16_t kMaxLevel = 9;

std::map<int, Value> InitialValues() {
    using namespace zip_id;
    return {{kArchive, std::string()},
            {kFileSpec, std::string()},
            {kOption3, false},
            {kOption4, false},
            {kOption5, false},
            {kOption32, false},
            {kSubFolders, false},
            {kVolumeOption, false},
            {kLevel, std::int16_t{0}},
            {kAction, std::int16_t{0}},
            {kMultiVolume, std::int32_t{0}}};
}

}  // namespace

PKZIP::PKZIP(platform::Machine& machine) : Component(machine, zip_id::kAction, InitialValues()) {}

bool PKZIP::IsAcceptable(int id, const Value& value) const {
    if (id == zip_id::kLevel) {
        const auto level = std::get<std::int16_t>(value);
        return level >= 0 && level <= kMaxLevel;
    }
    return id != zip_id::kAction || std::get<std::int16_t>(value) == zip_id::kActionAdd;
}

void PKZIP::RunAction(std::int16_t) {
    WriterOptions options;
    options.archive = FullPath(Property<std::string>(zip_id::kArchive));
    options.earlier = earlier_archive.empty() ? options.archive : FullPath(earlier_archive);
    options.source = ParseFileSpec(Property<std::string>(zip_id::kFileSpec));
    options.source.folder = FullPath(options.source.folder);
    options.source.sub_folders = Property<bool>(zip_id::kSubFolders);
    options.level = Property<std::int16_t>(zip_id::kLevel);
    options.spanning = (Property<std::int32_t>(zip_id::kMultiVolume) & zip_id::kSpanVolumes) != 0;
    const WriterResult result = WriteArchive(machine(), options, *this);
    skipped_ = result.skipped;
    if (result.outcome == RunOutcome::kFailed && FatalStop) {
        FatalStop();
    }
}

}  // namespace vantrel::zip
