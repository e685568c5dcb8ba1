// Once the user's cancel has been handed over nothing is asked any more, whatever step of the run
// fails before its thread notices the cancel.
#include "tests/zip/reader_fixture.h"
#include "tests/zip/spanning_fixture.h"

namespace vantrel::test {
namespace {

// Answers every question with Retry, so that the next one follows, until an event cancels.
class RetryUntilCancel : public Recorder, public zip::Questions {
  public:
    int asked = 0;
    int asked_after_cancel = 0;

    void OnProgress(int percent, bool& cancel) override {
        Recorder::OnProgress(percent, cancel);
        cancelled_ |= cancel;
    }
    bool AskRetry(const std::string&) override {
        ++(cancelled_ ? asked_after_cancel : asked);
        return true;
    }
    zip::Questions* QuestionHandler() override { return this; }

  private:
    bool cancelled_ = false;
};

// Cancels at each of the first events, and at later ones until a question comes before the cancel:
// a slow machine raises more events on the way to it.
void ExpectNoQuestionAfterCancel(const std::function<RunOutcome(zip::RunEvents&)>& run) {
    int asked = 0;
    for (std::size_t n = 1; n <= 12 || asked == 0; ++n) {
        ASSERT_LT(n, 2000u) << "the step that fails was never reached";
        RetryUntilCancel events;
        events.cancel_at = n;
        EXPECT_EQ(run(events), RunOutcome::kCancelled) << "event " << n;
        EXPECT_EQ(events.asked_after_cancel, 0) << "event " << n;
        asked += events.asked;
    }
}

class NoQuestionInABackup : public WriterTest {
  protected:
    void Expect() {
        ExpectNoQuestionAfterCancel([this](zip::RunEvents& there) {
            return zip::WriteArchive(Machine(), options, there).outcome;
        });
    }
};

TEST_F(NoQuestionInABackup, FullDestination) {
    files.Put("C:\\Data\\a", Noise(3000));
    files.capacity = 4000;
    Expect();
}

TEST_F(NoQuestionInABackup, DestinationFolderCannotBeMade) {
    files.Put("C:\\Data\\a", "x");
    options.archive = "D:\\Backup\\Weekly.zip";
    FailCalls(files, {.name = "MakeFolder"}, error_number::kDeviceUnavailable);
    Expect();
}

TEST_F(NoQuestionInABackup, SourceFolderGone) {
    options.source.folder = "C:\\Gone";
    Expect();
}

TEST_F(NoQuestionInABackup, NoFileMatches) { Expect(); }

class NoQuestionForTheNextDisk : public SpanningTest {};

TEST_F(NoQuestionForTheNextDisk, OfABackup) {
    files.Put("C:\\Data\\noise", Noise(5000));
    ExpectNoQuestionAfterCancel([this](zip::RunEvents& there) {
        NewBox(2000);
        return zip::WriteArchive(Machine(), options, there).outcome;
    });
}

TEST_F(NoQuestionForTheNextDisk, OfARestore) {
    files.Put("C:\\Data\\noise", Noise(5000));
    NewBox(2000);
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    const int disks = static_cast<int>(Volumes().size());
    ASSERT_GT(disks, 1);
    const zip::ExtractOptions extract{options.archive, "C:\\Out", "*.*", 2};
    box.limits = false;
    // The first one in the drive: the last is asked for. The last one: then each in turn.
    for (const int in_drive : {0, disks - 1}) {
        box.Insert(in_drive);
        ExpectNoQuestionAfterCancel([&](zip::RunEvents& there) {
            return zip::ExtractArchive(Machine(), extract, there).outcome;
        });
    }
}

class NoQuestionInARestore : public ReaderTest {
  protected:
    void Expect() {
        ExpectNoQuestionAfterCancel([this](zip::RunEvents& there) {
            return zip::ExtractArchive(Machine(), options, there).outcome;
        });
    }
};

TEST_F(NoQuestionInARestore, MissingArchive) { Expect(); }

TEST_F(NoQuestionInARestore, FullDestination) {
    BuiltArchive archive;
    archive.entries = {{.name = "a.txt", .content = "alpha"}, {.name = "b.txt", .content = "beta"}};
    files.Put(options.archive, archive.Bytes());
    files.capacity = files.Used();
    Expect();
}

}  // namespace
}  // namespace vantrel::test
