// The main window with its INI Edit tab shown, and sets to edit.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/support/program_fixture.h"
#include "ui/Frm_Mainmenu.h"

namespace vantrel::test {

class EditorFixture : public ProgramFixture {
  protected:
    EditorFixture() { MakeSourceAndDestination(); }

    // With the INI Edit tab in front.
    EditTab& Open() {
        window = std::make_unique<Frm_Mainmenu>(program);
        desktop.Load(*window);
        window->TAB_Backup.SetTab(2);
        return window->Edit;
    }
    EditTab& Tab() { return window->Edit; }
    static std::string PathOf(const std::string& name) { return "C:\\Vantrel\\" + name; }

    std::vector<std::string> Listed() const {
        std::vector<std::string> names;
        for (int i = 0; i < window->Edit.Fil_INI.Count(); ++i) {
            names.push_back(window->Edit.Fil_INI.Item(i));
        }
        return names;
    }
    static std::vector<std::string> EntriesOf(const forms::ComboBox& combo) {
        std::vector<std::string> names;
        for (int i = 0; i < combo.Count(); ++i) {
            names.push_back(combo.Item(i));
        }
        return names;
    }
    // Picks a file of the list, as a click does.
    void Pick(const std::string& name) {
        auto& list = window->Edit.Fil_INI;
        for (int i = 0; i < list.Count(); ++i) {
            if (list.Item(i) == name) {
                return list.SetIndex(i);
            }
        }
        ADD_FAILURE() << name << " is not listed";
    }
    // A valid set's text, as the editor shows it, with one value of its own.
    static std::string TextWithName(const std::string& archive) {
        std::string text = SetText({.name = archive});
        text.erase(text.size() - 2);  // the editor shows no line end after the last line
        return text;
    }
    void PickAndType(const std::string& name, const std::string& text) {
        Pick(name);
        window->Edit.Fld_INI.UserType(text);
    }

    std::unique_ptr<Frm_Mainmenu> window;
};

}  // namespace vantrel::test
