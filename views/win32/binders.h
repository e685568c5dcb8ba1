// What MakeBinder chooses from, a function for each kind of control.
#pragma once

#include "forms/controls.h"
#include "forms/file_lists.h"
#include "forms/lists.h"
#include "forms/tree.h"
#include "views/win32/binder.h"

namespace vantrel::views {

using OwnedBinder = std::unique_ptr<Binder>;

OwnedBinder BindLabel(WindowView& window, forms::Label& label, HWND handle, int id);
OwnedBinder BindButton(WindowView& window, forms::Button& button, HWND handle, int id);
OwnedBinder BindCheckBox(WindowView& window, forms::CheckBox& box, HWND handle, int id);
OwnedBinder BindFrame(WindowView& window, forms::Frame& frame, HWND handle, int id);
OwnedBinder BindPicture(WindowView& window, forms::Picture& picture, HWND handle, int id);
OwnedBinder BindStatusBar(WindowView& window, forms::StatusBar& bar, HWND handle, int id);
OwnedBinder BindProgressBar(WindowView& window, forms::ProgressBar& bar, HWND handle, int id);
OwnedBinder BindPanel(WindowView& window, forms::Panel& panel, HWND handle, int id);
OwnedBinder BindAnimation(WindowView& window, forms::Animation& clip, HWND handle, int id);
OwnedBinder BindTextBox(WindowView& window, forms::TextBox& box, HWND handle, int id);
OwnedBinder BindTabs(WindowView& window, forms::Tabs& tabs, HWND handle, int id);
OwnedBinder BindComboBox(WindowView& window, forms::ComboBox& combo, HWND handle, int id);
OwnedBinder BindListBox(WindowView& window, forms::ListBox& list, HWND handle, int id);
OwnedBinder BindDriveList(WindowView& window, forms::DriveList& list, HWND handle, int id);
OwnedBinder BindFolderList(WindowView& window, forms::FolderList& list, HWND handle, int id);
OwnedBinder BindFileList(WindowView& window, forms::FileList& list, HWND handle, int id);
OwnedBinder BindTree(WindowView& window, forms::Tree& tree, HWND handle, int id);
OwnedBinder BindMenu(WindowView& window, forms::MenuItem& item, int id);
OwnedBinder BindTimer(WindowView& window, forms::Timer& timer);

}  // namespace vantrel::views
