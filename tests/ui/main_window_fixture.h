// A program with its main window, which a test loads when its machine is ready.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "backupset/clsINI.h"
#include "tests/support/program_fixture.h"
#include "ui/Frm_Mainmenu.h"

namespace vantrel::test {

class MainWindowFixture : public ProgramFixture {
  protected:
    Frm_Mainmenu& LoadWindow() {
        window = std::make_unique<Frm_Mainmenu>(program);
        desktop.Load(*window);
        return *window;
    }
    BackupTab& Backup() { return window->Backup; }

    static std::string PathOf(const std::string& set) { return "C:\\Vantrel\\" + set; }
    std::string StoredSource(const std::string& name) {
        clsINI set(program);
        set.Read_INI(PathOf(name));
        return set.BackupFiles();
    }
    static std::vector<std::string> EntriesOf(const forms::List& list) {
        std::vector<std::string> names;
        for (int i = 0; i < list.Count(); ++i) {
            names.push_back(list.Item(i));
        }
        return names;
    }

    std::unique_ptr<Frm_Mainmenu> window;
};

}  // namespace vantrel::test
