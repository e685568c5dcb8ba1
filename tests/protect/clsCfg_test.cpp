#include "protect/clsCfg.h"

#include "common/error.h"
#include "forms/form.h"
#include "tests/support/error_of.h"
#include "tests/support/faulty_file_system.h"
#include "tests/support/matchers.h"
#include "tests/support/program_fixture.h"

namespace vantrel::test {
namespace {

constexpr const char* kList = "C:\\Vantrel\\Vantrel.Cfg";
constexpr const char* kScratch = "C:\\Vantrel\\Vantrel.Cft";
const std::string kEmptyList =
    ";---------------------------\r\n"
    ";  Quennell Backup Utility  \r\n"
    ";        Version 3.0.6\r\n"
    ";      Copyright  1999      \r\n"
    ";---------------------------\r\n"
    ";  Secure Data Directories  \r\n"
    ";\r\n"
    "\r\n";

class ProtectedList : public ProgramFixture {
  protected:
    void Select(const std::string& path) {
        tree.Select(tree.Add({.text = "folder", .tag = path, .parent = 0, .image = 0}));
    }
    void PutEntries(const std::string& lines) { machine.PutFile(kList, kEmptyList + lines); }

    forms::Form window{program, "Frm_Mainmenu"};
    forms::Tree tree{window, "TV_SecureMode"};
    clsCfg cfg{program};
};

TEST_F(ProtectedList, FreshListHasExactlyEightLinesAndNoEntries) {
    cfg.Create_CFG(kList);
    EXPECT_EQ(machine.Content(kList), kEmptyList);
    EXPECT_THAT(cfg.ReturnProtected(), IsEmpty());
}

TEST_F(ProtectedList, CreateReplacesAnExistingList) {
    PutEntries("C:\\DATA\r\n");
    cfg.Create_CFG(kList);
    EXPECT_EQ(machine.Content(kList), kEmptyList);
}

TEST_F(ProtectedList, CreateReportsUnderTheFileClassesLabel) {
    ExpectReported([&] { cfg.Create_CFG("Q:\\Vantrel.Cfg"); }, "clsFiles:Create_CFG Method",
                   "Device unavailable");
}

TEST_F(ProtectedList, AddAppendsInUpperCaseAndMarksTheNode) {
    PutEntries("");
    Select("C:\\My Directory");
    cfg.Protected_Add(tree);
    EXPECT_EQ(machine.Content(kList), kEmptyList + "C:\\MY DIRECTORY\r\n");
    EXPECT_EQ(tree.At(1).image, 3);
    EXPECT_EQ(tree.At(1).selected_image, 3);
}

TEST_F(ProtectedList, AddBehindALastLineWithoutAnEndIsALineOfItsOwn) {
    for (const char* end : {"", "\n", "\r", "\r\n"}) {
        PutEntries(std::string("C:\\ONE") + end);
        Select("C:\\Two");
        cfg.Protected_Add(tree);
        EXPECT_THAT(cfg.ReturnProtected(), ElementsAre("C:\\ONE", "C:\\TWO"));
    }
}

// The seventh line is skipped by every reader, whatever is in it.
TEST_F(ProtectedList, AddBehindAHeaderWithoutAnEndIsNoPartOfTheHeader) {
    const std::size_t seven_lines = kEmptyList.size() - std::string("\r\n\r\n").size();
    machine.PutFile(kList, kEmptyList.substr(0, seven_lines));
    Select("C:\\Two");
    cfg.Protected_Add(tree);
    EXPECT_THAT(cfg.ReturnProtected(), ElementsAre("C:\\TWO"));
}

// An entry that was cut off would protect nothing, and swallow the next one.
TEST_F(ProtectedList, AddThatIsCutOffLeavesTheListAsItWas) {
    PutEntries("C:\\ONE\r\n");
    const std::string before = machine.Content(kList);
    FaultyFileSystem faulty(machine.files());
    platform::Machine failing = WithFiles(machine.machine(), faulty);
    forms::Program there{failing, desktop, program.globals};
    faulty.plan.Inject(
        {.kind = Call::kWrite, .number = error_number::kDiskFull, .effect = Effect::kShortWrite});
    Select("C:\\Letters");
    EXPECT_THROW(clsCfg(there).Protected_Add(tree), Error);
    EXPECT_EQ(machine.Content(kList), before);
    EXPECT_NE(tree.At(1).image, 3);
}

TEST_F(ProtectedList, CreateMissingLeavesAListThatIsThere) {
    EXPECT_TRUE(cfg.CreateMissing());
    EXPECT_EQ(machine.Content(kList), kEmptyList);
    PutEntries("C:\\ONE\r\n");
    EXPECT_FALSE(cfg.CreateMissing());
    EXPECT_EQ(machine.Content(kList), kEmptyList + "C:\\ONE\r\n");
}

TEST_F(ProtectedList, AddingTwiceLeavesTwoLinesAndOneDeleteRemovesBoth) {
    PutEntries("");
    Select("C:\\Data");
    cfg.Protected_Add(tree);
    cfg.Protected_Add(tree);
    EXPECT_EQ(machine.Content(kList), kEmptyList + "C:\\DATA\r\nC:\\DATA\r\n");
    cfg.Protected_Delete(tree);
    EXPECT_EQ(machine.Content(kList), kEmptyList);
    EXPECT_EQ(tree.At(1).image, 1);
    EXPECT_EQ(tree.At(1).selected_image, 2);
}

TEST_F(ProtectedList, EntryWithBackslashIsReturnedWithoutIt) {
    PutEntries("C:\\DATA\\\r\n\r\nC:\\TWO\r\n");
    EXPECT_THAT(cfg.ReturnProtected(), ElementsAre("C:\\DATA", "C:\\TWO"));
    EXPECT_TRUE(cfg.IsProtected("c:\\data"));
    EXPECT_FALSE(cfg.IsProtected("C:\\DATA\\"));
}

TEST_F(ProtectedList, PrefixOfAnEntryIsNoMatch) {
    PutEntries("C:\\DATA\r\n");
    EXPECT_FALSE(cfg.IsProtected("C:\\DATA\\SUB"));
    EXPECT_FALSE(cfg.IsProtected("C:\\DAT"));
}

TEST_F(ProtectedList, RootMatchesOnlyWithoutItsBackslash) {
    PutEntries("C:\\\r\n");
    EXPECT_TRUE(cfg.IsProtected("C:"));
    EXPECT_FALSE(cfg.IsProtected("C:\\"));
}

TEST_F(ProtectedList, SelectedRootIsNeverRemoved) {
    PutEntries("C:\\\r\n");
    Select("C:\\");
    cfg.Protected_Delete(tree);
    EXPECT_EQ(machine.Content(kList), kEmptyList + "C:\r\n");
}

TEST_F(ProtectedList, DeleteTrimsTheSurvivorsAndKeepsTheEmptyLine) {
    PutEntries("C:\\ONE\\\r\nC:\\TWO\r\nC:\\THREE\\\r\n");
    Select("C:\\Two");
    cfg.Protected_Delete(tree);
    EXPECT_EQ(machine.Content(kList), kEmptyList + "C:\\ONE\r\nC:\\THREE\r\n");
    EXPECT_FALSE(machine.Exists(kScratch));
}

TEST_F(ProtectedList, DeleteRemovesALeftScratchFileFirst) {
    PutEntries("C:\\ONE\r\n");
    machine.PutFile(kScratch, "left over");
    Select("C:\\Other");
    cfg.Protected_Delete(tree);
    EXPECT_EQ(machine.Content(kList), kEmptyList + "C:\\ONE\r\n");
    EXPECT_FALSE(machine.Exists(kScratch));
}

TEST_F(ProtectedList, HeaderIsSkippedUnread) {
    machine.PutFile(kList, "1\r\n2\r\n3\r\n4\r\n5\r\n6\r\nC:\\SEVEN\r\nC:\\EIGHT\r\n");
    EXPECT_THAT(cfg.ReturnProtected(), ElementsAre("C:\\EIGHT"));
    EXPECT_FALSE(cfg.IsProtected("C:\\SEVEN"));
}

TEST_F(ProtectedList, MissingListIsAnErrorNotAnAnswer) {
    for (const auto& question : std::vector<std::function<void()>>{
             [&] { cfg.IsProtected("C:\\DATA"); }, [&] { cfg.ReturnProtected(); }}) {
        EXPECT_EQ(ErrorOf([&] { question(); }), error_number::kFileNotFound);
    }
}

TEST_F(ProtectedList, LettersOutsideAsciiCompareByTheSystemsUpperCase) {
    PutEntries(
        "C:\\\xDC"
        "BUNG\r\n");
    EXPECT_TRUE(
        cfg.IsProtected("C:\\\xC3\xBC"
                        "bung"));
}

}  // namespace
}  // namespace vantrel::test
