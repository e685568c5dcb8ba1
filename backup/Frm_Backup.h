// The backup window: its first activation runs one whole backup of the selected set.
#pragma once

#include <memory>
#include <string>

#include "forms/controls.h"
#include "forms/form.h"
#include "forms/lists.h"
#include "log/component_messages.h"
#include "zip/pkzip.h"

namespace vantrel {

class clsINI;

class Frm_Backup : public forms::Form, private zip::Questions {
  public:
    // `set_name` is the set's file name in the application folder. `component` stands for the zip
    // component; tests hand in a recording one.
    Frm_Backup(forms::Program& program, std::string set_name,
               std::unique_ptr<zip::PKZIP> component);

    forms::Button Cmd_Ok;
    forms::Button Cmd_Cancel;
    forms::Frame Fra_Details;
    forms::ListBox Lst_Details;
    forms::Frame Frame1;
    forms::Label Lbl_File;
    forms::Label Lbl_JobProgress;
    forms::Label Lbl_BackupPath;
    forms::Label Lbl_Folder;
    forms::Label Lbl_BackingUp;
    forms::Animation Ani_File;
    forms::ProgressBar PB_Folder;
    forms::ProgressBar PB_File;
    zip::PKZIP& PKZIP;

    void Form_Load() override;
    void Form_Activate() override;

    void Cmd_Ok_Click();
    void Cmd_Cancel_Click();
    void PKZIP_OverallProgress(std::int32_t& percent, bool& cancel);
    void PKZIP_FileProgress(std::int32_t& percent);
    void PKZIP_Message(const zip::ComponentMessage& message);
    void PKZIP_FatalStop();

  private:
    bool AskRetry(const std::string& text) override;
    // Where the archive goes: its folder as the set will remember it, and its file name.
    struct Target {
        std::string folder;
        std::string file;
    };
    Target MakeTarget(clsINI& set) const;
    void RunComponent(clsINI& set, const Target& target);
    void Finish(const Target& target);
    void ShowOutcome();
    void LogRecord(const std::string& text);
    std::string SetPath() const;

    std::string set_name_;
    std::unique_ptr<zip::PKZIP> component_;
    ComponentMessages messages_;
    bool cancelled_ = false;
};

}  // namespace vantrel
