#include "restore/archive_contents.h"

#include "backupset/clsFiles.h"
#include "progress/retry_box.h"

namespace vantrel {

namespace {

// Asks for the disks that the list of an archive on several stands on.
class DiskQuestions : public zip::Questions {
  public:
    explicit DiskQuestions(forms::Program& program) : desktop_(program.desktop) {}

    bool AskRetry(const std::string& text) override {
        desktop_.SetPointer(forms::Pointer::kDefault);
        const bool again = AskedToRetry(desktop_, text, "Restore");
        desktop_.SetPointer(forms::Pointer::kHourglass);
        return again;
    }

  private:
    forms::Desktop& desktop_;
};

}  // namespace

ListedArchive LookAtArchive(forms::Program& program, const std::string& path) {
    const auto found = program.machine.files.Find(path);
    if (!found) return {.path = path};
    return {.path = path, .size = found->size, .modified = found->times.modified};
}

// The component counts the archive itself as entry 0: index 0 is never listed, and the number shown
// is one less than the count.
bool ShowZipContents(forms::Program& program, const RestoreControls& controls,
                     const std::string& path) {
    namespace id = zip::unzip_id;
    auto& desktop = program.desktop;
    desktop.DoEvents();
    desktop.SetPointer(forms::Pointer::kHourglass);
    desktop.DoEvents();
    controls.TV_Restore.SetVisible(false);
    controls.TV_Restore.Clear();
    controls.Fld_Total.SetCaption("0");
    if (!clsFiles(program).Exist(path, true)) {
        desktop.SetPointer(forms::Pointer::kDefault);
        return false;
    }
    zip::PKUNZIP& component = controls.PKUNZIP;
    component.Set(id::kArchive, path);
    DiskQuestions questions(program);
    component.questions = &questions;
    bool complete =
        true;  // the component tells of what is wrong with the list, and of nothing else
    component.Message = [&complete](const zip::ComponentMessage&) { complete = false; };
    component.Set(id::kAction, id::kActionCount);
    component.Message = nullptr;
    component.questions = nullptr;
    const std::int32_t count = std::get<std::int32_t>(component.Get(id::kEntryCount));
    controls.Fld_Total.SetCaption(std::to_string(count - 1));
    component.Set(6, true);
    for (std::int32_t i = 1; i < count; ++i) {
        controls.SSP_TotalFiles.SetFloodPercent(100.0 / count * i);
        component.Set(id::kEntryIndex, i);
        component.Set(id::kAction, id::kActionEntry);
        controls.TV_Restore.Add({.text = std::get<std::string>(component.Get(id::kEntryName))});
    }
    controls.SSP_TotalFiles.SetFloodPercent(0);
    controls.TV_Restore.SetVisible(true);
    desktop.SetPointer(forms::Pointer::kDefault);
    return complete;
}

}  // namespace vantrel
