// The three lists of the machine's content: drives, folders of a path, files of a folder. A value
// that does not exist raises an error and leaves the list unchanged; the lists show no message.
#pragma once

#include <string>
#include <vector>

#include "common/error.h"
#include "forms/control.h"
#include "forms/lists.h"
#include "forms/program.h"
#include "platform/machine.h"

namespace vantrel::forms {

// All drives of the machine, entries "c: [LABEL]" ("c:" without a label).
class DriveList : public Control {
  public:
    DriveList(Form& owner, std::string name);
    Event Change;
    // The selected entry, "" when no drive could be selected. A new list shows the drive of the
    // application folder.
    std::string Drive() const;
    // Takes the drive of `drive`'s first letter and colon. Error 68, which names `drive`, for
    // anything else ("\" and network paths too), a drive that does not exist or one that is not
    // ready. A drive that was connected after the list was read is found.
    void SetDrive(const std::string& drive);
    const std::vector<std::string>& Entries() const { return entries_; }
    int Index() const { return index_; }
    // By the user; errors of the handlers travel to the caller.
    void UserChoose(int index);
    // Reads the drives anew, as when the user opens the list. The selected one stays the value,
    // also when it has gone.
    void Reload();

  private:
    int IndexOf(const std::string& root) const;  // -1 when it is not listed
    std::vector<std::string> entries_;
    int index_ = -1;
};

// The folders from the root down to the current folder, and the folders in it.
class FolderList : public Control {
  public:
    FolderList(Form& owner, std::string name);
    Event Change;
    // The current folder: "\" at its end only at a root, drive letter in upper case. A new list
    // shows the application folder.
    const std::string& Path() const { return path_; }
    // Goes to a folder ("C:" and entries of a drive list mean that drive's root; a path that begins
    // with one "\" is on the application's drive). Error 76, which names `path`, when it is not
    // there. Change is raised when the folder becomes a different one (case and a last "\" aside).
    void SetPath(const std::string& path);
    // The chain from the root to the current folder; then, one level deeper, its sub-folders.
    struct Entry {
        std::string name;   // as shown
        std::string path;   // full path
        int depth = 0;      // 0 for the root
        bool open = false;  // part of the chain
    };
    const std::vector<Entry>& Entries() const { return entries_; }
    // Double click or Enter on an entry. One that is gone meanwhile leaves the path as it is, and
    // the list shows what is still there; the error is for Refused or, without one, for the caller.
    void UserOpen(int index);
    std::function<void(const Error&)> Refused;
    void Reload();

  private:
    bool Enter(const std::string& path);  // true for another folder than before
    void Refuse(const Error& error);
    void Fill();
    std::string path_;
    std::vector<Entry> entries_;
};

// A folder list's reading of many folders, one after the other. Meanwhile only painting and the Esc
// key are served, and no handler runs; Esc stops the reading.
class FolderReading {
  public:
    explicit FolderReading(Program& program) : program_(program) {}
    // As a folder list shows them (SubFolders in folder_path.h): those found before the reading was
    // stopped, nothing afterwards.
    std::vector<std::string> SubFolders(const std::string& path);
    bool WasStopped() const { return was_stopped_; }

  private:
    bool KeepReading();

    Program& program_;
    bool was_stopped_ = false;
};

// The files of a folder that match a pattern: plain ones, neither hidden nor system, sorted. A new
// list shows the application folder.
class FileList : public List {
  public:
    FileList(Form& owner, std::string name, std::string pattern);
    std::function<void(int button)> MouseDown;  // 2: right button, or the menu key
    const std::string& Path() const { return path_; }
    void SetPath(const std::string& path);  // paths and error as for a folder list
    void SetPattern(const std::string& pattern);
    std::string FileName() const { return Text(); }
    void Reload();  // reads the folder again; nothing is selected afterwards
    void UserMouseDown(int button) { Raise(MouseDown, button); }

  private:
    std::string path_;
    std::string pattern_;
};

}  // namespace vantrel::forms
