#include "progress/progress_window.h"

#include <utility>

#include "backupset/clsFiles.h"
#include "common/display_text.h"
#include "log/clsLog.h"

namespace vantrel {

ProgressWindow::ProgressWindow(forms::Program& program, std::string name, std::string path_label,
                               std::string question_title)
    : Form(program, std::move(name)),
      Cmd_Ok(*this, "Cmd_Ok", "OK"),
      Cmd_Cancel(*this, "Cmd_Cancel", "Cancel"),
      Fra_Details(*this, "Fra_Details", "Details"),
      Lst_Details(*this, "Lst_Details"),
      Frame1(*this, "Frame1"),
      Lbl_File(*this, "Lbl_File", "File Progress"),
      Lbl_JobProgress(*this, "Lbl_JobProgress", "Overall Progress"),
      Lbl_Folder(*this, "Lbl_Folder", "Status"),
      Ani_File(*this, "Ani_File"),
      PB_Folder(*this, "PB_Folder"),
      PB_File(*this, "PB_File"),
      Lbl_Figures(*this, "Lbl_Figures"),
      Lbl_Location(*this, "Lbl_Location"),
      Lbl_LeftOut(*this, "Lbl_LeftOut"),
      path_label_(*this, std::move(path_label), "Please Wait...  Processing Files"),
      messages_(program),
      question_title_(std::move(question_title)) {
    Cmd_Ok.Click = [this] { Cmd_Ok_Click(); };
    Cmd_Cancel.Click = [this] { Cmd_Cancel_Click(); };
}

void ProgressWindow::Form_Load() {
    const std::string clip = program().InApplicationFolder("System\\FileCopy.AVI");
    if (clsFiles(program()).Exist(clip, true)) {
        Ani_File.Open(clip);
    }
    Cmd_Cancel.SetVisible(true);
    Cmd_Ok.SetVisible(false);
}

void ProgressWindow::Cmd_Cancel_Click() { Cmd_Cancel.SetEnabled(false); }

void ProgressWindow::Follow(zip::Component& component) {
    component.OverallProgress = [this](std::int32_t percent, bool& cancel) {
        OverallProgress(percent, cancel);
    };
    component.FileProgress = [this](std::int32_t percent) { FileProgress(percent); };
    component.Message = [this](const zip::ComponentMessage& message) { Message(message); };
    if (!program().Unattended()) {
        component.questions = this;
        component.Figures = [this](const zip::RunFigures& figures) { Figures(figures); };
    }
}

void ProgressWindow::OverallProgress(std::int32_t percent, bool& cancel) {
    program().desktop.DoEvents();
    PB_Folder.SetValue(percent);
    SetTaskProgress(percent);
    if (Cmd_Cancel.Enabled()) {
        return;
    }
    cancel = true;
    Cmd_Ok.SetVisible(true);
    Cmd_Cancel.SetVisible(false);
    cancelled_ = true;
}

void ProgressWindow::FileProgress(std::int32_t percent) {
    program().desktop.DoEvents();
    PB_File.SetValue(percent);
}

void ProgressWindow::Message(const zip::ComponentMessage& message) {
    path_label_.SetCaption(message.text);
    Lst_Details.Add(message.text);
    Lst_Details.SetIndex(Lst_Details.Count() - 1);
    messages_.Handle(message);
    display_.Add(message);
}

void ProgressWindow::StartRun(const std::string& location) {
    display_.Start(Now(), program().machine.settings.Numbers());
    Lbl_Figures.SetCaption("");
    Lbl_Location.SetCaption(location);
    Lbl_LeftOut.SetCaption("");
}

void ProgressWindow::Figures(const zip::RunFigures& figures) {
    if (display_.Update(Now(), figures)) {
        Lbl_Figures.SetCaption(display_.FiguresLine());
        Lbl_LeftOut.SetCaption(display_.LeftOutLine());
    }
}

RunEnd ProgressWindow::EndOfRun() const { return display_.End(Now(), cancelled_); }

void ProgressWindow::ShowSummary(const RunEnd& end, const std::string& location) {
    Lbl_Figures.SetCaption(display_.SummaryLine(end));
    Lbl_Location.SetCaption(location);
    Lbl_LeftOut.SetCaption(display_.ProblemLine());
}

RunDisplay::Time ProgressWindow::Now() const { return program().machine.clock.SteadyNow(); }

bool ProgressWindow::AskRetry(const std::string& text) {
    return Ask({.text = text,
                .buttons = forms::Buttons::kRetryCancel,
                .icon = forms::Icon::kExclamation,
                .title = question_title_}) == DiskAnswer::kRetry;
}

zip::Questions::DiskAnswer ProgressWindow::AskForDisk(const std::string& text) {
    return Ask(DiskQuestion(text, question_title_));
}

zip::Questions::DiskAnswer ProgressWindow::Ask(const forms::Box& box) {
    // A press of Cancel that waits in the queue would be lost while the box is open.
    program().desktop.DoEvents();
    if (!Cmd_Cancel.Enabled()) {
        return DiskAnswer::kCancel;
    }
    display_.Pause(Now());
    const DiskAnswer answer = ShowQuestion(program().desktop, box);
    display_.Resume(Now());
    if (answer == DiskAnswer::kCancel) {
        Cmd_Cancel.SetEnabled(false);
    }
    return answer;
}

void ProgressWindow::LogRecord(const std::string& text) {
    clsLog(program()).WriteToLog("Backup", true, text);
}

void ProgressWindow::ShowOutcome(const std::string& text) {
    Ani_File.Stop();
    path_label_.SetCaption(text);
    PB_Folder.SetValue(0);
    PB_File.SetValue(0);
    SetTaskProgress(kNoTaskProgress);
    Lst_Details.Clear();
    Cmd_Ok.SetFocus();
}

void ComponentMessages::Handle(const zip::ComponentMessage& message) {
    if (message.kind == zip::MessageKind::kInformation) {
        return;
    }
    if (written_ == kMaxLines) {
        ++unwritten_;
        return;
    }
    ++written_;
    Write(message.text);
}

void ComponentMessages::WriteSummary(std::int32_t left_out_files, const std::string& outcome) {
    if (unwritten_ > 0) {
        Write(Counted(unwritten_, "more message", "more messages") + " not written");
    }
    const auto left_out = static_cast<std::uint32_t>(left_out_files);
    if (left_out > 0) {
        Write(Counted(left_out, "file", "files") + " " + outcome);
    }
    written_ = 0;
    unwritten_ = 0;
}

void ComponentMessages::Write(const std::string& text) {
    clsLog(program_).WriteToLog("Backup", false, text);
}

bool ConfirmRetry(forms::Desktop& desktop, const std::string& text, const std::string& title) {
    return desktop.Show({.text = text,
                         .buttons = forms::Buttons::kRetryCancel,
                         .icon = forms::Icon::kExclamation,
                         .title = title}) == forms::Answer::kRetry;
}

forms::Box DiskQuestion(const std::string& text, const std::string& title) {
    return {.text = text + "\r\n\r\nPress Continue to restore the other files without this disk.",
            .buttons = forms::Buttons::kRetryContinueCancel,
            .icon = forms::Icon::kExclamation,
            .title = title};
}

zip::Questions::DiskAnswer ShowQuestion(forms::Desktop& desktop, const forms::Box& box) {
    using DiskAnswer = zip::Questions::DiskAnswer;
    const forms::Answer answer = desktop.Show(box);
    return answer == forms::Answer::kRetry      ? DiskAnswer::kRetry
           : answer == forms::Answer::kContinue ? DiskAnswer::kContinue
                                                : DiskAnswer::kCancel;
}

}  // namespace vantrel
