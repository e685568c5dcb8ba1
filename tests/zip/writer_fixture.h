// Shared by the tests of the archive writer: a disk in memory with C:\Data to back up into
// C:\Backup\Weekly.zip, and a recorder of all events of a run.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <cstdlib>
#include <deque>
#include <functional>
#include <limits>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/memory_file_system.h"
#include "tests/support/test_machine.h"
#include "tests/zip/archive_reader.h"
#include "tests/zip/sample_data.h"
#include "zip/writer/archive_writer.h"

namespace vantrel::test {

using zip::MessageKind;
using zip::RunOutcome;
using Strings = std::vector<std::string>;

// Answers questions in order with the results of `answers`, then with Cancel.
class ScriptedQuestions : public zip::Questions {
  public:
    std::deque<std::function<bool()>> answers;
    std::vector<std::string> asked;

    // Answers the next question with Retry after `action`.
    void RetryAfter(const std::function<void()>& action) {
        answers = {[action] {
            action();
            return true;
        }};
    }
    bool AskRetry(const std::string& text) override {
        asked.push_back(text);
        if (answers.empty()) {
            return false;
        }
        const auto answer = answers.front();
        answers.pop_front();
        return answer();
    }
};

class Recorder : public zip::RunEvents {
  public:
    std::vector<int> overall;
    std::vector<int> of_file;
    std::vector<zip::ComponentMessage> messages;
    std::vector<zip::RunFigures> figures;
    std::vector<std::thread::id> threads;
    std::size_t cancel_at = 0;  // the n-th overall event cancels, from 1; 0: none
    std::function<void()> on_overall;
    bool wants_each_file = true;
    zip::Questions* questions = nullptr;

    void OnProgress(int percent, bool& cancel) override {
        overall.push_back(percent);
        threads.push_back(std::this_thread::get_id());
        cancel = overall.size() == cancel_at;
        if (on_overall) {
            on_overall();
        }
    }
    void OnFileProgress(int percent) override { of_file.push_back(percent); }
    void OnMessage(const zip::ComponentMessage& message) override { messages.push_back(message); }
    void OnFigures(const zip::RunFigures& now) override { figures.push_back(now); }
    bool WantsEachFile() const override { return wants_each_file; }
    zip::Questions* QuestionHandler() override { return questions; }

    std::vector<std::string> Texts(zip::MessageKind kind) const {
        std::vector<std::string> texts;
        for (const auto& message : messages) {
            if (message.kind == kind) {
                texts.push_back(message.text);
            }
        }
        return texts;
    }
};

// Calls of the file system with this name, for paths that begin with `path`, counted from 1.
struct Calls {
    std::string name;
    std::string path{};
    int first = 1;
    int last = std::numeric_limits<int>::max();
};
// From now on `action` runs before these calls, on their thread.
inline void BeforeCalls(MemoryFileSystem& files, const Calls& calls,
                        const std::function<void()>& action) {
    const auto count = std::make_shared<std::atomic<int>>(0);
    files.before = [=](const std::string& call, const std::string& path) {
        if (call == calls.name && path.starts_with(calls.path)) {
            const int number = ++*count;
            if (calls.first <= number && number <= calls.last) {
                action();
            }
        }
    };
}
// From now on these calls fail.
inline void FailCalls(MemoryFileSystem& files, const Calls& calls, int error) {
    BeforeCalls(files, calls, [error] { RaiseError(error); });
}

class WriterTest : public ::testing::Test {
  protected:
    WriterTest() {
        options.archive = "C:\\Backup\\Weekly.zip";
        options.source = {"C:\\Data", "*.*", true};
        options.threads = 3;
        files.PutFolder("C:\\Backup");
        files.PutFolder("C:\\Data");
    }

    platform::Machine Machine() { return WithFiles(machine.machine(), files); }
    zip::RunOutcome Run() {
        result = zip::WriteArchive(Machine(), options, events);
        return result.outcome;
    }
    ReadResult Archive() const { return ReadArchive(files.Content(options.archive)); }

    TestMachine machine;
    MemoryFileSystem files;
    zip::WriterOptions options;
    Recorder events;
    ScriptedQuestions questions;
    zip::WriterResult result;
};

// Files on a real disk, for other programs to read.
class RealFilesTest : public ::testing::Test {
  protected:
    RealFilesTest() {
        machine.PutFile("C:\\Data\\a.txt", "first");
        machine.PutFile("C:\\Data\\empty.txt", "");
        machine.PutFile("C:\\Data\\Docs\\prose.txt", Prose(70000));
        machine.PutFile("C:\\Data\\\xC3\xA4\xE2\x82\xAC.txt", "umlaut and euro");
        machine.MakeFolders("C:\\Data\\Empty");
        options.source = {"C:\\Data", "*.*", true};
    }
    // The path on the host, quoted.
    std::string Quoted(const std::string& path) const { return "'" + machine.HostPath(path) + "'"; }
    // Runs `command` with `file` in place of "@"; 0 is success.
    int Shell(std::string command, const std::string& file) const {
        command.replace(command.find('@'), 1, Quoted(file));
        return std::system((command + " >/dev/null").c_str());
    }

    TestMachine machine;
    zip::WriterOptions options;
    Recorder events;
};

}  // namespace vantrel::test
