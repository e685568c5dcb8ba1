// The window of a long run, with two bars, a clip and a list of messages: what backing up and
// restoring have in common. Cancel is a button that only disables itself; the next overall-progress
// event of the component sees that and hands the cancel over.
#pragma once

#include <string>

#include "forms/controls.h"
#include "forms/form.h"
#include "forms/lists.h"
#include "progress/component_messages.h"
#include "zip/base/component_events.h"

namespace vantrel {

class ProgressWindow : public forms::Form, protected zip::Questions {
  public:
    forms::Button Cmd_Ok;
    forms::Button Cmd_Cancel;
    forms::Frame Fra_Details;
    forms::ListBox Lst_Details;
    forms::Frame Frame1;
    forms::Label Lbl_File;
    forms::Label Lbl_JobProgress;
    forms::Label Lbl_Folder;
    forms::Animation Ani_File;
    forms::ProgressBar PB_Folder;
    forms::ProgressBar PB_File;

    void Form_Load() override;
    virtual void Cmd_Ok_Click() = 0;
    void Cmd_Cancel_Click();

  protected:
    // `path_label` is the name of the label that shows the newest message and the outcome;
    // `question_title` stands over the component's questions.
    ProgressWindow(forms::Program& program, std::string name, std::string path_label,
                   std::string question_title);

    // The component's events: yield first, so that Cancel can be pressed and the window is painted.
    void OverallProgress(std::int32_t percent, bool& cancel);
    void FileProgress(std::int32_t percent);
    void Message(const zip::ComponentMessage& message);
    // Shows no box when Cancel has been pressed: the answer is Cancel.
    bool AskRetry(const std::string& text) override;

    void LogRecord(const std::string& text);
    // Leaves the outcome to be read and everything else still.
    void ShowOutcome(const std::string& text);

    forms::Label path_label_;
    ComponentMessages messages_;
    bool cancelled_ = false;  // the cancel has been handed to the component

  private:
    std::string question_title_;
};

}  // namespace vantrel
