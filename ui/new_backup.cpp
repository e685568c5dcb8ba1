#include "ui/new_backup.h"

#include <algorithm>
#include <string_view>

#include "backupset/clsFiles.h"
#include "backupset/clsINI.h"
#include "common/error.h"
#include "common/file_name.h"
#include "common/utf.h"
#include "log/clsLog.h"

namespace vantrel {

namespace {

constexpr std::size_t kExtensionLength = 4;  // characters of ".INI"
constexpr std::size_t kRootLength = 3;       // characters of "C:\"

std::string WithExtension(forms::Program& program, const std::string& name) {
    const std::size_t length = utf::Length(name);
    const std::size_t start = length - std::min(length, kExtensionLength);
    const std::string end = name.substr(utf::Left(name, start).size());
    return program.machine.code_page.Upper(end) == ".INI" ? name : name + ".INI";
}

// A name with a folder or a drive would make a set that no list shows, and "CON.INI" a file that
// other programs cannot open. The archive gets the set's name without its extension, which is empty
// for ".INI".
bool CanBeNamed(forms::Program& program, const std::string& name) {
    const std::string stem = name.substr(0, name.size() - kExtensionLength);
    clsINI set(program);
    set.BackupFileName(program.machine.code_page.Upper(stem));
    const bool names_archive = stem.empty() || IsValidFileName(stem);
    return names_archive && IsValidFileName(name) && set.ArchiveNameProblem().empty();
}

// Includes files that no list shows: a hidden set must not be overwritten.
bool IsTaken(forms::Program& program, const std::string& name) {
    auto& machine = program.machine;
    const std::string folded = machine.code_page.Fold(name);
    const auto names = SetFileNames(program);
    return std::any_of(names.begin(), names.end(),
                       [&](const auto& each) { return machine.code_page.Fold(each) == folded; }) ||
           machine.files.Find(program.InApplicationFolder(name)).has_value();
}

void ShowNameInUse(forms::Program& program) {
    program.ShowMessage({.text = "Unable to Save the Configuration File as it already exists.",
                         .icon = forms::Icon::kExclamation,
                         .title = "Backup"});
}

// Creates the file first: when that fails, lists and labels are unchanged.
void CreateSet(forms::Program& program, const std::string& name, BackupTab& tab,
               forms::ComboBox& restore_sets) {
    constexpr bool kOnlyNew = true;  // never replaces a file that IsTaken did not find
    clsINI(program).Create_INI(name, kOnlyNew);
    tab.Cmb_BackupSet.Add(name);
    restore_sets.Add(name);
    tab.GoToApplicationDrive();
    tab.Fld_BackupWhere.SetCaption(
        utf::Left(program.machine.process.ApplicationFolder(), kRootLength));
    // Differs from the new file's values, which the selection below shows.
    tab.Fld_BackupOptions.SetCaption("SubDir=ON, MultiVolume=OFF, Time=ON");
    // The selection below disables the controls that the user wants next; this button enables them.
    tab.Cmd_Change.SetFocus();
}

void AddNew(forms::Program& program, const std::string& typed, BackupTab& tab,
            forms::ComboBox& restore_sets) {
    program.globals.MessageText.clear();
    const std::string name = WithExtension(program, typed);
    if (!CanBeNamed(program, name)) {
        RaiseError(error_number::kBadFileName);
    }
    if (IsTaken(program, name)) {
        ShowNameInUse(program);
    } else {
        CreateSet(program, name, tab, restore_sets);
    }
    // A hidden set is not listed, nor is one that another program created meanwhile.
    if (tab.Cmb_BackupSet.IndexOf(name) >= 0) {
        tab.Cmb_BackupSet.SetText(name);
    }
}

}  // namespace

void Cmd_AddNew_Click(forms::Program& program, BackupTab& tab, forms::ComboBox& Cmb_RestoreFile) {
    const std::string typed = program.desktop.Input(
        "Please enter the name of the Configuration File.", "New Configuration", "");
    if (typed.empty()) {
        return;
    }
    try {
        AddNew(program, typed, tab, Cmb_RestoreFile);
    } catch (const Error& error) {
        ShowError(program, error);
    }
}

}  // namespace vantrel
