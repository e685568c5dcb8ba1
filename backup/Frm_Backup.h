// The backup window: its first activation runs one complete backup of the selected set. Window
// thread only; the component's own threads never call back into the window.
#pragma once

#include <memory>
#include <string>

#include "forms/controls.h"
#include "progress/progress_window.h"
#include "zip/pkzip.h"

namespace vantrel {

class clsINI;

// Below this many free bytes on the destination the volume option of a spanned backup is off.
inline constexpr double kLowSpaceBytes = 2'000'000;

class Frm_Backup : public ProgressWindow {
  public:
    // `set_name` is the set's file name in the application folder. Tests pass a `component` that
    // records its properties.
    Frm_Backup(forms::Program& program, std::string set_name,
               std::unique_ptr<zip::PKZIP> component);

    forms::Label& Lbl_BackupPath;
    forms::Label Lbl_BackingUp;
    zip::PKZIP& PKZIP;

    void Form_Activate() override;

    void Cmd_Ok_Click() override;

  private:
    // The archive's folder, as the set stores it for a restore, and its file name.
    struct Target {
        std::string folder;
        std::string file;
        bool spanned = false;
        std::string Path() const { return folder + file; }
    };
    Target MakeTarget(clsINI& set) const;
    void RunComponent(clsINI& set);
    void Message(const zip::ComponentMessage& message) override;
    void FatalStop();
    void Finish();
    // What the user sees of the end, until OK.
    void ShowEnd();
    void ShowFailure(const std::string& reason);
    // What is on the disk after a cancel or a failure.
    ArchiveState EarlierArchive() const;
    std::string SetPath() const;

    std::string set_name_;
    Target target_;
    std::unique_ptr<zip::PKZIP> component_;
};

}  // namespace vantrel
