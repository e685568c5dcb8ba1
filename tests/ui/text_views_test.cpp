#include "ui/text_views.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/error.h"
#include "tests/support/faulty_file_system.h"
#include "tests/support/program_fixture.h"
#include "tests/support/redraw_watch.h"

namespace vantrel::test {
namespace {

class TextViews : public ProgramFixture {
  protected:
    // What both viewers make of a file with these bytes.
    std::string Lines(const std::string& bytes) {
        machine.PutFile("C:\\Vantrel\\A.INI", bytes);
        Show_INI(program, "A.INI", box, caption);
        return box.Text();
    }
    std::string Whole(const std::string& bytes) {
        machine.PutFile("C:\\Vantrel\\A.INI", bytes);
        Show_INIQuick(program, "A.INI", box);
        return box.Text();
    }
    forms::Form window{program, "Frm_Mainmenu"};
    forms::TextBox box{window, "Fld_INI", true};
    forms::Label caption{window, "Lbl_INIContents", "INI File Contents"};
};

TEST_F(TextViews, OneLineFileShowsWithoutALineEnd) { EXPECT_EQ(Lines("one\r\n"), "one"); }

TEST_F(TextViews, LinesAreJoinedWithNoLineEndAfterTheLast) {
    EXPECT_EQ(Lines("one\r\n\r\nthree\r\n"), "one\r\n\r\nthree");
}

TEST_F(TextViews, FileWithoutALastLineEndShowsTheSame) {
    EXPECT_EQ(Lines("one\r\ntwo"), "one\r\ntwo");
}

TEST_F(TextViews, EmptyLastLineKeepsItsLineEnd) { EXPECT_EQ(Lines("one\r\n\r\n"), "one\r\n"); }

TEST_F(TextViews, EveryKindOfLineEndIsShownAsCrLf) {
    EXPECT_EQ(Lines("one\ntwo\rthree\r\nfour"), "one\r\ntwo\r\nthree\r\nfour");
}

TEST_F(TextViews, FileWithNoLinesAtAllIsAnEmptyText) { EXPECT_EQ(Lines(""), ""); }

TEST_F(TextViews, FileOfOneEmptyLineIsAnEmptyText) { EXPECT_EQ(Lines("\r\n"), ""); }

TEST_F(TextViews, NulIsShownAsABlank) {
    const std::string bytes("a\0b\r\n\0", 6);
    EXPECT_EQ(Lines(bytes), "a b\r\n ");
    EXPECT_EQ(Whole(bytes), "a b\r\n ");
}

TEST_F(TextViews, Byte1AIsAnOrdinaryByte) {
    EXPECT_EQ(Lines("a\x1A"
                    "b"),
              "a\x1A"
              "b");
}

TEST_F(TextViews, BytesAreTheCodePages) {
    EXPECT_EQ(Lines("\xC4\x80"), "\xC3\x84\xE2\x82\xAC");
    EXPECT_EQ(Whole("\xC4\x80"), "\xC3\x84\xE2\x82\xAC");
}

TEST_F(TextViews, MegabyteIsShownWhole) {
    std::string bytes;
    while (bytes.size() < 1024 * 1024) {
        bytes += "Key" + std::to_string(bytes.size()) + "=Value\r\n";
    }
    EXPECT_EQ(Lines(bytes) + "\r\n", bytes);
    EXPECT_EQ(Whole(bytes), bytes);
    EXPECT_EQ(Lines(std::string(1024 * 1024, 'x')).size(), 1024u * 1024u);
}

TEST_F(TextViews, TextIsUpdatedAfterEveryLine) {
    std::vector<std::string> seen;
    box.Change = [&] { seen.push_back(box.Text()); };
    Lines("one\r\ntwo\r\nthree\r\n");
    EXPECT_THAT(seen, ::testing::ElementsAre("one", "one\r\ntwo", "one\r\ntwo\r\nthree"));
}

TEST_F(TextViews, EventsRunOnceBetweenEmptyingAndReadingUnderAnHourglass) {
    std::vector<std::string> steps;
    desktop.on_step = [&](const std::string& step) { steps.push_back(step); };
    const RedrawWatch watch(box, [&] { steps.push_back("redraw \"" + box.Text() + "\""); });
    const auto expect_steps = [&](auto show) {
        machine.PutFile("C:\\Vantrel\\A.INI", "old");
        box.SetText("text");
        steps.clear();
        desktop.on_events = {[&] { machine.PutFile("C:\\Vantrel\\A.INI", "new"); }};
        show();
        EXPECT_THAT(steps, ::testing::ElementsAre("pointer hourglass", "redraw \"\"", "events",
                                                  "redraw \"new\"", "pointer default"));
    };
    expect_steps([&] { Show_INI(program, "A.INI", box, caption); });
    expect_steps([&] { Show_INIQuick(program, "A.INI", box); });
}

TEST_F(TextViews, MissingFileIsAnEmptyTextWithoutAYield) {
    Lines("old");
    desktop.do_events_calls = 0;
    Show_INI(program, "B.INI", box, caption);
    EXPECT_EQ(box.Text(), "");
    EXPECT_EQ(caption.Caption(), "INI File Contents - B.INI");
    EXPECT_EQ(desktop.do_events_calls, 0);
    Lines("old");
    Show_INIQuick(program, "B.INI", box);
    EXPECT_EQ(box.Text(), "");
}

TEST_F(TextViews, FileThatGoesWhileEventsRunIsAnEmptyText) {
    machine.PutFile("C:\\Vantrel\\A.INI", "text");
    desktop.on_events.push_back([&] { machine.files().RemoveFile("C:\\Vantrel\\A.INI"); });
    Show_INI(program, "A.INI", box, caption);
    EXPECT_EQ(box.Text(), "");
}

TEST_F(TextViews, CaptionNamesTheFileUnlessItIsTheLog) {
    Lines("text");
    EXPECT_EQ(caption.Caption(), "INI File Contents - A.INI");
    machine.PutFile("C:\\Vantrel\\Vantrel.Log", "log");
    Show_INI(program, "vantrel.log", box, caption);
    EXPECT_EQ(caption.Caption(), "INI File Contents - A.INI");
    EXPECT_EQ(box.Text(), "log");
}

TEST_F(TextViews, QuickViewerReadsTheWholeFileInOneCall) {
    FaultyFileSystem counting(machine.files());
    platform::Machine counted = WithFiles(machine.machine(), counting);
    forms::Program its_program{counted, desktop, program.globals};
    const std::string bytes(300'000, 'x');
    machine.PutFile("C:\\Vantrel\\Vantrel.Log", bytes);
    Show_INIQuick(its_program, "Vantrel.LOG", box);
    EXPECT_EQ(box.Text(), bytes);
    EXPECT_EQ(counting.plan.Count(Call::kRead), 1);
}

TEST_F(TextViews, ErrorsCarryTheViewersLabelsAndGiveThePointerBack) {
    machine.PutFile("C:\\Vantrel\\A.INI", "text");
    FaultyFileSystem faulty(machine.files());
    platform::Machine failing = WithFiles(machine.machine(), faulty);
    forms::Program its_program{failing, desktop, program.globals};
    const auto source_of = [&](auto show) {
        faulty.plan.Inject({.kind = Call::kOpen, .number = error_number::kPermissionDenied});
        try {
            show();
        } catch (const Error& error) {
            EXPECT_EQ(error.description(), "Permission denied");
            EXPECT_EQ(desktop.pointer, forms::Pointer::kDefault);
            return error.source();
        }
        return std::string("no error");
    };
    EXPECT_EQ(source_of([&] { Show_INI(its_program, "A.INI", box, caption); }),
              "clsFiles:Show_INI Method");
    EXPECT_EQ(source_of([&] { Show_INIQuick(its_program, "A.INI", box); }),
              "clsFiles:Show_INIQuick Method");
}

}  // namespace
}  // namespace vantrel::test
