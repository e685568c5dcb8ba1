// The window of a long run: two progress bars, an animation, a list of messages, and what the run
// has done so far, which becomes its summary at the end. The backup and the restore window derive
// from it. The Cancel button only disables itself; the next
// overall-progress event of the component sees the disabled button and passes the cancel to the
// component. Window thread only.
#pragma once

#include <cstdint>
#include <string>

#include "forms/controls.h"
#include "forms/desktop.h"
#include "forms/form.h"
#include "forms/lists.h"
#include "forms/program.h"
#include "progress/run_display.h"
#include "zip/component.h"

namespace vantrel {

// Writes a component's warnings and errors to the log, undated, as they are handled. A failing disk
// can raise thousands of them and the log is small: only the first kMaxLines are written, the
// others counted.
class ComponentMessages {
  public:
    explicit ComponentMessages(forms::Program& program) : program_(program) {}

    void Handle(const zip::ComponentMessage& message);
    // Called once, when the action has returned or before a fatal stop. Writes how many messages
    // were not written, and how many files the run left out, with `outcome` ("not backed up").
    void WriteSummary(std::int32_t left_out_files, const std::string& outcome);

  private:
    static constexpr int kMaxLines = 50;  // 50 lines of about 300 bytes are a third of the 50K log
    void Write(const std::string& text);

    forms::Program& program_;
    int written_ = 0;
    std::uint32_t unwritten_ = 0;
};

// Shows a component's question with Retry and Cancel. True for Retry.
bool ConfirmRetry(forms::Desktop& desktop, const std::string& text, const std::string& title);
// The question for a disk without which the run can continue, and the answer to a box.
forms::Box DiskQuestion(const std::string& text, const std::string& title);
zip::Questions::DiskAnswer ShowQuestion(forms::Desktop& desktop, const forms::Box& box);

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
    // Of our own: the figures and then the summary; the archive or the destination; what was left
    // out.
    forms::Label Lbl_Figures;
    forms::Label Lbl_Location;
    forms::Label Lbl_LeftOut;

    void Form_Load() override;
    virtual void Cmd_Ok_Click() = 0;
    void Cmd_Cancel_Click();

  protected:
    // `path_label` names the label for the newest message and the outcome. `question_title` is the
    // title of the component's questions.
    ProgressWindow(forms::Program& program, std::string name, std::string path_label,
                   std::string question_title);

    // Handles the component's events from now on, and its questions unless the run is unattended.
    void Follow(zip::Component& component);
    // Handlers of the component's events. The progress handlers first run pending events, so that
    // Cancel can be pressed and the window is painted.
    void OverallProgress(std::int32_t percent, bool& cancel);
    void FileProgress(std::int32_t percent);
    virtual void Message(const zip::ComponentMessage& message);
    // Updates the line of figures, at most ten times a second.
    void Figures(const zip::RunFigures& figures);
    // Shows no box when Cancel has been pressed: the answer is Cancel.
    bool AskRetry(const std::string& text) override;
    DiskAnswer AskForDisk(const std::string& text) override;

    void LogRecord(const std::string& text);
    // The run begins; `location` is the line about the archive or the destination.
    void StartRun(const std::string& location);
    // The run that has ended, for the summary.
    RunEnd EndOfRun() const;
    // Replaces the figures by the summary. `location`: as in StartRun.
    void ShowSummary(const RunEnd& end, const std::string& location);
    // Shows the outcome, stops the animation, resets the bars and clears the list. OK gets the
    // keyboard.
    void ShowOutcome(const std::string& text);

    forms::Label path_label_;
    ComponentMessages messages_;
    bool cancelled_ = false;  // the component knows of the cancel

  private:
    DiskAnswer Ask(const forms::Box& box);

    RunDisplay::Time Now() const;

    std::string question_title_;
    RunDisplay display_;
};

}  // namespace vantrel
