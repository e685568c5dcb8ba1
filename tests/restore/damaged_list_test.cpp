// A restore while the list of protected folders is damaged: it must not be taken for an empty one.

#include "common/error.h"
#include "tests/restore/restore_tab_fixture.h"
#include "tests/support/error_of.h"
#include "tests/support/matchers.h"

namespace vantrel::test {
namespace {

struct Row {
    const char* what;
    std::string list;
};

std::ostream& operator<<(std::ostream& out, const Row& row) { return out << row.what; }

class RestoreWithList : public RestoreTabTest, public ::testing::WithParamInterface<Row> {
  protected:
    RestoreWithList() {
        Archive();
        machine.PutFile("C:\\RESTORE\\Sub\\b.txt", "newer work");
        tab.Fld_RestoreTo.SetCaption("C:\\RESTORE");
        machine.PutFile(clsCfg(program).ListPath(), GetParam().list);
        Browse(kArchive);
    }
};

class RestoreWithDamagedList : public RestoreWithList {};
class RestoreWithOddList : public RestoreWithList {};

TEST_P(RestoreWithDamagedList, EndsTheProgramBeforeAnythingIsOverwritten) {
    const Error error = RaisedBy([&] { Restore(); });
    EXPECT_EQ(error.number(), error_number::kPastEnd);
    EXPECT_EQ(error.description(), "Input past end of file: C:\\Vantrel\\Vantrel.Cfg");
    EXPECT_THAT(desktop.happened, Not(Contains("load Frm_Restore")));
    EXPECT_EQ(machine.Content("C:\\RESTORE\\Sub\\b.txt"), "newer work");
    EXPECT_FALSE(machine.Exists("C:\\RESTORE\\a.txt"));
    EXPECT_FALSE(machine.Exists("C:\\RESTORE\\SUB_001"));
    EXPECT_EQ(machine.Content(clsCfg(program).ListPath()), GetParam().list);
    EXPECT_THAT(LogRecords(), IsEmpty());
}

// Whether folders are protected decides which window asks for the archive; a damaged list does not
// say.
TEST_P(RestoreWithDamagedList, EndsTheProgramAlsoWithoutAnArchive) {
    machine.files().RemoveFile(kArchive);
    desktop.answers = {forms::Answer::kCancel};
    PressOkWhenIdle();
    EXPECT_THROW(tab.actions.Cmd_Restore_Click(), Error);
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

const Row kDamagedLists[] = {
    {"NoByte", ""},
    {"ThreeLines", ";\r\n;\r\n;\r\n"},
    {"SixLines", ";\r\n;\r\n;\r\n;\r\n;\r\n;\r\n"},
    {"EntryWithoutAHeader", "C:\\RESTORE\\SUB\r\n"},
    {"Nuls", std::string(150, '\0')},
    {"MegabyteOfNuls", std::string(1u << 20, '\0')},
};

INSTANTIATE_TEST_SUITE_P(Rows, RestoreWithDamagedList, ::testing::ValuesIn(kDamagedLists),
                         [](const auto& row) { return row.param.what; });

TEST_P(RestoreWithOddList, RenamesTheProtectedFolder) {
    Restore();
    EXPECT_EQ(machine.Content("C:\\RESTORE\\Sub\\b.txt"), "beta");
    EXPECT_EQ(machine.Content("C:\\RESTORE\\SUB_001\\b.txt"), "newer work");
}

const Row kOddLists[] = {
    {"EntryWithoutALineEnd", ";\r\n;\r\n;\r\n;\r\n;\r\n;\r\n;\r\nC:\\RESTORE\\SUB"},
    {"MegabyteOfEmptyLines", std::string(1u << 20, '\n') + "C:\\RESTORE\\SUB\r\n"},
};

INSTANTIATE_TEST_SUITE_P(Rows, RestoreWithOddList, ::testing::ValuesIn(kOddLists),
                         [](const auto& row) { return row.param.what; });

}  // namespace
}  // namespace vantrel::test
