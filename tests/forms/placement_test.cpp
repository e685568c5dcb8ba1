#include "forms/placement.h"

#include <gtest/gtest.h>

#include "common/error.h"
#include "tests/support/program_fixture.h"

namespace vantrel::test {

namespace {

using forms::Area;
using forms::Centered;
using forms::OnScreen;
using forms::Placement;
using forms::Resized;

const Area kScreen{0, 0, 1280, 984};
const Area kSecondScreen{1280, 0, 2880, 1200};
constexpr const char* kKey = "Startup/Frm_Mainmenu Placement";

TEST(Resized, ControlWithoutAnchorsStaysAsDesigned) {
    EXPECT_EQ((Area{10, 20, 110, 40}), Resized({10, 20, 110, 40}, {}, 300, 200));
}

TEST(Resized, ControlOfTheDesignedWindowStaysAsDesigned) {
    EXPECT_EQ((Area{10, 20, 110, 40}), Resized({10, 20, 110, 40}, {50, 100, 100, 100}, 0, 0));
}

TEST(Resized, EdgesMoveByTheirShares) {
    EXPECT_EQ((Area{10, 20, 410, 240}), Resized({10, 20, 110, 40}, {0, 0, 100, 100}, 300, 200));
    EXPECT_EQ((Area{310, 220, 410, 240}),
              Resized({10, 20, 110, 40}, {100, 100, 100, 100}, 300, 200));
    EXPECT_EQ((Area{160, 20, 410, 40}), Resized({10, 20, 110, 40}, {50, 0, 100, 0}, 300, 200));
}

TEST(Resized, NeighboursKeepTheirDistanceForEveryExtraWidth) {
    for (int extra = 0; extra < 200; ++extra) {
        const Area left = Resized({0, 0, 50, 10}, {0, 0, 25, 0}, extra, 0);
        const Area right = Resized({54, 0, 90, 10}, {25, 0, 100, 0}, extra, 0);
        EXPECT_EQ(4, right.left - left.right) << extra;
        EXPECT_EQ(90 + extra, right.right) << extra;
    }
}

TEST(PlacementText, IsReadAsItWasWritten) {
    for (const Placement& each :
         {Placement{{-300, 10, 500, 610}, 96, false}, Placement{{0, 0, 1, 1}, 192, true}}) {
        EXPECT_EQ(each, forms::PlacementFrom(ToText(each)));
    }
}

TEST(PlacementText, AnythingElseIsNoPlacement) {
    for (const char* text : {"", "Nil", "1 2 3 4 96", "1 2 3 4 96 minimized", "1 2 3 4 96 normal ",
                             " 1 2 3 4 96 normal", "1 2 3 4 96 normal 5", "1 2 1 4 96 normal",
                             "1 2 3 2 96 normal", "1 2 3 4 0 normal", "1 2 3 4 -96 normal",
                             "1 2 3 4 100000 normal", "1 2 3 999999999999 96 normal",
                             "-2147483648 2 2147483647 4 96 normal", "a b c d e normal"}) {
        EXPECT_EQ(std::nullopt, forms::PlacementFrom(text)) << text;
    }
}

TEST(OnScreen, WindowInsideAScreenStays) {
    const Area window{1300, 100, 1900, 500};
    EXPECT_EQ(window, OnScreen(window, {kScreen, kSecondScreen}));
}

TEST(OnScreen, WindowOfAScreenThatIsGoneComesToTheMainScreen) {
    EXPECT_EQ((Area{680, 100, 1280, 500}), OnScreen({1300, 100, 1900, 500}, {kScreen}));
    EXPECT_EQ((Area{0, 0, 600, 400}), OnScreen({-3000, -2000, -2400, -1600}, {kScreen}));
}

TEST(OnScreen, WindowAcrossTwoScreensMovesIntoTheOneThatShowsMoreOfIt) {
    EXPECT_EQ((Area{1280, 100, 1880, 500}),
              OnScreen({1200, 100, 1800, 500}, {kScreen, kSecondScreen}));
    EXPECT_EQ((Area{680, 100, 1280, 500}),
              OnScreen({800, 100, 1400, 500}, {kScreen, kSecondScreen}));
}

TEST(OnScreen, WindowThatIsTooLargeFillsTheScreenFromItsUpperLeftCorner) {
    EXPECT_EQ(kScreen, OnScreen({-100, -100, 3000, 3000}, {kScreen}));
    EXPECT_EQ((Area{100, 0, 700, 984}), OnScreen({100, 50, 700, 2000}, {kScreen}));
}

TEST(OnScreen, WithoutAnyScreenNothingIsCorrected) {
    const Area window{-5, -5, 10, 10};
    EXPECT_EQ(window, OnScreen(window, {}));
}

TEST(Centered, MiddlesMeet) {
    EXPECT_EQ((Area{40, 20, 60, 30}), Centered({0, 0, 20, 10}, {0, 0, 100, 50}));
    EXPECT_EQ((Area{-50, -25, 150, 75}), Centered({7, 7, 207, 107}, {0, 0, 100, 50}));
}

class StoredPlacements : public ProgramFixture {
  protected:
    const Placement placement{{10, 20, 810, 620}, 144, true};
};

TEST_F(StoredPlacements, ComeBackAsTheyWereStored) {
    StorePlacement(program, "Frm_Mainmenu", placement);
    EXPECT_EQ("10 20 810 620 144 maximized", machine.settings.values[kKey]);
    EXPECT_EQ(placement, forms::StoredPlacement(program, "Frm_Mainmenu"));
    EXPECT_EQ(std::nullopt, forms::StoredPlacement(program, "Frm_Backup"));
}

TEST_F(StoredPlacements, AreNeitherReadNorWrittenByAnUnattendedRun) {
    machine.settings.values[kKey] = ToText(placement);
    Unattended("DAILY.INI");
    StorePlacement(program, "Frm_Mainmenu", {});
    EXPECT_EQ(std::nullopt, forms::StoredPlacement(program, "Frm_Mainmenu"));
    EXPECT_EQ(0, machine.settings.reads);
    EXPECT_EQ(0, machine.settings.writes);
}

TEST_F(StoredPlacements, StoreThatCannotBeWrittenRaisesNothing) {
    machine.settings.on_write = [] {
        throw Error(error_number::kPermissionDenied, "Settings", "");
    };
    StorePlacement(program, "Frm_Mainmenu", placement);
    EXPECT_EQ(1, machine.settings.writes);
    EXPECT_EQ(std::nullopt, forms::StoredPlacement(program, "Frm_Mainmenu"));
}

}  // namespace

}  // namespace vantrel::test
