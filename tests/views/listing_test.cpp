// An archive of many entries is listed in the real main window, which stays usable.
#include "platform/text_file.h"
#include "restore/archive_contents.h"
#include "tests/views/real_program.h"
#include "tests/zip/zip_builder.h"
#include "ui/Frm_Mainmenu.h"

namespace vantrel::test {

namespace {

constexpr int kEntries = 3000;
constexpr int kNodesForABeat = 100;

// What happens while the tree is filled: after every hundredth node a message is posted.
struct Beats {
    int nodes = 0;
    int handled = 0;
    int max_delay = 0;                 // of a message, in nodes
    std::function<void()> on_message;  // when it is handled

    void Handle(int posted_at) {
        ++handled;
        max_delay = std::max(max_delay, nodes - posted_at);
        if (on_message) {
            on_message();
        }
    }
};

LRESULT CALLBACK BeatProcedure(HWND tree, UINT message, WPARAM wparam, LPARAM lparam, UINT_PTR,
                               DWORD_PTR data) {
    constexpr UINT kBeat = WM_APP;
    auto& beats = *reinterpret_cast<Beats*>(data);
    if (message == kBeat) {
        beats.Handle(static_cast<int>(wparam));
        return 0;
    }
    if (message == TVM_INSERTITEMW && ++beats.nodes % kNodesForABeat == 0) {
        PostMessageW(tree, kBeat, static_cast<WPARAM>(beats.nodes), 0);
    }
    return DefSubclassProc(tree, message, wparam, lparam);
}

class LongListing : public RealProgram {
  protected:
    LongListing() {
        BuiltArchive archive;
        for (int i = 0; i < kEntries; ++i) {
            archive.entries.push_back({.name = std::to_string(i)});
        }
        platform::WriteFlushed(program.machine.files, path_, archive.Bytes());
        program.desktop.ShowModeless(window);
        window.TAB_Backup.SetTab(1);
        program.desktop.DoEvents();
        SetWindowSubclass(HandleOf(window.Restore.TV_Restore), BeatProcedure, 1,
                          reinterpret_cast<DWORD_PTR>(&beats));
    }
    ~LongListing() override { program.desktop.Unload(window); }

    void List() {
        RestoreTab& tab = window.Restore;
        ShowZipContents(program,
                        {tab.Cmb_RestoreFile, tab.Fld_RestoreFile, tab.Fld_RestoreTo,
                         tab.TV_Restore, tab.Fld_Total, tab.SSP_TotalFiles, tab.PKUNZIP},
                        path_);
    }

    const std::string path_ = program.InApplicationFolder("MANY.zip");
    Beats beats;
    Frm_Mainmenu window{program};
};

TEST_F(LongListing, PostedMessageWaitsForAtMost500Nodes) {
    List();
    EXPECT_EQ(kEntries, beats.nodes);
    EXPECT_GE(beats.handled, kEntries / kNodesForABeat - 500 / kNodesForABeat);
    EXPECT_LE(beats.max_delay, 500);
}

TEST_F(LongListing, TabThatIsClickedIsShownBeforeTheEnd) {
    constexpr int kAbout = 5;
    int shown_at = 0;
    beats.on_message = [&] {
        if (beats.handled == 1) {
            RECT area{};
            const HWND tabs = HandleOf(window.TAB_Backup);
            Send(tabs, TCM_GETITEMRECT, kAbout, reinterpret_cast<LPARAM>(&area));
            ClickAt(tabs, MiddleOf(area));
        }
        if (shown_at == 0 && window.TAB_Backup.Tab() == kAbout) {
            shown_at = beats.nodes;
        }
    };
    List();
    EXPECT_EQ(kAbout, window.TAB_Backup.Tab());
    EXPECT_GT(shown_at, 0);
    EXPECT_LT(shown_at, kEntries);
    EXPECT_EQ(kEntries, window.Restore.TV_Restore.Count());
}

TEST_F(LongListing, ClosedWindowEndsIt) {
    beats.on_message = [&] {
        if (beats.handled == 1) {
            PostMessageW(TopOf(window), WM_SYSCOMMAND, SC_CLOSE, 0);
        }
    };
    List();
    EXPECT_FALSE(window.Loaded());
    EXPECT_LT(window.Restore.TV_Restore.Count(), kEntries);
}

}  // namespace

}  // namespace vantrel::test
