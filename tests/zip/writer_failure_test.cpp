// Failed steps without which there is no correct archive: the question, and the removal of
// everything that was written.
#include "tests/support/matchers.h"
#include "tests/zip/writer_failure_fixture.h"

namespace vantrel::test {
namespace {

using zip::kChunkSize;

TEST_F(WriterFailure, FullDiskUnattendedLeavesTheEarlierArchive) {
    files.capacity = 8 * kChunkSize;
    machine.drives.drives['C'].free_bytes = 100;
    ExpectFailedUnattended(error_number::kDiskFull, [](const std::string& text) {
        EXPECT_THAT(text, StartsWith("The disk in drive C: is full: C:\\Backup\\Weekly.zip needs "
                                     "about "));
        EXPECT_THAT(text, EndsWith(" more (100 bytes free)."));
    });
}

TEST_F(WriterFailure, FullDiskWhereASecondOneWasWantedSaysSo) {
    files.capacity = 8 * kChunkSize;
    options.spanning = true;
    ExpectFailedUnattended(error_number::kDiskFull,
                           "The archive needs disk 2, which an unattended run cannot ask for: "
                           "C:\\Backup\\Weekly.zip.");
}

TEST_F(WriterFailure, RetryAfterAFullDiskContinuesWhereItStopped) {
    files.capacity = 8 * kChunkSize;
    events.questions = &questions;
    questions.answers = {[] { return true; },
                         [&] {
                             files.capacity = ~std::uint64_t{0};
                             return true;
                         }};
    std::map<std::string, int> opens;
    std::mutex mutex;
    files.before = [&](const std::string& call, const std::string& path) {
        const std::lock_guard lock(mutex);
        opens[path] += call == "Open" ? 1 : 0;
    };
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(questions.asked.size(), 2u);
    EXPECT_EQ(opens["C:\\Data\\a"], 1) << "nothing is read twice";
    EXPECT_EQ(opens["C:\\Data\\b"], 1);
    ExpectComplete();
}

TEST_F(WriterFailure, CancelOfAQuestionIsPassedOnByOneMoreEvent) {
    files.capacity = 8 * kChunkSize;
    events.questions = &questions;
    std::size_t events_when_asked = 0;
    questions.answers = {[&] {
        events_when_asked = events.overall.size();
        return false;
    }};
    EXPECT_EQ(Run(), RunOutcome::kCancelled);
    EXPECT_GT(events.overall.size(), events_when_asked);
    EXPECT_TRUE(events.Texts(MessageKind::kError).empty());
    ExpectNothingChanged();
}

// A disk that is full at any byte, unattended: no broken archive and no remains.
TEST_F(WriterFailure, DiskFullAtAnyByte) {
    files.Remove("C:\\Data\\b");
    before_ = files.Everything();
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    const std::uint64_t size = files.Info(options.archive).size;
    files.Put(options.archive, kEarlier);
    const std::uint64_t others = 3000 + 2 * kChunkSize + std::string(kEarlier).size();
    for (std::uint64_t room = 0; room < size; room += 1 + size / 41) {
        files.capacity = others + room;
        ASSERT_EQ(Run(), RunOutcome::kFailed) << room;
        ExpectNothingChanged();
    }
    files.capacity = others + size - 1;
    EXPECT_EQ(Run(), RunOutcome::kFailed);
    files.capacity = others + size;
    EXPECT_EQ(Run(), RunOutcome::kComplete);
}

TEST_F(WriterFailure, SourceFolderGone) {
    options.source.folder = "C:\\Gone";
    ExpectFailedUnattended(error_number::kPathNotFound,
                           "The folder to back up cannot be read: C:\\Gone (Path not found).");
}

TEST_F(WriterFailure, SourceFolderIsAQuestionUntilItExists) {
    options.source.folder = "C:\\Late";
    RunAndMakeWhenAsked("C:\\Late\\x");
    EXPECT_EQ(Archive().Names(), (Strings{"x"}));
}

TEST_F(WriterFailure, NoFileMatches) {
    options.source.mask = "*.xyz";
    ExpectFailedUnattended(error_number::kFileNotFound,
                           "There is nothing to back up: no file matches *.xyz in C:\\Data.");
    EXPECT_EQ(result.entries, 0u);
}

TEST_F(WriterFailure, NoFileMatchesIsScannedAgainOnRetry) {
    options.source.mask = "*.xyz";
    RunAndMakeWhenAsked("C:\\Data\\late.xyz");
    EXPECT_EQ(Archive().Names(), (Strings{"late.xyz"}));
}

TEST_F(WriterFailure, AnArchiveIsNotReplacedWhenNoFileCouldBeRead) {
    FailCalls(files, {.name = "Open", .path = "C:\\Data"}, error_number::kPermissionDenied);
    EXPECT_EQ(Run(), RunOutcome::kFailed);
    ExpectNothingChanged();
    EXPECT_EQ(events.messages.back().text, "Nothing could be read of *.* in C:\\Data.");
    EXPECT_EQ(result.skipped, 3);
}

TEST_F(WriterFailure, OutputOfAFaultyCompressorIsNotWritten) {
    struct Damaging : zip::RawCompressor {
        std::unique_ptr<zip::RawCompressor> right = zip::MakeCompressor(9);
        std::size_t Compress(const std::uint8_t* in, std::size_t size, std::uint8_t* out,
                             std::size_t room) override {
            const std::size_t count = right->Compress(in, size, out, room);
            if (count > 500) {
                out[count / 2] ^= 1;
            }
            return count;
        }
        std::size_t Bound(std::size_t size) override { return right->Bound(size); }
    };
    options.make_compressor = [] { return std::make_unique<Damaging>(); };
    ExpectFailedUnattended(error_number::kDeviceIo,
                           "A file could not be compressed: C:\\Data\\Sub\\c (Compressed data "
                           "failed its check).");
    files.Put("C:\\Data\\Sub\\c", Prose(20000));
    ExpectFailedUnattended(error_number::kDeviceIo,
                           "A file could not be compressed: C:\\Data\\Sub\\c (Compressed data "
                           "failed its check).");
}

TEST_F(WriterFailure, FoldersMadeForAFailedArchiveAreRemoved) {
    options.archive = "C:\\New\\Deeper\\Weekly.zip";
    files.capacity = 8 * kChunkSize;
    EXPECT_EQ(Run(), RunOutcome::kFailed);
    EXPECT_EQ(files.Everything(), before_);
}

TEST_F(WriterFailure, FoldersMadeForACancelledArchiveAreRemoved) {
    options.archive = "C:\\New\\Deeper\\Weekly.zip";
    events.cancel_at = 1;
    EXPECT_EQ(Run(), RunOutcome::kCancelled);
    EXPECT_EQ(files.Everything(), before_);
}

// --- each call in turn fails ---

// Counts the calls of a run; the n-th fails, or all from the n-th on.
struct Fault {
    std::atomic<int> calls{0};
    int at = 0;
    bool lasting = false;
    int number = error_number::kDeviceIo;
    std::atomic<bool> fired{false};

    void operator()() {
        const int call = ++calls;
        if (call == at || (lasting && call > at)) {
            fired = true;
            RaiseError(number);
        }
    }
};

class FaultSweep : public WriterFailure, public ::testing::WithParamInterface<int> {
  protected:
    // A run whose n-th call fails, or all from the n-th on; whether there was such a call.
    bool RunWithFault(int n, bool lasting) {
        Fault fault;
        fault.at = n;
        fault.lasting = lasting;
        fault.number = GetParam();
        files.before = [&](const std::string&, const std::string&) { fault(); };
        events = {};
        Run();
        files.before = nullptr;
        return fault.fired;
    }
};

TEST_P(FaultSweep, AnyOneCallFails) {
    bool fired = true;
    for (int n = 1; fired; ++n) {
        fired = RunWithFault(n, false);
        if (result.outcome == RunOutcome::kComplete) {
            ASSERT_NO_THROW(Archive()) << "call " << n;
            ASSERT_EQ(files.Everything(), before_) << "call " << n;
            ASSERT_EQ(Archive().entries.size() + static_cast<std::size_t>(result.skipped), 3u)
                << "call " << n;
            files.Put(options.archive, kEarlier);
        } else {
            ASSERT_EQ(result.outcome, RunOutcome::kFailed) << "call " << n;
            ASSERT_EQ(files.Content(options.archive), kEarlier) << "call " << n;
            ASSERT_EQ(files.Everything(), before_) << "call " << n;
        }
    }
}

TEST_P(FaultSweep, EverythingFailsFromACallOn) {
    options.archive = "C:\\Backup\\20261115_130509\\Weekly.zip";
    bool fired = true;
    for (int n = 1; fired; ++n) {
        fired = RunWithFault(n, true);
        if (result.outcome == RunOutcome::kComplete) {
            ASSERT_NO_THROW(Archive()) << "call " << n;
            files.Remove("C:\\Backup\\20261115_130509");
            continue;
        }
        // Nothing can be removed on such a machine; the next run of the set does it.
        ASSERT_FALSE(files.Exists(options.archive)) << "call " << n;
        options.archive = "C:\\Backup\\20261116_130509\\Weekly.zip";
        ASSERT_EQ(Run(), RunOutcome::kComplete) << "call " << n;
        if (files.Exists("C:\\Backup\\20261115_130509")) {
            ASSERT_FALSE(files.Exists("C:\\Backup\\20261115_130509\\Weekly.zip.vantrel-new"));
            files.Remove("C:\\Backup\\20261115_130509");
        }
        files.Remove("C:\\Backup\\20261116_130509");
        ASSERT_EQ(files.Everything(), before_) << "call " << n;
        options.archive = "C:\\Backup\\20261115_130509\\Weekly.zip";
    }
}

INSTANTIATE_TEST_SUITE_P(Errors, FaultSweep,
                         ::testing::Values(error_number::kDeviceIo, error_number::kPermissionDenied,
                                           error_number::kDeviceUnavailable));

TEST_F(WriterFailure, CancelAtEveryEvent) {
    // The run proceeds only as fast as events are raised, so that every run has the same events.
    bool cancelled = true;
    for (std::size_t n = 1; cancelled; ++n) {
        int permits = 0;
        std::mutex mutex;
        std::condition_variable permitted;
        events = {};
        events.cancel_at = n;
        events.on_overall = [&] {
            const std::lock_guard lock(mutex);
            permits += 5;
            permitted.notify_all();
        };
        files.before = [&](const std::string& call, const std::string&) {
            // The rename, or the removal, comes after the last event.
            if (call != "Replace" && !call.starts_with("Remove")) {
                std::unique_lock lock(mutex);
                permitted.wait(lock, [&] { return permits > 0; });
                --permits;
            }
        };
        const RunOutcome outcome = Run();
        files.before = nullptr;
        cancelled = outcome == RunOutcome::kCancelled;
        if (cancelled) {
            ASSERT_EQ(files.Content(options.archive), kEarlier) << n;
            ASSERT_EQ(files.Everything(), before_) << n;
        } else {
            ASSERT_LT(events.overall.size(), n);
            ASSERT_EQ(events.overall.back(), 100);
        }
        ASSERT_LT(n, 1000u);
    }
    ExpectComplete();
}

TEST_F(WriterFailure, CancelAtTheLastEventLeavesTheEarlierArchive) {
    struct LastCanceller : Recorder {
        void OnProgress(int percent, bool& cancel) override {
            Recorder::OnProgress(percent, cancel);
            cancel = percent == 100;
        }
    } canceller;
    const auto cancelled = zip::WriteArchive(Machine(), options, canceller);
    EXPECT_EQ(cancelled.outcome, RunOutcome::kCancelled);
    EXPECT_EQ(canceller.overall.back(), 100);
    ExpectNothingChanged();
}

TEST_F(WriterFailure, AnExceptionFromAnEventHandlerStopsTheRunAndIsThrown) {
    events.on_overall = [] { throw ProgramEnded{7}; };
    EXPECT_THROW(Run(), ProgramEnded);
    ExpectNothingChanged();
}

}  // namespace
}  // namespace vantrel::test
