// Extraction when the machine, the user or the archive does not play along.
#include "tests/zip/reader_fixture.h"

namespace vantrel::test {
namespace {

class ExtractionFailure : public ReaderTest {
  protected:
    ExtractionFailure() {
        archive.entries = {{.name = "a.txt", .content = Prose(3000), .method = 8},
                           {.name = "Sub/b.txt", .content = "beta"},
                           {.name = "Empty/", .content = "", .external = 0x10}};
    }
    void PutArchive() { files.Put(options.archive, archive.Bytes()); }
    // Whatever the archive holds: what is restored is right, and nothing is outside.
    void ExpectNothingOutside() {
        for (const std::string& path : files.Everything()) {
            const bool ours =
                path == "C:\\" || path == "C:\\In.zip" || path.starts_with("C:\\Out\\");
            EXPECT_TRUE(ours) << path;
            EXPECT_EQ(path.find("~vantrel"), std::string::npos);
        }
    }

    BuiltArchive archive;
};

TEST_F(ExtractionFailure, CancelAtEveryEvent) {
    for (int i = 0; i < 40; ++i) {
        archive.entries.push_back({.name = "f" + std::to_string(i), .content = Prose(2000)});
    }
    PutArchive();
    for (std::size_t n = 1;; ++n) {
        ASSERT_LT(n, 10000u);
        files.Remove("C:\\Out");
        files.Put("C:\\Out\\a.txt", "old");
        events = Recorder();
        events.cancel_at = n;
        const RunOutcome outcome = Run();
        const std::string a = Content("a.txt");
        EXPECT_TRUE(a == "old" || a == Prose(3000));
        ExpectNothingOutside();
        if (outcome == RunOutcome::kComplete) {
            EXPECT_LT(events.overall.size(), n);
            EXPECT_EQ(events.overall.back(), 100);
            EXPECT_EQ(std::count(events.overall.begin(), events.overall.end(), 100), 1);
            break;
        }
        EXPECT_EQ(outcome, RunOutcome::kCancelled);
        EXPECT_GE(events.overall.size(), n);
    }
}

TEST_F(ExtractionFailure, EventsComeOnTheCallersThread) {
    PutArchive();
    EXPECT_EQ(Run(), RunOutcome::kComplete);
    for (const auto& thread : events.threads) {
        EXPECT_EQ(thread, std::this_thread::get_id());
    }
    EXPECT_TRUE(std::is_sorted(events.overall.begin(), events.overall.end()));
}

TEST_F(ExtractionFailure, MissingArchiveIsAQuestionAndRetryContinues) {
    events.questions = &questions;
    questions.RetryAfter([&] { PutArchive(); });
    EXPECT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(questions.asked, Strings{"The archive cannot be read: C:\\In.zip (File not found)."});
    EXPECT_EQ(Content("Sub\\b.txt"), "beta");
}

TEST_F(ExtractionFailure, MissingArchiveAnsweredWithCancel) {
    events.questions = &questions;
    EXPECT_EQ(Run(), RunOutcome::kCancelled);
    EXPECT_FALSE(files.Exists("C:\\Out"));
}

// A power failure right behind the exchange of the names must not take both files.
TEST_F(ExtractionFailure, FileIsReplacedOnlyByOneThatIsOnTheDisk) {
    PutArchive();
    files.Put("C:\\Out\\a.txt", "old");
    Strings replaced;
    files.before = [&](const std::string& call, const std::string& path) {
        if (call != "Replace") {
            return;
        }
        replaced.push_back(path);
        EXPECT_TRUE(files.AllFlushed("C:\\Out\\~vantrel-1.tmp"));
    };
    EXPECT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(replaced, Strings{"C:\\Out\\a.txt"});
}

TEST_F(ExtractionFailure, MissingArchiveUnattendedFails) {
    EXPECT_EQ(Run(), RunOutcome::kFailed);
    EXPECT_EQ(events.Texts(MessageKind::kError),
              Strings{"The archive cannot be read: C:\\In.zip (File not found)."});
    EXPECT_FALSE(files.Exists("C:\\Out"));
}

TEST_F(ExtractionFailure, FileThatIsNoArchiveIsAQuestion) {
    files.Put(options.archive, "not an archive");
    events.questions = &questions;
    questions.RetryAfter([&] { PutArchive(); });
    EXPECT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(questions.asked.size(), 1u);
}

TEST_F(ExtractionFailure, ArchiveGoneInTheMiddleIsReadAfterRetry) {
    PutArchive();
    events.questions = &questions;
    std::atomic<int> reads = 0;
    files.before = [&](const std::string& call, const std::string& path) {
        if (call == "Read" && path == options.archive && ++reads == 4) {
            RaiseError(error_number::kDiskNotReady);
        }
    };
    questions.answers = {[] { return true; }};
    EXPECT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(questions.asked.size(), 1u);
    EXPECT_EQ(Content("a.txt"), Prose(3000));
    EXPECT_EQ(result.failed, 0);
}

TEST_F(ExtractionFailure, AnotherArchiveInItsPlaceIsNotRead) {
    PutArchive();
    options.threads = 1;
    events.questions = &questions;
    BeforeCalls(files, {.name = "Open", .path = options.archive, .first = 2, .last = 2},
                [&] { files.Append(options.archive, "x"); });
    questions.RetryAfter([&] { PutArchive(); });
    EXPECT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(
        questions.asked,
        Strings{"The archive cannot be read: C:\\In.zip (It is another archive than before)."});
    EXPECT_EQ(Content("a.txt"), Prose(3000));
}

TEST_F(ExtractionFailure, TooLittleSpaceIsReportedBeforeTheFirstByte) {
    PutArchive();
    machine.drives.drives['C'].free_bytes = 3003;  // 3004 are needed
    events.questions = &questions;
    questions.RetryAfter([&] {
        EXPECT_FALSE(files.Exists("C:\\Out"));
        machine.drives.drives['C'].free_bytes = 3004;
    });
    EXPECT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(
        questions.asked,
        Strings{"The destination is too small: C:\\Out needs about 1 byte more (2.9 KB free)."});
    EXPECT_EQ(Content("Sub\\b.txt"), "beta");
}

TEST_F(ExtractionFailure, SpaceOfFilesThatAreReplacedCounts) {
    PutArchive();
    files.Put("C:\\Out\\a.txt", std::string(3000, 'o'));
    machine.drives.drives['C'].free_bytes = 100;
    EXPECT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(Content("a.txt"), Prose(3000));
}

TEST_F(ExtractionFailure, FullDestinationIsAQuestionAndRetryContinues) {
    PutArchive();
    files.capacity = files.Info(options.archive).size + 1000;
    BeforeCalls(files, {.name = "Write"}, [this] { machine.drives.drives['C'].free_bytes = 1000; });
    events.questions = &questions;
    questions.RetryAfter([&] {
        EXPECT_FALSE(files.Exists("C:\\Out\\a.txt"));  // nothing half is left meanwhile
        files.capacity = ~std::uint64_t{0};
    });
    EXPECT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(questions.asked,
              Strings{"The disk in drive C: is full: C:\\Out\\a.txt needs about 2.9 KB more (1,000 "
                      "bytes free)."});
    EXPECT_EQ(Content("a.txt"), Prose(3000));
    EXPECT_EQ(Content("Sub\\b.txt"), "beta");
    EXPECT_EQ(result.failed, 0);
}

class CountingFolders : public MemoryFileSystem {
  public:
    std::unique_ptr<platform::Folder> OpenFolder(const std::string& path) override {
        opened.push_back(path);
        return MemoryFileSystem::OpenFolder(path);
    }
    Strings opened;
};

TEST_F(ExtractionFailure, FolderIsOpenedForFilesThatLieTogetherAndAnewAfterAQuestion) {
    archive.entries = {{.name = "s/a", .content = "alpha"},
                       {.name = "s/b", .content = Prose(3000)},
                       {.name = "s/c", .content = "gamma"}};
    options.threads = 1;
    for (const bool full : {false, true}) {
        CountingFolders counting;
        counting.Put(options.archive, archive.Bytes());
        questions.RetryAfter([&] { counting.capacity = ~std::uint64_t{0}; });
        events.questions = &questions;
        if (full) {
            counting.capacity = counting.Info(options.archive).size + 1000;
        }
        result = zip::ExtractArchive(WithFiles(machine.machine(), counting), options, events);
        EXPECT_EQ(result.outcome, RunOutcome::kComplete);
        EXPECT_EQ(counting.Content("C:\\Out\\s\\b"), Prose(3000));
        EXPECT_EQ(counting.opened, Strings(full ? 2 : 1, "C:\\Out\\s"));
    }
}

TEST_F(ExtractionFailure, FullDestinationCancelledKeepsTheOldFile) {
    PutArchive();
    files.Put("C:\\Out\\a.txt", "old");
    files.capacity = files.Info(options.archive).size + 1000;
    events.questions = &questions;
    EXPECT_EQ(Run(), RunOutcome::kCancelled);
    EXPECT_EQ(Content("a.txt"), "old");
    ExpectNothingOutside();
}

TEST_F(ExtractionFailure, DestinationGoneInTheMiddleIsAQuestionAndRetryContinues) {
    PutArchive();
    BeforeCalls(files, {.name = "Open", .path = "C:\\Out", .last = 1},
                [&] { files.TakeAway("C:\\Out"); });
    events.questions = &questions;
    questions.RetryAfter([this] { files.BringBack(); });
    options.threads = 1;
    EXPECT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(questions.asked.size(), 1u);
    EXPECT_EQ(result.failed, 0);
    EXPECT_EQ(Content("a.txt"), Prose(3000));
    EXPECT_EQ(Content("Sub\\b.txt"), "beta");
}

TEST_F(ExtractionFailure, DestinationGoneUnattendedFailsOnceInsteadOfForEachEntry) {
    PutArchive();
    BeforeCalls(files, {.name = "Open", .path = "C:\\Out"}, [&] { files.TakeAway("C:\\Out"); });
    options.threads = 1;
    EXPECT_EQ(Run(), RunOutcome::kFailed);
    EXPECT_TRUE(events.Texts(MessageKind::kWarning).empty());
    EXPECT_EQ(events.Texts(MessageKind::kError).size(), 1u);
}

TEST_F(ExtractionFailure, FolderGoneInTheMiddleCostsItsFilesOnly) {
    PutArchive();
    FailCalls(files, {.name = "Open", .path = "C:\\Out\\Sub"}, error_number::kPathNotFound);
    EXPECT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(result.failed, 1);
    EXPECT_EQ(Content("a.txt"), Prose(3000));
}

TEST_F(ExtractionFailure, ReadOnlyDestinationIsReportedForEachEntryAndNothingChanges) {
    PutArchive();
    files.Put("C:\\Out\\a.txt", "old");
    files.before = [&](const std::string& call, const std::string& path) {
        const bool writes = call == "MakeFolder" || call == "Replace" || call == "SetTimes";
        if (path.starts_with("C:\\Out\\") && (writes || call == "Open")) {
            RaiseError(call == "MakeFolder" ? error_number::kPathFileAccess
                                            : error_number::kPermissionDenied);
        }
    };
    EXPECT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(result.failed, 3);
    EXPECT_EQ(events.Texts(MessageKind::kWarning).size(), 3u);
    EXPECT_EQ(Restored(), Strings{"a.txt"});
    EXPECT_EQ(Content("a.txt"), "old");
}

TEST_F(ExtractionFailure, EveryCallThatFailsOnceCostsAtMostItsEntry) {
    PutArchive();
    for (int n = 1;; ++n) {
        ASSERT_LT(n, 500);
        files.before = nullptr;
        files.Remove("C:\\Out");
        files.Put("C:\\Out\\a.txt", "old");
        std::atomic<int> calls = 0;
        std::atomic<bool> fired = false;
        files.before = [&](const std::string&, const std::string& path) {
            if (path != options.archive && ++calls == n) {
                fired = true;
                RaiseError(error_number::kPermissionDenied);
            }
        };
        events = Recorder();
        const RunOutcome outcome = Run();
        files.before = nullptr;
        if (!fired) {
            EXPECT_EQ(outcome, RunOutcome::kComplete);
            EXPECT_EQ(result.failed, 0);
            break;
        }
        const std::string a = Content("a.txt");
        EXPECT_TRUE(a == "old" || a == Prose(3000)) << n;
        if (a == "old" && outcome == RunOutcome::kComplete) {
            EXPECT_GE(result.failed, 1) << n;
        }
        if (files.Exists("C:\\Out\\Sub\\b.txt")) {
            EXPECT_EQ(Content("Sub\\b.txt"), "beta");
        }
    }
}

TEST_F(ExtractionFailure, TruncatedAtEveryByte) {
    const std::string whole = archive.Bytes();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        files.Remove("C:\\Out");
        files.Put(options.archive, whole.substr(0, size));
        EXPECT_EQ(Run(), RunOutcome::kFailed) << size;
        EXPECT_TRUE(Restored().empty()) << size;
        ExpectNothingOutside();
    }
}

TEST_F(ExtractionFailure, FlippedBytesInEveryStructure) {
    archive.zip64 = true;
    archive.comment = "comment";
    archive.entries[0].central_extra = ExtraField(0x5455, std::string("\1\0\0\0\0", 5));
    const std::string whole = archive.Bytes();
    options.threads = 1;
    for (std::size_t at = 0; at < whole.size(); ++at) {
        for (const int flip : {0x01, 0x80, 0xFF}) {
            std::string bytes = whole;
            bytes[at] = static_cast<char>(bytes[at] ^ flip);
            files.Remove("C:\\Out");
            files.Put(options.archive, bytes);
            events = Recorder();
            Run();
            ExpectNothingOutside();
            // Data that came back is right, whatever its name has become.
            for (const std::string& path : Restored()) {
                if (!path.ends_with('\\')) {
                    const std::string content = Content(path);
                    EXPECT_TRUE(content == Prose(3000) || content == "beta" || content.empty())
                        << at << " " << path;
                }
            }
        }
    }
}

}  // namespace
}  // namespace vantrel::test
