// The zip component that the backup window drives. Its action writes a new archive (writer/) and
// returns when the archive is in place, or when nothing of it is left.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "zip/component.h"

namespace vantrel::zip {

// Dispatch identifiers of the zip component.
namespace zip_id {
constexpr int kArchive = 1;   // text: full path of the archive to create
constexpr int kFileSpec = 2;  // text: folder and mask, in double quotes
constexpr int kOption3 = 3;   // Booleans without effect: kept, and read back
constexpr int kOption4 = 4;
constexpr int kOption5 = 5;
constexpr int kOption32 = 32;
constexpr int kSubFolders = 7;    // Boolean
constexpr int kLevel = 8;         // 16-bit integer, 0 to 9
constexpr int kVolumeOption = 9;  // Boolean: off only for a spanned archive onto a full volume
constexpr int kMultiVolume = 37;  // 32-bit integer: 32768 or 0
constexpr int kAction = 40;       // 16-bit integer: 4 adds the files to a new archive
constexpr std::int32_t kSpanVolumes = 32768;
constexpr std::int16_t kActionAdd = 4;
}  // namespace zip_id

class PKZIP : public Component {
  public:
    explicit PKZIP(platform::Machine& machine);

    // A step without which there is no correct archive has failed, in an unattended run: what was
    // written has been removed, the error message has been raised, and the earlier archive stands.
    std::function<void()> FatalStop;

    // Full path of the last archive of the same files, whose compressed data is reused where it is
    // proved equal. "": the archive that the action replaces.
    std::string earlier_archive;

    // Matching files that the last action left out.
    virtual std::int32_t SkippedFiles() const { return skipped_; }

  protected:
    bool IsAcceptable(int id, const Value& value) const override;
    void RunAction(std::int16_t action) override;

  private:
    std::int32_t skipped_ = 0;
};

}  // namespace vantrel::zip
