// A drive that comes while the window with the list is open.
#include <algorithm>

#include "tests/support/test_machine.h"
#include "tests/views/windows_under_test.h"

namespace vantrel::test {

namespace {

// The drives of a machine, one of which is not there until it is plugged in.
class PluggedIn : public platform::Drives {
  public:
    PluggedIn(platform::Drives& behind, std::string late)
        : behind_(behind), late_(std::move(late)) {}
    bool plugged_in = false;

    int Type(const std::string& root) override {
        const bool there = plugged_in || root != late_;
        return there ? behind_.Type(root) : platform::drive_type::kNoRoot;
    }
    platform::DiskSpace Space(const std::string& root) override { return behind_.Space(root); }
    std::uint64_t FreeBytes(const std::string& folder) override {
        return behind_.FreeBytes(folder);
    }
    std::string Label(const std::string& root) override { return behind_.Label(root); }

  private:
    platform::Drives& behind_;
    std::string late_;
};

class LateDrive : public ::testing::Test {
  protected:
    LateDrive() {
        program.desktop.ShowModeless(window);
        list.SetDrive(under_test->WorkDrive());
        window.happened.clear();
    }
    ~LateDrive() override { program.desktop.Unload(window); }
    std::string Late() const {
        return {static_cast<char>(std::tolower(under_test->OtherDrive()[0])), ':'};
    }
    // Where an entry stands that begins so; as many as there are when none does.
    static int IndexIn(const Lines& entries, const std::string& start) {
        const auto found = std::find_if(entries.begin(), entries.end(), [&](const auto& entry) {
            return entry.starts_with(start);
        });
        return static_cast<int>(found - entries.begin());
    }

    std::unique_ptr<MachineUnderTest> under_test = NewMachineUnderTest();
    std::unique_ptr<ControlUser> user = NewControlUser();
    PluggedIn drives{under_test->machine().drives, under_test->OtherDrive() + "\\"};
    platform::Machine machine = With({.drives = &drives}, under_test->machine());
    forms::Program program{machine, user->desktop()};
    WhereWindow window{program};
    forms::DriveList& list = window.Dri_DriveList;
};

TEST_F(LateDrive, IsThereToBeChosenWhenTheListIsOpened) {
    const Lines before = user->Items(list);
    ASSERT_EQ(static_cast<int>(before.size()), IndexIn(before, Late()));
    drives.plugged_in = true;
    forms::Form nowhere(program, "Frm_Test");
    const forms::DriveList fresh(nowhere, "Dri_Fresh");
    user->Choose(list, IndexIn(fresh.Entries(), Late()));
    EXPECT_EQ(fresh.Entries(), user->Items(list));
    ASSERT_EQ(1u, window.happened.size());
    EXPECT_TRUE(window.happened[0].starts_with("Dri_DriveList Change " + Late()));
    EXPECT_TRUE(user->Text(list).starts_with(Late()));
    EXPECT_EQ(list.Index(), user->Highlighted(list));
}

TEST_F(LateDrive, IsTakenAndShownWhenTheProgramGoesThere) {
    drives.plugged_in = true;
    list.SetDrive(under_test->OtherDrive());
    EXPECT_EQ(list.Entries(), user->Items(list));
    EXPECT_TRUE(user->Text(list).starts_with(Late()));
    EXPECT_EQ(list.Index(), user->Highlighted(list));
}

TEST_F(LateDrive, ThatGoesAgainStaysTheChosenOne) {
    drives.plugged_in = true;
    list.SetDrive(under_test->OtherDrive());
    window.happened.clear();
    drives.plugged_in = false;
    list.Reload();
    EXPECT_TRUE(window.happened.empty());
    EXPECT_TRUE(user->Text(list).starts_with(Late()));
    EXPECT_EQ(list.Index(), user->Highlighted(list));
}

}  // namespace

}  // namespace vantrel::test
