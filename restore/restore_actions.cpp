#include "restore/restore_actions.h"

#include <memory>
#include <vector>

#include "backupset/clsFiles.h"
#include "backupset/clsINI.h"
#include "common/error.h"
#include "forms/desktop.h"
#include "log/clsLog.h"
#include "progress/progress_window.h"
#include "protect/clsCfg.h"
#include "restore/Frm_Restore.h"
#include "restore/Frm_RestoreWhere.h"
#include "restore/protected_pass.h"

namespace vantrel {

using forms::Icon;
using forms::Pointer;

std::string RestoreActions::SetPath() const {
    return program_.InApplicationFolder(controls_.Cmb_RestoreFile.Text());
}

std::string RestoreActions::ArchiveOfSet() const {
    clsINI set(program_);
    set.Read_INI(SetPath());
    return set.RestoreFromDrive() + set.RestoreFileName();
}

std::string RestoreActions::ArchiveToRestore() const {
    return controls_.Cmb_RestoreFile.Text().empty() ? controls_.Fld_RestoreFile.Caption()
                                                    : ArchiveOfSet();
}

void RestoreActions::ShowMessage(const std::string& text) {
    program_.ShowMessage({.text = text, .icon = Icon::kExclamation, .title = "Restore"});
}

// False when another listing has replaced it.
bool RestoreActions::List(const std::string& archive) {
    listing_ = {};
    // Looked at before the listing: an archive that changes meanwhile is not the listed one.
    const ListedArchive looked_at = LookAtArchive(program_, archive);
    const ListingOutcome listing = ShowZipContents(program_, controls_, archive);
    if (listing.replaced) {
        return false;
    }
    listing_ = listing;
    listed_ = looked_at;
    return true;
}

// For an archive that was chosen just now: one with a damaged directory is searched if the user
// wants it, and the entries found are listed.
void RestoreActions::ListOrSearch(const std::string& archive) {
    if (!List(archive) || listing_.cancelled || !controls_.PKUNZIP.CanBeSearched() ||
        !ConfirmSearch(program_.desktop, archive)) {
        return;
    }
    {
        Frm_Search window(program_, controls_.PKUNZIP);
        program_.desktop.ShowModal(window);
        program_.desktop.Unload(window);
    }
    if (controls_.Fld_RestoreFile.Caption() == archive) {
        List(archive);
    }
}

void RestoreActions::Cmb_RestoreFile_Click() {
    if (controls_.Cmb_RestoreFile.Index() == -1) {
        return;
    }
    try {
        TakeSet();
    } catch (const Error& error) {
        program_.desktop.SetPointer(Pointer::kDefault);
        ShowError(program_, error);
    }
}

void RestoreActions::TakeSet() {
    program_.desktop.SetPointer(Pointer::kHourglass);
    clsINI set(program_);
    set.Read_INI(SetPath());
    const std::string archive = set.RestoreFromDrive() + set.RestoreFileName();
    const std::string& line = program_.globals.CrLf;
    if (set.RestoreFromDrive().empty()) {
        return RefuseSet("There is no Restore Information available for this Backupset." + line +
                         "Please select a new Backupset to Restore From or "
                         "manually select a file.");
    }
    if (!set.RestoreSourceProblem().empty()) {
        return RefuseSet("Unable to Restore as " + set.RestoreSourceProblem() + ".");
    }
    if (!clsFiles(program_).Exist(archive, true)) {
        return RefuseSet(
            "This configuration file indicates that a backup file "
            "was created but it no longer appears to "
            "exist." +
            line + line + "File being sought is " + archive + line + line +
            "If the File is from a Removable Drive then "
            "place the disk into the drive now and try again.");
    }
    controls_.Fld_RestoreFile.SetCaption(archive);
    ListOrSearch(archive);
    program_.desktop.SetPointer(Pointer::kDefault);
}

// The earlier choice goes as well: the user has chosen another set since.
void RestoreActions::RefuseSet(const std::string& reason) {
    program_.desktop.SetPointer(Pointer::kDefault);
    ShowMessage(reason);
    controls_.Cmb_RestoreFile.SetIndex(-1);
    controls_.TV_Restore.Clear();
    controls_.TV_Restore.SetVisible(true);
    controls_.Fld_Total.SetCaption("0");
    controls_.Fld_RestoreFile.SetCaption("");
}

void RestoreActions::Cmd_RestoreFile_Click() {
    try {
        Browse();
    } catch (const Error&) {
        program_.desktop.SetPointer(Pointer::kDefault);
    }
}

void RestoreActions::Browse() {
    std::string start = controls_.Fld_RestoreFile.Caption();
    if (start.empty() || !clsFiles(program_).Exist(start, true)) {
        start.clear();
    }
    const std::string chosen =
        program_.desktop.OpenFile("Select a Restore File", "Restore Files (*.zip)|*.zip", start);
    if (chosen.empty()) {
        return;
    }
    controls_.Fld_RestoreFile.SetCaption(chosen);
    ListOrSearch(chosen);
    if (controls_.Fld_RestoreFile.Caption() == chosen) {
        ForgetSetUnlessItNames(chosen);
    }
}

void RestoreActions::ForgetSetUnlessItNames(const std::string& archive) {
    if (controls_.Cmb_RestoreFile.Index() == -1) {
        return;
    }
    auto& code_page = program_.machine.code_page;
    const bool same = clsFiles(program_).Exist(SetPath(), true) &&
                      code_page.Upper(ArchiveOfSet()) == code_page.Upper(archive);
    if (!same) {
        controls_.Cmb_RestoreFile.SetIndex(-1);
    }
}

void RestoreActions::Cmd_RestoreTo_Click() { vantrel::Cmd_RestoreTo_Click(program_, controls_); }

bool RestoreActions::ValidateChoices() {
    const std::string& line = program_.globals.CrLf;
    if (controls_.Cmb_RestoreFile.Text().empty() && controls_.Fld_RestoreFile.Caption().empty()) {
        ShowMessage("Nothing has been selected to Restore." + line + line +
                    "Please enter a valid Restore File.");
        return false;
    }
    if (controls_.Fld_RestoreTo.Caption().empty()) {
        ShowMessage("No Location has been selected to Restore the File To." + line + line +
                    LocationWarning(program_));
        return false;
    }
    return ValidateArchiveOfSet();
}

// The set's file may have been edited since the set was selected.
bool RestoreActions::ValidateArchiveOfSet() {
    if (controls_.Cmb_RestoreFile.Text().empty()) {
        return true;
    }
    clsINI set(program_);
    set.Read_INI(SetPath());
    const std::string problem = set.RestoreSourceProblem();
    if (!problem.empty()) {
        ShowMessage("Unable to Restore as " + problem + ".");
    }
    return problem.empty();
}

// True when folders are protected and no entry is known: the archive cannot be read now, but the
// extraction may be able to. False for a directory that is damaged after some entries: the
// extraction restores only the entries that are listed.
bool RestoreActions::TargetsUnknown() {
    return !listing_.complete && controls_.TV_Restore.Count() == 0 &&
           !clsCfg(program_).ReturnProtected().empty();
}

bool RestoreActions::WindowIsLoaded() const { return controls_.TV_Restore.owner().Loaded(); }

// The protected-folder pass uses the listed entries; with those of another archive a protected
// folder could be overwritten. Pending events run during the listing and may choose another
// archive, which is then listed. When the targets are unknown, the user is asked first. False when
// nothing is left to restore, or after the user's cancel, which is logged.
bool RestoreActions::ListArchiveToRestore() {
    const forms::Hourglass waiting(program_.desktop);
    const bool window_was_there = WindowIsLoaded();
    for (;;) {
        const std::string archive = ArchiveToRestore();
        if (listing_.complete && LookAtArchive(program_, archive) == listed_) {
            return true;
        }
        const bool is_listed = List(archive);
        if (window_was_there != WindowIsLoaded() || !ValidateChoices()) {
            return false;
        }
        if (!is_listed || ArchiveToRestore() != archive) {
            continue;
        }
        if (!listing_.cancelled) {
            if (!TargetsUnknown()) {
                return true;
            }
            if (ConfirmRetry(program_.desktop, listing_.trouble, "Restore")) {
                continue;
            }
        }
        LogCancelledRun();
        return false;
    }
}

// The restore window, which logs a cancelled run otherwise, does not open.
void RestoreActions::LogCancelledRun() {
    RestoreRecords records(program_, controls_);
    records.WriteStarted();
    records.WriteCancelled();
}

void RestoreActions::Cmd_Restore_Click() {
    if (restoring_) {
        return;
    }
    struct Running {
        explicit Running(bool& flag) : flag_(flag) { flag_ = true; }
        ~Running() { flag_ = false; }
        bool& flag_;
    } const running(restoring_);
    Restore();
}

void RestoreActions::Restore() {
    if (!ValidateChoices() || !ListArchiveToRestore()) {
        return;
    }
    RunPass();
    auto component = std::make_unique<zip::PKUNZIP>(program_.machine);
    if (listing_.complete || controls_.TV_Restore.Count() > 0) {
        component->RestoreListed(controls_.PKUNZIP);
    }
    Frm_Restore window(program_, controls_, std::move(component));
    program_.desktop.ShowModal(window);
    program_.desktop.Unload(window);
}

void RestoreActions::RunPass() {
    const forms::Hourglass waiting(program_.desktop);
    const std::string destination = controls_.Fld_RestoreTo.Caption();
    RestoreTargets targets{.folders = [&] { return controls_.PKUNZIP.TargetFolders(destination); }};
    for (int i = 1; i <= controls_.TV_Restore.Count(); ++i) {
        targets.entries.push_back(controls_.TV_Restore.At(i).text);
    }
    RenameProtectedFolders(program_, targets, destination);
}

}  // namespace vantrel
