// The INI Edit tab: the set files, and the text of one of them.
#pragma once

#include "forms/controls.h"
#include "forms/file_lists.h"
#include "forms/form.h"

namespace vantrel {

struct EditTab {
    explicit EditTab(forms::Form& window);
    forms::Frame Fra_INIFileList;
    forms::Label Lbl_INIEdit;
    forms::FileList Fil_INI;
    forms::Button Cmd_INIRefresh;
    forms::Frame Fra_INIEdit;
    forms::Label Lbl_INIContents;
    forms::TextBox Fld_INI;
    forms::Button Cmd_Save;
};

}  // namespace vantrel
