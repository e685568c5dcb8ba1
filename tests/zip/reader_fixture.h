// What the tests of extraction share: a disk in memory with C:\In.zip, to be restored into C:\Out.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/zip/writer_fixture.h"
#include "tests/zip/zip_builder.h"
#include "zip/reader/archive_extractor.h"

namespace vantrel::test {

class ReaderTest : public ::testing::Test {
  protected:
    ReaderTest() {
        options.archive = "C:\\In.zip";
        options.destination = "C:\\Out";
        options.threads = 2;
    }

    platform::Machine Machine() { return WithFiles(machine.machine(), files); }
    zip::RunOutcome Run() {
        result = zip::ExtractArchive(Machine(), options, events);
        return result.outcome;
    }
    // Restores this archive; the run must come to its end.
    void ExtractAll(const BuiltArchive& archive) {
        files.Put(options.archive, archive.Bytes());
        EXPECT_EQ(Run(), zip::RunOutcome::kComplete);
    }
    void Extract(const std::vector<BuiltEntry>& entries) {
        BuiltArchive archive;
        archive.entries = entries;
        ExtractAll(archive);
    }
    // Paths below the destination, sorted; folders end in "\".
    Strings Restored() const {
        Strings all;
        for (const std::string& path : files.Everything("C:\\Out")) {
            all.push_back(path.substr(7));
        }
        return all;
    }
    std::string Content(const std::string& path) const { return files.Content("C:\\Out\\" + path); }
    // The only warning of the run.
    std::string Warning() const {
        const Strings warnings = events.Texts(zip::MessageKind::kWarning);
        EXPECT_EQ(warnings.size(), 1u);
        return warnings.empty() ? "" : warnings[0];
    }

    TestMachine machine;
    MemoryFileSystem files;
    zip::ExtractOptions options;
    Recorder events;
    ScriptedQuestions questions;
    zip::ExtractResult result;
};

}  // namespace vantrel::test
