// The handlers of the Restore tab: the choice of an archive and of a destination, and the restore
// itself. Window thread only.
#pragma once

#include <string>

#include "forms/program.h"
#include "restore/archive_contents.h"
#include "restore/restore_controls.h"

namespace vantrel {

// Waiting events are handled during a listing: a handler may list another archive, which then is
// the one that counts.
class RestoreActions {
  public:
    RestoreActions(forms::Program& program, const RestoreControls& controls)
        : program_(program), controls_(controls) {}

    // A backup set was chosen: lists the archive that its last backup wrote, or shows why it
    // cannot.
    void Cmb_RestoreFile_Click();
    // Browses for an archive. Any error, a cancelled dialog too, changes nothing further.
    void Cmd_RestoreFile_Click();
    void Cmd_RestoreTo_Click();
    // Checks, runs the protected-folder pass and shows the restore window. While folders are
    // protected, an archive that cannot be listed is a question before the pass; its Cancel is
    // logged as a cancelled restore. Traps no errors. Does nothing while another press is served.
    void Cmd_Restore_Click();

  private:
    void TakeSet();
    // Shows why the chosen set cannot be restored; nothing is chosen then.
    void RefuseSet(const std::string& reason);
    void Browse();
    void ForgetSetUnlessItNames(const std::string& archive);
    bool List(const std::string& archive);
    void ListOrSearch(const std::string& archive);
    std::string SetPath() const;
    std::string ArchiveOfSet() const;
    std::string ArchiveToRestore() const;
    // Both show a message and return false when there is nothing to restore.
    bool ValidateChoices();
    bool ValidateArchiveOfSet();
    bool TargetsUnknown();
    void Restore();
    bool WindowIsLoaded() const;
    bool ListArchiveToRestore();
    void LogCancelledRun();
    void RunPass();
    void ShowMessage(const std::string& text);

    forms::Program& program_;
    RestoreControls controls_;
    ListedArchive listed_;
    ListingOutcome listing_;
    bool restoring_ = false;
};

}  // namespace vantrel
