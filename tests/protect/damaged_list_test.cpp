// Lists of protected folders that are shorter than their header, which are damaged, and odd ones
// that are not.

#include <functional>

#include "common/error.h"
#include "forms/form.h"
#include "protect/clsCfg.h"
#include "protect/folder_tree.h"
#include "tests/support/error_of.h"
#include "tests/support/matchers.h"
#include "tests/support/program_fixture.h"

namespace vantrel::test {
namespace {

constexpr const char* kList = "C:\\Vantrel\\Vantrel.Cfg";
constexpr const char* kScratch = "C:\\Vantrel\\Vantrel.Cft";
constexpr const char* kDamaged = "Input past end of file: C:\\Vantrel\\Vantrel.Cfg";

std::string HeaderLines(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += ";\r\n";
    }
    return text;
}

// The same without the end of the last line.
std::string OpenHeaderLines(int count) {
    const std::string text = HeaderLines(count);
    return text.substr(0, text.size() - 2);
}

// A header and so many entries that the list has a megabyte.
std::string Megabyte() {
    std::string text = HeaderLines(7) + "\r\n";
    while (text.size() < (1u << 20)) {
        text += "C:\\FOLDER NO " + std::to_string(text.size()) + "\r\n";
    }
    return text;
}

class ListTest : public ProgramFixture {
  protected:
    ListTest() { tree.Select(tree.Add({.text = "Letters", .tag = "C:\\Letters", .parent = 0})); }

    std::vector<std::function<void()>> Operations() {
        return {[this] { cfg.ReturnProtected(); }, [this] { cfg.IsProtected("C:\\LETTERS"); },
                [this] { cfg.UpperEntries(); }, [this] { cfg.Protected_Add(tree); },
                [this] { cfg.Protected_Delete(tree); }};
    }

    forms::Form window{program, "Frm_Mainmenu"};
    forms::Tree tree{window, "TV_SecureMode"};
    forms::Panel progress{window, "SSP_ProgressSecure"};
    clsCfg cfg{program};
};

struct Row {
    const char* what;
    std::string list;
};

std::ostream& operator<<(std::ostream& out, const Row& row) { return out << row.what; }

const Row kDamagedLists[] = {
    {"NoByte", ""},
    {"OneLine", HeaderLines(1)},
    {"TwoLines", HeaderLines(2)},
    {"ThreeLines", HeaderLines(3)},
    {"FourLines", HeaderLines(4)},
    {"FiveLines", HeaderLines(5)},
    {"SixLines", HeaderLines(6)},
    {"SixLinesTheLastOpen", OpenHeaderLines(6)},
    {"OneLineEndOnly", "\r\n"},
    {"EntriesWithoutAHeader", "C:\\LETTERS\r\nC:\\DATA\r\n"},
    {"NulsOfAFreshList", std::string(150, '\0')},
    {"MegabyteOfNuls", std::string(1u << 20, '\0')},
};

class DamagedList : public ListTest, public ::testing::WithParamInterface<Row> {
  protected:
    DamagedList() { machine.PutFile(kList, GetParam().list); }
};

TEST_P(DamagedList, EveryOperationRaisesAnErrorThatNamesTheFile) {
    for (const auto& operation : Operations()) {
        const Error error = RaisedBy([&] { operation(); });
        EXPECT_EQ(error.number(), error_number::kPastEnd);
        EXPECT_EQ(error.description(), kDamaged);
    }
}

TEST_P(DamagedList, NothingIsWrittenAndTheNodeKeepsItsPicture) {
    machine.PutFile(kScratch, "left over");
    const auto before = machine.Names("C:\\Vantrel");
    for (const auto& operation : Operations()) {
        EXPECT_THROW(operation(), Error);
    }
    EXPECT_EQ(machine.Content(kList), GetParam().list);
    EXPECT_EQ(machine.Names("C:\\Vantrel"), before);
    EXPECT_EQ(tree.At(1).image, 0);
}

TEST_P(DamagedList, StaysWhereAMissingOneWouldBeMade) {
    EXPECT_FALSE(cfg.CreateMissing());
    EXPECT_EQ(machine.Content(kList), GetParam().list);
}

TEST_P(DamagedList, IsReportedWhileTheTreeIsRead) {
    ExpectReported([&] { Create_DirectoryStructure(tree, progress, "C:\\", ""); },
                   "clsFiles:Create_DirectoryStructure Method", kDamaged);
}

INSTANTIATE_TEST_SUITE_P(Rows, DamagedList, ::testing::ValuesIn(kDamagedLists),
                         [](const auto& row) { return row.param.what; });

const Row kListsWithoutEntries[] = {
    {"SevenLines", HeaderLines(7)},
    {"SevenLinesTheLastOpen", OpenHeaderLines(7)},
    {"EightLines", HeaderLines(7) + "\r\n"},
    {"SevenLinesWithBareLineFeeds", ";\n;\n;\n;\n;\n;\n;\n"},
    {"SevenEmptyLines", "\r\n\r\n\r\n\r\n\r\n\r\n\r\n"},
};

class ListWithoutEntries : public ListTest, public ::testing::WithParamInterface<Row> {
  protected:
    ListWithoutEntries() { machine.PutFile(kList, GetParam().list); }
};

TEST_P(ListWithoutEntries, ProtectsNothing) {
    EXPECT_THAT(cfg.ReturnProtected(), IsEmpty());
    EXPECT_FALSE(cfg.IsProtected("C:\\LETTERS"));
}

TEST_P(ListWithoutEntries, TakesAnEntryAndGivesItBack) {
    cfg.Protected_Add(tree);
    EXPECT_THAT(cfg.ReturnProtected(), ElementsAre("C:\\LETTERS"));
    cfg.Protected_Delete(tree);
    EXPECT_THAT(cfg.ReturnProtected(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Rows, ListWithoutEntries, ::testing::ValuesIn(kListsWithoutEntries),
                         [](const auto& row) { return row.param.what; });

TEST_F(ListTest, MegabyteOfEntriesIsReadAndEdited) {
    machine.PutFile(kList, Megabyte());
    const auto before = cfg.ReturnProtected();
    EXPECT_THAT(before, SizeIs(::testing::Gt(40000u)));
    EXPECT_TRUE(cfg.IsProtected(before.back()));
    cfg.Protected_Add(tree);
    EXPECT_THAT(cfg.ReturnProtected(), SizeIs(before.size() + 1));
    EXPECT_EQ(cfg.ReturnProtected().back(), "C:\\LETTERS");
    cfg.Protected_Delete(tree);
    EXPECT_EQ(cfg.ReturnProtected(), before);
}

}  // namespace
}  // namespace vantrel::test
