// What the tests of the dialogs of a set share: a set that is selected, and what was shown.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "backupset/clsINI.h"
#include "tests/backup/selected_set.h"
#include "tests/support/program_fixture.h"

namespace vantrel::test {

class DialogTest : public ProgramFixture {
  protected:
    DialogTest() { MakeSourceAndDestination(); }
    void Select(const SetValues& set) {
        PutSet("WEEKLY.INI", set);
        window.Cmb_BackupSet.Add("WEEKLY.INI");
        window.Cmb_BackupSet.SetText("WEEKLY.INI");
        window.Fld_BackupWhere.SetCaption(set.to_drive);
    }
    clsINI Stored() {
        clsINI set(program);
        set.Read_INI("C:\\Vantrel\\WEEKLY.INI");
        return set;
    }
    void ExpectBox(const std::string& text, forms::Icon icon, const std::string& title) {
        ASSERT_EQ(desktop.boxes.size(), 1u);
        EXPECT_EQ(desktop.boxes[0].text, text);
        EXPECT_EQ(desktop.boxes[0].icon, icon);
        EXPECT_EQ(desktop.boxes[0].title, title);
    }
    SelectedSet window{program};
};

}  // namespace vantrel::test
