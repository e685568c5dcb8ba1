// What the tests of reading spanned archives share: a set of disks, and a user who feeds them.
#pragma once

#include <cstdlib>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "tests/zip/spanning_fixture.h"
#include "zip/reader/archive_extractor.h"

namespace vantrel::test {

// A user who inserts the disk that a prompt names, unless a test defines another answer.
class Feeder : public DiskChanger {
  public:
    using DiskChanger::DiskChanger;

    int disks = 0;
    std::set<int> missing;  // these disks, from 0

    DiskAnswer AskForDisk(const std::string& text) override {
        if (at.count(asked.size() + 1) == 0 &&
            (Wanted(text) >= disks || missing.contains(Wanted(text)))) {
            asked.push_back(text);
            return DiskAnswer::kContinue;
        }
        return Questions::AskForDisk(text);
    }
    // The disk that a prompt asks for, from 0.
    int Wanted(const std::string& text) const {
        return text.starts_with("Please insert the last disk ")
                   ? disks - 1
                   : std::atoi(text.c_str() + std::string("Please insert disk ").size()) - 1;
    }
    // What was asked for, "last" or a number from 1, and the notes.
    Strings Wants() const {
        Strings wants;
        for (const std::string& text : asked) {
            const bool last = text.starts_with("Please insert the last disk ");
            wants.push_back(last ? "last" : std::to_string(Wanted(text) + 1));
        }
        return wants;
    }
    static std::string Note(const std::string& text) { return text.substr(text.find("\r\n") + 4); }

  protected:
    bool AnswerByDefault(const std::string& text) override {
        EXPECT_TRUE(text.starts_with("Please insert ")) << text;
        return text.starts_with("Please insert ") && Insert(Wanted(text));
    }
};

class SpanningRead : public SpanningTest {
  protected:
    SpanningRead() { extract = {options.archive, "C:\\Out", "*.*", 2}; }

    // Writes C:\Data onto disks of this size, and puts the last one in.
    int MakeSet(std::uint64_t disk_size) {
        box.limits = true;
        NewBox(disk_size);
        EXPECT_EQ(Run(), zip::RunOutcome::kComplete);
        feeder.disks = static_cast<int>(Volumes().size());
        box.limits = false;
        box.Insert(feeder.disks - 1);
        return feeder.disks;
    }
    zip::RunOutcome Restore() {
        feeder.asked.clear();
        restored_events = Recorder();
        restored_events.questions = &feeder;
        const auto outcome_of = zip::ExtractArchive(Machine(), extract, restored_events);
        failed = outcome_of.failed;
        return outcome_of.outcome;
    }
    void ExpectRestored() {
        EXPECT_EQ(failed, 0);
        EXPECT_EQ(restored_events.Texts(zip::MessageKind::kWarning), Strings{});
        for (const std::string& path : files.Everything("C:\\Data")) {
            const std::string there = "C:\\Out\\" + path.substr(8);
            ASSERT_TRUE(files.Exists(there)) << there;
            if (path.back() != '\\') {
                EXPECT_TRUE(files.Content(there) == files.Content(path)) << there;
            }
        }
        files.Remove("C:\\Out");
    }
    // From now on this read of disk 2 fails, counted from 1 in `reads`.
    void FailAtRead(int number, int error) {
        reads = 0;
        files.before = [=, this](const std::string& call, const std::string& path) {
            if (call == "Read" && path.starts_with("A:") && box.Inserted() == 1 &&
                ++reads == number) {
                RaiseError(error);
            }
        };
    }
    void PutFiles() {
        files.Put("C:\\Data\\a.txt", "first");
        files.Put("C:\\Data\\big", Noise(5000, 7));
        files.Put("C:\\Data\\empty", "");
        files.Put("C:\\Data\\Sub\\prose", Prose(4000));
        files.PutFolder("C:\\Data\\Sub\\Nothing in it");
        files.PutZeros("C:\\Data\\zeros", 2 * zip::kChunkSize + 77);
    }

    Feeder feeder{box};
    zip::ExtractOptions extract;
    Recorder restored_events;
    std::int32_t failed = 0;
    int reads = 0;
};

}  // namespace vantrel::test
