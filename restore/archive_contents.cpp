#include "restore/archive_contents.h"

#include <utility>

#include "backupset/clsFiles.h"
#include "common/error.h"
#include "forms/form.h"
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
        return AskForDisk(text) == DiskAnswer::kRetry;
    }
    DiskAnswer AskForDisk(const std::string& text) override {
        if (cancelled) {
            return DiskAnswer::kCancel;
        }
        desktop_.SetPointer(forms::Pointer::kDefault);
        const DiskAnswer answer = ShowQuestion(desktop_, DiskQuestion(text, "Restore"));
        desktop_.SetPointer(forms::Pointer::kHourglass);
        cancelled = answer == DiskAnswer::kCancel;
        return answer;
    }

    bool cancelled = false;

  private:
    forms::Desktop& desktop_;
};

using Progress = std::function<void(std::int32_t& percent, bool& cancel)>;

// Receives the component's events during a listing. The destructor disconnects it, also after an
// error; the listing in which this one runs, if there is one, gets its progress events again.
class ListingEvents {
  public:
    ListingEvents(zip::PKUNZIP& component, zip::Questions& questions, Progress progress)
        : component_(component),
          outer_(std::exchange(component.OverallProgress, std::move(progress))) {
        component_.questions = &questions;
        // The only message of a count is about a directory that is not complete.
        component_.Message = [this](const zip::ComponentMessage& message) { Keep(message); };
    }
    ~ListingEvents() {
        component_.OverallProgress = std::move(outer_);
        component_.Message = nullptr;
        component_.questions = nullptr;
    }
    ListingEvents(const ListingEvents&) = delete;
    ListingEvents& operator=(const ListingEvents&) = delete;

    std::string trouble;

  private:
    void Keep(const zip::ComponentMessage& message) { trouble = message.text; }

    zip::PKUNZIP& component_;
    Progress outer_;
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

// Entries added between two looks at the message queue: some milliseconds.
constexpr std::int32_t kEntriesAtOnce = 500;

// One listing. It handles waiting events at least every 0.1 s, and ends when one of their handlers
// has made it pointless.
class Listing {
  public:
    Listing(forms::Program& program, const RestoreControls& controls)
        : program_(program), controls_(controls), tree_(controls.TV_Restore) {}

    ListingOutcome Run(const std::string& path) {
        HandleEvents();
        program_.desktop.SetPointer(forms::Pointer::kHourglass);
        ListingOutcome outcome;
        if (HandleEvents()) {
            outcome = Fill(path);
        }
        outcome.replaced = IsReplaced();
        controls_.SSP_TotalFiles.SetFloodPercent(0);
        program_.desktop.SetPointer(forms::Pointer::kDefault);
        return outcome;
    }

  private:
    // False when one of them has made this listing pointless.
    bool HandleEvents() {
        program_.desktop.DoEvents();
        return !IsReplaced();
    }
    bool IsReplaced() const {
        return tree_.Clears() != clears_ || tree_.owner().Loaded() != was_loaded_;
    }

    // The component counts the archive itself as entry 0: index 0 is never listed, and the number
    // shown is one less than the count.
    ListingOutcome Fill(const std::string& path) {
        namespace id = zip::unzip_id;
        tree_.SetVisible(false);
        tree_.Clear();
        clears_ = tree_.Clears();
        controls_.Fld_Total.SetCaption("0");
        if (!clsFiles(program_).Exist(path, true)) {
            return {.trouble = WhyNotOpened(program_, path)};
        }
        controls_.PKUNZIP.Set(id::kArchive, path);
        ListingOutcome listing = CountEntries(path);
        if (!IsReplaced() && AddEntries()) {
            tree_.SetVisible(true);
        }
        return listing;
    }

    // Has the component read the archive's directory.
    ListingOutcome CountEntries(const std::string& path) {
        DiskQuestions questions(program_);
        const ListingEvents listening(
            controls_.PKUNZIP, questions,
            [this](std::int32_t&, bool& cancel) { cancel = !HandleEvents(); });
        controls_.PKUNZIP.Set(zip::unzip_id::kAction, zip::unzip_id::kActionCount);
        if (questions.cancelled || listening.trouble.empty()) {
            return {.complete = !questions.cancelled, .cancelled = questions.cancelled};
        }
        return {.trouble = Unreadable(path, listening.trouble)};
    }

    // False when this listing was replaced.
    bool AddEntries() {
        namespace id = zip::unzip_id;
        zip::PKUNZIP& component = controls_.PKUNZIP;
        const auto count = std::get<std::int32_t>(component.Get(id::kEntryCount));
        controls_.Fld_Total.SetCaption(std::to_string(count - 1));
        component.Set(6, true);
        for (std::int32_t i = 1; i < count; ++i) {
            controls_.SSP_TotalFiles.SetFloodPercent(100.0 / count * i);
            component.Set(id::kEntryIndex, i);
            component.Set(id::kAction, id::kActionEntry);
            tree_.Add({.text = std::get<std::string>(component.Get(id::kEntryName))});
            if (i % kEntriesAtOnce == 0 && !HandleEvents()) {
                return false;
            }
        }
        return true;
    }

    forms::Program& program_;
    const RestoreControls& controls_;
    forms::Tree& tree_;
    int clears_ = tree_.Clears();
    const bool was_loaded_ = tree_.owner().Loaded();
};

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
                    [&] { return Listing(program, controls).Run(path); });
}

}  // namespace vantrel
