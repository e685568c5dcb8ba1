// What the tests of spanned archives share: C:\Data goes onto disks in drive A:.
#pragma once

#include "tests/zip/archive_reader.h"
#include "tests/zip/disk_box.h"
#include "tests/zip/writer_fixture.h"

namespace vantrel::test {

// A user at the drive who answers each prompt as a test defines; by default inserts the next disk
// of the box.
class DiskChanger : public zip::Questions {
  public:
    explicit DiskChanger(DiskBox& box) : box_(box) {}

    std::vector<std::string> asked;
    // What to do at the n-th prompt, from 1; true is Retry.
    std::map<std::size_t, std::function<bool()>> at;

    bool AskRetry(const std::string& text) override {
        asked.push_back(text);
        if (const auto found = at.find(asked.size()); found != at.end()) {
            return found->second();
        }
        if (asked.size() > 3000) {
            ADD_FAILURE() << "asked without end: " << text;
            return false;
        }
        return AnswerByDefault(text);
    }
    bool Next() { return Insert(last_ + 1); }
    bool Insert(int number) {
        SetLast(number);
        box_.Insert(number);
        return true;
    }
    // From now on this was the last disk.
    void SetLast(int number) { last_ = number; }

  protected:
    virtual bool AnswerByDefault(const std::string& /*text*/) { return Next(); }

  private:
    DiskBox& box_;
    int last_ = 0;
};

class SpanningTest : public WriterTest {
  protected:
    SpanningTest() {
        options.archive = "A:\\Weekly.zip";
        options.spanning = true;
        options.level = 1;
        options.threads = 1;
        events.questions = &changer;
        box.Insert(0);
    }
    platform::Machine Machine() {
        return With({.files = &files, .drives = &box}, machine.machine());
    }
    zip::RunOutcome Run() {
        result = zip::WriteArchive(Machine(), options, events);
        return result.outcome;
    }
    // The prompt for this disk.
    static std::string Prompt(const std::string& disk, const std::string& note) {
        return "Please insert " + disk + " of Weekly.zip into drive A: and press Retry.\r\n\r\n" +
               note;
    }
    std::vector<std::string> Volumes() { return box.Volumes(options.archive); }
    // Starts over with an empty box of disks of this size.
    void NewBox(std::uint64_t size) {
        box.Eject();
        box.disks.clear();
        box.usual_size = size;
        changer.SetLast(0);
        changer.asked.clear();
        events.messages.clear();
        box.Insert(0);
    }
    void ExpectSource(const SetContents& set) {
        const Strings source = files.Files("C:\\Data");
        for (const std::string& path : source) {
            std::string name = path.substr(8);
            std::replace(name.begin(), name.end(), '\\', '/');
            ASSERT_EQ(set.files.count(name), 1u) << name;
            EXPECT_TRUE(set.files.at(name) == files.Content(path)) << name;
        }
        EXPECT_EQ(set.files.size(), source.size());
    }

    DiskBox box{files};
    DiskChanger changer{box};
};

}  // namespace vantrel::test
