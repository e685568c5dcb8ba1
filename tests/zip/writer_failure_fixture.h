// For runs of the writer that fail: three files, and an earlier archive under the name of the new
// one.
#pragma once

#include "tests/zip/writer_fixture.h"

namespace vantrel::test {

class WriterFailure : public WriterTest {
  protected:
    WriterFailure() {
        files.Put("C:\\Data\\a", Noise(3000));
        files.Put("C:\\Data\\b", Noise(3 * zip::kChunkSize));
        files.Put("C:\\Data\\Sub\\c", Prose(2 * zip::kChunkSize));
        files.Put(options.archive, kEarlier);
        options.level = 1;  // fast, because there are many runs
        before_ = files.Everything();
    }

    // The disk is as before the run.
    void ExpectNothingChanged() {
        files.before = nullptr;
        EXPECT_EQ(files.Content(options.archive), kEarlier);
        EXPECT_EQ(files.Everything(), before_);
    }
    void ExpectFailedUnattended(int number, const std::string& text) {
        ExpectFailedUnattended(number, [&](const std::string& said) { EXPECT_EQ(said, text); });
    }
    void ExpectFailedUnattended(int number, const std::function<void(const std::string&)>& check) {
        EXPECT_EQ(Run(), zip::RunOutcome::kFailed);
        ExpectNothingChanged();
        ASSERT_FALSE(events.messages.empty());
        const auto& last = events.messages.back();
        EXPECT_EQ(last.kind, zip::MessageKind::kError);
        EXPECT_EQ(last.code, number);
        check(last.text);
    }
    // A run whose first question is answered with Retry after `path` has been made.
    void RunAndMakeWhenAsked(const std::string& path) {
        events.questions = &questions;
        questions.RetryAfter([this, path] { files.Put(path, "x"); });
        EXPECT_EQ(Run(), zip::RunOutcome::kComplete);
    }
    void ExpectComplete() {
        files.before = nullptr;
        const ReadResult archive = Archive();
        EXPECT_EQ(archive.Names(), (Strings{"a", "b", "Sub/c"}));
        EXPECT_TRUE(archive.At("b").content == Noise(3 * zip::kChunkSize));
        EXPECT_EQ(files.Everything(), before_);
    }

    static constexpr const char* kEarlier = "the earlier archive";
    Strings before_;
};

}  // namespace vantrel::test
