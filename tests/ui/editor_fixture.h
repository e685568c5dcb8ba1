// The main window with its INI Edit tab shown, and sets to edit.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/ui/main_window_fixture.h"

namespace vantrel::test {

class EditorFixture : public MainWindowFixture {
  protected:
    EditorFixture() { MakeSourceAndDestination(); }

    // With the INI Edit tab in front.
    EditTab& Open() {
        LoadWindow();
        window->TAB_Backup.SetTab(2);
        return window->Edit;
    }
    EditTab& Tab() { return window->Edit; }

    std::vector<std::string> Listed() const {
        std::vector<std::string> names;
        for (int i = 0; i < window->Edit.Fil_INI.Count(); ++i) {
            names.push_back(window->Edit.Fil_INI.Item(i));
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
};

}  // namespace vantrel::test
