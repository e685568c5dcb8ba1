#include "restore/archive_contents.h"

#include "backupset/clsFiles.h"
#include "common/error.h"
#include "progress/progress_window.h"
#include "zip/base/run_context.h"

namespace vantrel {

namespace {

// Asks for the disks that hold the directory of an archive on several disks; not again after a
// cancel.
class DiskQuestions : public zip::Questions {
  public:
    explicit DiskQuestions(forms::Program& program) : desktop_(program.desktop) {}

    bool AskRetry(const std::string& text) override {
        if (cancelled) {
            return false;
        }
        desktop_.SetPointer(forms::Pointer::kDefault);
        cancelled = !ConfirmRetry(desktop_, text, "Restore");
        desktop_.SetPointer(forms::Pointer::kHourglass);
        return !cancelled;
    }

    bool cancelled = false;

  private:
    forms::Desktop& desktop_;
};

// Receives the component's events during a listing. The destructor disconnects it, also after an
// error.
class ListingEvents {
  public:
    ListingEvents(zip::PKUNZIP& component, zip::Questions& questions) : component_(component) {
        component_.questions = &questions;
        // The only message of a count is about a directory that is not complete.
        component_.Message = [this](const zip::ComponentMessage& message) { Keep(message); };
    }
    ~ListingEvents() {
        component_.Message = nullptr;
        component_.questions = nullptr;
    }
    ListingEvents(const ListingEvents&) = delete;
    ListingEvents& operator=(const ListingEvents&) = delete;

    std::string trouble;

  private:
    void Keep(const zip::ComponentMessage& message) { trouble = message.text; }

    zip::PKUNZIP& component_;
};

// As an extraction words its question. The component words errors of a count so already, but gives
// the bare reason for a damaged directory.
std::string Unreadable(const std::string& path, const std::string& reason) {
    const std::string what = "The archive cannot be read";
    if (reason.starts_with(what)) {
        return reason;
    }
    return zip::FailureText(what, path, Error(error_number::kDeviceIo, "", reason));
}

// For a path that fails the existence test.
std::string WhyNotOpened(forms::Program& program, const std::string& path) {
    try {
        program.machine.files.Open(path, platform::OpenMode::kRead);
        return Unreadable(path, ErrorText(error_number::kFileNotFound));
    } catch (const Error& error) {
        return Unreadable(path, error.description());
    }
}

// Has the component read the archive's directory.
ListingOutcome CountEntries(forms::Program& program, zip::PKUNZIP& component,
                            const std::string& path) {
    DiskQuestions questions(program);
    ListingEvents listening(component, questions);
    component.Set(zip::unzip_id::kAction, zip::unzip_id::kActionCount);
    if (listening.trouble.empty()) {
        return {.complete = true};
    }
    return {.cancelled = questions.cancelled, .trouble = Unreadable(path, listening.trouble)};
}

// The component counts the archive itself as entry 0: index 0 is never listed, and the number shown
// is one less than the count.
ListingOutcome FillTree(forms::Program& program, const RestoreControls& controls,
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
        return {.trouble = WhyNotOpened(program, path)};
    }
    zip::PKUNZIP& component = controls.PKUNZIP;
    component.Set(id::kArchive, path);
    ListingOutcome listing = CountEntries(program, component, path);
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
    return listing;
}

}  // namespace

ListedArchive LookAtArchive(forms::Program& program, const std::string& path) {
    try {
        const auto found = program.machine.files.Find(path);
        if (!found) {
            return {.path = path};
        }
        return {.path = path, .size = found->size, .modified = found->times.modified};
    } catch (const Error&) {
        return {.path = path};
    }
}

ListingOutcome ShowZipContents(forms::Program& program, const RestoreControls& controls,
                               const std::string& path) {
    return Reported("clsFiles:ShowZipContents Method",
                    [&] { return FillTree(program, controls, path); });
}

}  // namespace vantrel
