#include "ui/edit_tab.h"

#include <utility>

#include "backupset/clsFiles.h"
#include "backupset/clsINI.h"
#include "common/error.h"
#include "log/clsLog.h"
#include "platform/text_file.h"
#include "ui/text_views.h"

namespace vantrel {

using forms::Answer;
using forms::Buttons;

namespace {

constexpr int kSecondButton = 2;  // "No" of the editor's questions
constexpr const char* kScratchName = "Temp.INI";

int IndexOf(const forms::FileList& list, const std::string& name) {
    int index = list.Count() - 1;
    while (index >= 0 && list.Item(index) != name) {
        --index;
    }
    return index;
}

}  // namespace

EditTab::EditTab(forms::Form& window)
    : Fra_INIFileList(window, "Fra_INIFileList"),
      Lbl_INIEdit(window, "Lbl_INIEdit", "INI File List"),
      Fil_INI(window, "Fil_INI", "*.INI"),
      Cmd_INIRefresh(window, "Cmd_INIRefresh", "&Refresh"),
      Fra_INIEdit(window, "Fra_INIEdit"),
      Lbl_INIContents(window, "Lbl_INIContents", "INI File Contents"),
      Fld_INI(window, "Fld_INI", true),
      Cmd_Save(window, "Cmd_Save", "&Save"),
      program_(window.program()) {
    Fil_INI.SetTooltip("Selection of Existing Configuration Files");
    Cmd_INIRefresh.SetTooltip("Refresh the List of INI Files");
    Fld_INI.SetTooltip("Contents of the Configuration File");
    Cmd_Save.SetTooltip("Save any Changes you have made to the Configuration File");

    Fil_INI.Click = [this] { Fil_INI_Click(); };
    Fld_INI.Change = [this] { Fld_INI_Change(); };
    Cmd_Save.Click = [this] { Cmd_Save_Click(); };
    Cmd_INIRefresh.Click = [this] { Cmd_INIRefresh_Click(); };
}

void EditTab::Run(const std::function<void()>& handler) {
    const bool outermost = !std::exchange(running_, true);
    try {
        handler();
    } catch (const Error& error) {
        ShowError(program_, error);
    }
    if (!outermost) {
        return;
    }
    running_ = false;
    if (std::exchange(picked_meanwhile_, false) && Fil_INI.FileName() != CurrentINI) {
        Fil_INI_Click();
    }
}

void EditTab::Fil_INI_Click() {
    if (running_) {
        picked_meanwhile_ = true;
        return;
    }
    Run([this] { ShowPicked(); });
}

void EditTab::ShowPicked() {
    const std::string picked = Fil_INI.FileName();
    if (!OfferToSave(picked)) {
        return;
    }
    Show_INI(program_, picked, Fld_INI, Lbl_INIContents);
    CurrentINI = picked;
    Cmd_Save.SetEnabled(false);
}

// Offers to save unsaved changes. False when they were to be saved and are no valid set: the editor
// then keeps its text.
bool EditTab::OfferToSave(const std::string& picked) {
    if (!Cmd_Save.Enabled() || CurrentINI.empty()) {
        CurrentINI = picked;
        return true;
    }
    const Answer answer =
        program_.ShowMessage({.text = "You have not saved your changes to " + CurrentINI + "." +
                                      program_.globals.CrLf + "Do you wish to do this now?",
                              .buttons = Buttons::kYesNo,
                              .title = "Changes",
                              .default_button = kSecondButton});
    if (answer != Answer::kYes) {
        return true;
    }
    ConfirmSave = false;
    SaveAccepted = false;
    Cmd_Save.Press();
    // Set only here, so that exactly the first direct save after this one is confirmed.
    ConfirmSave = true;
    if (SaveAccepted) {
        return true;
    }
    Fil_INI.RestoreIndex(IndexOf(Fil_INI, CurrentINI));
    return false;
}

void EditTab::Fld_INI_Change() {
    if (!Cmd_Save.Enabled()) {
        Cmd_Save.SetEnabled(true);
    }
}

void EditTab::Cmd_Save_Click() {
    Run([this] {
        if (!ConfirmSave || ConfirmSaving()) {
            Save();
        }
    });
}

bool EditTab::ConfirmSaving() {
    return program_.desktop.Show({.text = "Are you sure that you wish to save the changes?",
                                  .buttons = Buttons::kYesNo,
                                  .title = "Save Changes",
                                  .default_button = kSecondButton}) == Answer::kYes;
}

void EditTab::Save() {
    const std::string scratch = ScratchPath();
    SaveAccepted = false;
    if (ValidateText(scratch)) {
        PutInPlace(scratch);
        clsINI(program_).ConfirmBackslash(program_.InApplicationFolder(CurrentINI));
        Show_INI(program_, CurrentINI, Fld_INI, Lbl_INIContents);
        Cmd_Save.SetEnabled(false);
        clsLog(program_).WriteToLog("INI Edit", true, "INI " + CurrentINI + " Edited");
    }
    ConfirmSave = false;
}

// A refused save leaves the scratch file behind, as a set file like any other. While that file
// itself is edited, another scratch file is used, so that a refusal leaves the set unchanged.
std::string EditTab::ScratchPath() const {
    auto& letters = program_.machine.code_page;
    const bool is_edited = letters.Fold(CurrentINI) == letters.Fold(kScratchName);
    const std::string usual = program_.InApplicationFolder(kScratchName);
    return is_edited ? platform::UnusedPathBeside(program_.machine.files, usual) : usual;
}

bool EditTab::ValidateText(const std::string& scratch) {
    if (!WriteScratch(scratch)) {
        return false;
    }
    clsINI set(program_);
    set.Read_INI(scratch);
    if (set.Validate_OnSave() && ValidateLengths(set)) {
        return true;
    }
    if (scratch != program_.InApplicationFolder(kScratchName)) {
        program_.machine.files.RemoveFile(scratch);
    }
    return false;
}

// False, with a message, for a value that would be truncated when it is read back.
bool EditTab::ValidateLengths(const clsINI& set) {
    const std::string problem = set.SaveProblem();
    if (!problem.empty()) {
        ShowRefusal(problem + ".");
    }
    return problem.empty();
}

void EditTab::ShowRefusal(const std::string& reason) {
    auto& globals = program_.globals;
    globals.MessageText = reason;
    program_.desktop.Show({.text = "Unable to Save this file:" + globals.CrLf + "Reason: " + reason,
                           .icon = forms::Icon::kExclamation,
                           .title = "INI Validation"});
}

// False, with a message, for a text that a set file's code page cannot hold.
bool EditTab::WriteScratch(const std::string& scratch) {
    auto& globals = program_.globals;
    const auto bytes = program_.machine.code_page.Encode(Fld_INI.Text() + globals.CrLf);
    if (!bytes) {
        ShowRefusal("It holds characters that a Backup Set cannot store.");
        return false;
    }
    auto& files = program_.machine.files;
    if (clsFiles(program_).Exist(scratch, true)) {
        files.RemoveFile(scratch);
    }
    // Truncates a file that exists in spite of the test.
    platform::WriteFlushed(files, scratch, *bytes);
    return true;
}

// One step instead of a removal and a rename: the set's file exists at every moment.
void EditTab::PutInPlace(const std::string& scratch) {
    if (CurrentINI.empty()) {
        RaiseError(error_number::kPathFileAccess);  // no file is selected
    }
    program_.machine.files.Replace(scratch, program_.InApplicationFolder(CurrentINI));
    SaveAccepted = true;
}

EditStatus EditTab::Status() const {
    return {.sets = Fil_INI.Count(),
            .file = CurrentINI,
            .has_text = !Fld_INI.Text().empty(),
            .is_unsaved = Cmd_Save.Enabled()};
}

void EditTab::Cmd_INIRefresh_Click() {
    try {
        const int remembered = Fil_INI.Index();
        Fil_INI.SetPattern("*.INI");
        // The comparison is deliberate: a refresh normally clears the editor.
        if (remembered <= Fil_INI.Count()) {
            Fld_INI.SetText("");
            Lbl_INIContents.SetCaption("INI File Contents");
            CurrentINI.clear();
        } else {
            Fil_INI.SetIndex(remembered);
        }
    } catch (const Error& error) {
        ShowError(program_, error);
    }
}

void EditTab::Menu_Options_Delete_Click(forms::ComboBox& Cmb_BackupSet) {
    const std::string name = Fil_INI.FileName();
    if (name.empty() || !ConfirmDeletion(name)) {
        return;
    }
    try {
        Delete(name, Cmb_BackupSet);
    } catch (const Error& error) {
        ShowError(program_, error);
    }
}

bool EditTab::ConfirmDeletion(const std::string& name) {
    return program_.ShowMessage({.text = "Are you sure that you wish to delete " + name,
                                 .buttons = Buttons::kYesNo,
                                 .title = "Delete File",
                                 .default_button = kSecondButton}) == Answer::kYes;
}

void EditTab::Delete(const std::string& name, forms::ComboBox& sets) {
    const std::string path = program_.InApplicationFolder(name);
    if (clsFiles(program_).Exist(path, true)) {
        program_.machine.files.RemoveFile(path);
    }
    Cmd_INIRefresh.Press();
    // The loop uses the count from before it, and skips the entry that follows a removed one.
    const int count = sets.Count();
    for (int i = 0; i < count; ++i) {
        if (sets.Item(i) == name) {
            sets.Remove(i);
        }
    }
}

}  // namespace vantrel
