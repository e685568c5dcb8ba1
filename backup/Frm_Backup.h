// The backup window: its first activation runs one whole backup of the selected set.
#pragma once

#include <memory>
#include <string>

#include "forms/controls.h"
#include "progress/progress_window.h"
#include "zip/pkzip.h"

namespace vantrel {

class clsINI;

class Frm_Backup : public ProgressWindow {
  public:
    // `set_name` is the set's file name in the application folder. `component` stands for the zip
    // component; tests hand in a recording one.
    Frm_Backup(forms::Program& program, std::string set_name,
               std::unique_ptr<zip::PKZIP> component);

    forms::Label& Lbl_BackupPath;
    forms::Label Lbl_BackingUp;
    zip::PKZIP& PKZIP;

    void Form_Activate() override;

    void Cmd_Ok_Click() override;
    void PKZIP_OverallProgress(std::int32_t& percent, bool& cancel);
    void PKZIP_FileProgress(std::int32_t& percent);
    void PKZIP_Message(const zip::ComponentMessage& message);
    void PKZIP_FatalStop();

  private:
    // Where the archive goes: its folder as the set will remember it, and its file name.
    struct Target {
        std::string folder;
        std::string file;
    };
    Target MakeTarget(clsINI& set) const;
    void RunComponent(clsINI& set, const Target& target);
    void Finish(const Target& target);
    std::string SetPath() const;

    std::string set_name_;
    std::unique_ptr<zip::PKZIP> component_;
};

}  // namespace vantrel
