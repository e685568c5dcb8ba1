// The text of the main window's status bar: the state of the shown tab and the next step. Plain
// values in, text out. Composing it reads no disk and no file, so it is done after every event of
// the window; the facts that need a disk are collected by ReadSetFacts (ui/set_facts.h) and
// FindLastRun (ui/last_run.h) at the moments that these name.
#pragma once

#include <cstdint>
#include <string>

#include "common/display_text.h"
#include "ui/last_run.h"
#include "ui/set_facts.h"

namespace vantrel {

// As in the tab control, from the left.
enum class Tab { kBackup, kRestore, kEdit, kLog, kSecureData, kAbout };

struct BackupStatus {
    int sets = 0;     // listed
    std::string set;  // selected, "" for none
    bool is_locked = true;
    SetFacts facts;
};

struct RestoreStatus {
    std::string archive;  // "" for none
    bool is_reading = false;
    int entries = 0;  // listed
    std::uint64_t bytes = 0;
    std::string destination;  // "" for none
};

struct EditStatus {
    int sets = 0;      // listed
    std::string file;  // shown, "" for none
    bool has_text = false;
    bool is_unsaved = false;
};

struct SecureStatus {
    std::string drive;  // "D:\"
    int folders = 0;    // read
    bool is_reading = false;
    bool was_stopped = false;  // by Esc, so that folders are missing
    std::string folder;        // selected, "" for none
    bool is_protected = false;
};

struct MainStatus {
    Tab tab = Tab::kBackup;
    BackupStatus backup;
    RestoreStatus restore;
    EditStatus edit;
    LastRun last_run;
    SecureStatus secure;
    NumberFormat numbers;
};

struct StatusLine {
    std::string text;
    // The part of `text` that may be shortened in its middle where the bar is too narrow; "" for
    // none.
    std::string path{};
};

// For the shown tab.
StatusLine StatusText(const MainStatus& status);

}  // namespace vantrel
