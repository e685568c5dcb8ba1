// Closing the archive and renaming it.
#include "tests/zip/writer_failure_fixture.h"

namespace vantrel::test {
namespace {

// A file can be closed only once; its content then shows whether anything was lost.
TEST_F(WriterFailure, ArchiveIsCheckedWhenClosingFailed) {
    events.questions = &questions;
    questions.answers = {[] { return true; }};
    FailCalls(files, {.name = "Close", .path = options.archive, .last = 1},
              error_number::kDeviceIo);
    EXPECT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(questions.asked.size(), 1u);
    ExpectComplete();
}

TEST_F(WriterFailure, ArchiveTruncatedByClosingIsAFailure) {
    events.questions = &questions;
    questions.answers = {[] { return true; }, [] { return false; }};
    bool lost = false;
    files.before = [&](const std::string& call, const std::string& path) {
        if (call == "Close" && path.ends_with(".vantrel-new") && !lost) {
            lost = true;
            files.Put(path, "only its beginning");
            RaiseError(error_number::kDeviceIo);
        }
    };
    EXPECT_EQ(Run(), RunOutcome::kCancelled);
    EXPECT_EQ(questions.asked.size(), 2u);
    ExpectNothingChanged();
}

TEST_F(WriterFailure, AReadOnlyArchiveIsNotReplaced) {
    files.Change(options.archive, [](platform::FileInfo& info) {
        info.attributes |= platform::attribute::kReadOnly;
    });
    ExpectFailedUnattended(error_number::kPermissionDenied,
                           "The archive cannot be put in its place: C:\\Backup\\Weekly.zip "
                           "(Permission denied).");
}

TEST_F(WriterFailure, AFailedRenameIsAQuestionThatCanBeCancelled) {
    events.questions = &questions;
    FailCalls(files, {.name = "Replace"}, error_number::kPermissionDenied);
    std::size_t events_when_asked = 0;
    questions.answers = {[] { return true; },
                         [&] {
                             events_when_asked = events.overall.size();
                             return false;
                         }};
    EXPECT_EQ(Run(), RunOutcome::kCancelled);
    EXPECT_GE(events.overall.size(), events_when_asked + 1) << "one more, which cancels";
    ExpectNothingChanged();
}

}  // namespace
}  // namespace vantrel::test
