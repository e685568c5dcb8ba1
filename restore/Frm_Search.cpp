#include "restore/Frm_Search.h"

namespace vantrel {

// It has the controls of the restore window, and so its dialog; the two are never open together.
Frm_Search::Frm_Search(forms::Program& program, zip::PKUNZIP& component)
    : ProgressWindow(program, "Frm_Restore", "Lbl_RestorePath", "Restore"), component_(component) {
    SetCaption("Searching for Files...");
    path_label_.SetCaption("Please Wait...  Searching the Archive");
    component_.OverallProgress = [this](std::int32_t& percent, bool& cancel) {
        OverallProgress(percent, cancel);
    };
    component_.FileProgress = [this](std::int32_t& percent) { FileProgress(percent); };
    component_.Message = [this](const zip::ComponentMessage& message) {
        path_label_.SetCaption(message.text);
    };
    component_.questions = this;
}

Frm_Search::~Frm_Search() {
    component_.OverallProgress = nullptr;
    component_.FileProgress = nullptr;
    component_.Message = nullptr;
    component_.questions = nullptr;
}

void Frm_Search::Form_Activate() {
    component_.Set(zip::unzip_id::kAction, zip::unzip_id::kActionSearch);
    SetTaskProgress(kNoTaskProgress);
    program().desktop.Unload(*this);
}

void Frm_Search::Cmd_Ok_Click() { program().desktop.Unload(*this); }

bool ConfirmSearch(forms::Desktop& desktop, const std::string& path) {
    return desktop.Show(
               {.text = "The list of files in this archive is damaged or missing:\r\n" + path +
                        "\r\n\r\nPress Search to read the archive and find every file that "
                        "is intact. This can take as long as a restore.",
                .buttons = forms::Buttons::kSearchCancel,
                .icon = forms::Icon::kExclamation,
                .title = "Restore"}) == forms::Answer::kSearch;
}

}  // namespace vantrel
