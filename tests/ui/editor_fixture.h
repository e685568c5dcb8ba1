// The main window with its INI Edit tab shown, and sets to edit.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
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

    std::vector<std::string> Listed() const { return EntriesOf(window->Edit.Fil_INI); }
    // Picks a file of the list, as a click does.
    void Pick(const std::string& name) {
        const std::vector<std::string> names = Listed();
        const auto found = std::find(names.begin(), names.end(), name);
        ASSERT_NE(found, names.end()) << name;
        window->Edit.Fil_INI.SetIndex(static_cast<int>(found - names.begin()));
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
