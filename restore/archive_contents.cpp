#include "restore/archive_contents.h"

#include "backupset/clsFiles.h"
#include "common/error.h"
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

// Listens to the component for as long as it lists; also when listing raises, nothing of this is
// called later.
class Listening {
  public:
    Listening(zip::PKUNZIP& component, zip::Questions& questions) : component_(component) {
        component_.questions = &questions;
        // It tells of what is wrong with the list, and of nothing else.
        component_.Message = [this](const zip::ComponentMessage&) { complete = false; };
    }
    ~Listening() {
        component_.Message = nullptr;
        component_.questions = nullptr;
    }
    Listening(const Listening&) = delete;
    Listening& operator=(const Listening&) = delete;

    bool complete = true;

  private:
    zip::PKUNZIP& component_;
};

// Has the component read the archive's directory; whether all of it could be read.
bool CountEntries(forms::Program& program, zip::PKUNZIP& component) {
    DiskQuestions questions(program);
    Listening listening(component, questions);
    component.Set(zip::unzip_id::kAction, zip::unzip_id::kActionCount);
    return listening.complete;
}

// The component counts the archive itself as entry 0: index 0 is never listed, and the number shown
// is one less than the count.
bool FillTree(forms::Program& program, const RestoreControls& controls, const std::string& path) {
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
    const bool complete = CountEntries(program, component);
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

}  // namespace

ListedArchive LookAtArchive(forms::Program& program, const std::string& path) {
    try {
        const auto found = program.machine.files.Find(path);
        if (!found) return {.path = path};
        return {.path = path, .size = found->size, .modified = found->times.modified};
    } catch (const Error&) {
        return {.path = path};
    }
}

bool ShowZipContents(forms::Program& program, const RestoreControls& controls,
                     const std::string& path) {
    return Reported("clsFiles:ShowZipContents Method",
                    [&] { return FillTree(program, controls, path); });
}

}  // namespace vantrel
