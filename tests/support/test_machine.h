// A machine for tests: a real (temporary) folder behind every drive letter, and a clock, a process,
// settings and drives that a test sets as it likes and that remember what was asked of them.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/machine.h"
#include "tests/support/recording_mail.h"

namespace vantrel::test {

// Thrown by TestProcess::End, so that a test sees the program ending.
struct ProgramEnded {
    int exit_code = 0;
};

class TestClock : public platform::Clock {
  public:
    // Starts at 2026-11-15 13:05:09, local time equal to UTC; stands still until it is set or
    // advanced.
    void Set(int year, int month, int day, int hour = 12, int minute = 0, int second = 0);
    void Advance(std::chrono::milliseconds time);

    platform::LocalTime Now() override;
    platform::Ticks UtcNow();
    platform::LocalTime ToLocal(platform::Ticks utc) override;
    std::chrono::milliseconds SteadyNow() override;
    // Advances the clock instead of waiting.
    void Sleep(std::chrono::milliseconds time) override;
    // Really waits, a moment at a time, and advances the clock by what was asked for.
    void Wait(std::condition_variable& signal, std::unique_lock<std::mutex>& lock,
              std::chrono::milliseconds time) override;
    // Every time that Wait was asked for, in order.
    std::vector<std::chrono::milliseconds> Waits() const;

    TestClock();
    ~TestClock() override;

  private:
    struct State;
    std::unique_ptr<State> state_;
};

class TestProcess : public platform::Process {
  public:
    std::string application_folder = "C:\\Vantrel";
    std::string base_name = "Vantrel";
    std::string command_line;
    bool previous_instance = false;
    int previous_instance_questions = 0;

    std::string ApplicationFolder() override { return application_folder; }
    std::string ExecutableBaseName() override { return base_name; }
    std::string CommandLine() override { return command_line; }
    std::string windows_folder = "C:\\WINDOWS";
    std::string WindowsFolder() override { return windows_folder; }
    bool PreviousInstance() override {
        ++previous_instance_questions;
        return previous_instance;
    }
    int processors = 2;
    int Processors() override { return processors; }
    [[noreturn]] void End(int exit_code) override { throw ProgramEnded{exit_code}; }
};

class TestSettings : public platform::Settings {
  public:
    std::map<std::string, std::string> values;  // "Section/Key"
    int reads = 0;
    int writes = 0;
    std::function<void()> on_write;  // before the value changes
    std::optional<std::string> Read(const std::string& section, const std::string& key) override;
    void Write(const std::string& section, const std::string& key,
               const std::string& value) override;
    NumberFormat numbers;
    NumberFormat Numbers() override { return numbers; }
};

class TestDrives : public platform::Drives {
  public:
    struct Drive {
        int type = platform::drive_type::kFixed;
        platform::DiskSpace space{8, 512, 100000, 200000};
        std::uint64_t free_bytes = 100000ull * 4096;
        std::string label{};
        bool ready = true;  // no space and no label otherwise
    };
    std::map<char, Drive> drives;  // by capital letter
    std::vector<std::string> space_questions;

    int Type(const std::string& root) override;
    platform::DiskSpace Space(const std::string& root) override;
    std::uint64_t FreeBytes(const std::string& folder) override;
    std::string Label(const std::string& root) override;
};

class TestShell : public platform::Shell {
  public:
    std::string executable = "C:\\Browser\\browser.exe";
    int answer = 42;
    std::vector<std::string> asked;
    std::vector<std::string> opened;
    std::vector<platform::ShellVerb> verbs;  // one for each of these
    std::function<void()> on_find;

    std::string ProgramFor(const std::string& file) override {
        asked.push_back(file);
        if (on_find) {
            on_find();
        }
        return executable;
    }
    int Open(const std::string& target, platform::ShellVerb verb) override {
        opened.push_back(target);
        verbs.push_back(verb);
        return answer;
    }
};

// For arranging: missing folders are made first.
void MakeFolders(platform::FileSystem& files, const std::string& path);
void PutFile(platform::FileSystem& files, const std::string& path, const std::string& bytes);

// Drive C: (fixed) with an empty application folder C:\Vantrel, nothing else. Every other letter
// has no drive until AddDrive. Removes its folder from the host when it goes.
class TestMachine {
  public:
    TestMachine();
    ~TestMachine();
    TestMachine(const TestMachine&) = delete;
    TestMachine& operator=(const TestMachine&) = delete;

    TestProcess process;
    TestClock clock;
    TestSettings settings;
    TestDrives drives;
    TestShell shell;
    RecordingMail mail;

    // The machine over the services above; With() exchanges some of them.
    platform::Machine& machine();
    platform::FileSystem& files();
    platform::CodePage& code_page();

    // A drive with an empty root; not ready (an empty floppy drive) when `ready` is false.
    void AddDrive(char letter, int type, const std::string& label = "", bool ready = true);
    // Takes the disk out of a drive, or puts it back.
    void SetReady(char letter, bool ready);
    // The host's path of a Windows path (its file need not exist).
    std::string HostPath(const std::string& path) const;

    // Shorthand for arranging and looking; folders are made as needed.
    void MakeFolders(const std::string& path) { test::MakeFolders(files(), path); }
    void PutFile(const std::string& path, const std::string& bytes) {
        test::PutFile(files(), path, bytes);
    }
    std::string Content(const std::string& path) const;
    bool Exists(const std::string& path) const;
    // Names in a folder, sorted; folders end in "\".
    std::vector<std::string> Names(const std::string& folder) const;

  private:
    struct State;
    std::unique_ptr<State> state_;
};

// Services in the place of a machine's own, which stay where this has none. They must outlive the
// machine that gets them.
struct StandIns {
    platform::Process* process = nullptr;
    platform::FileSystem* files = nullptr;
    platform::Drives* drives = nullptr;
    platform::Clock* clock = nullptr;
    platform::CodePage* code_page = nullptr;
    platform::Settings* settings = nullptr;
};

inline platform::Machine With(const StandIns& other, const platform::Machine& machine) {
    return {other.process != nullptr ? *other.process : machine.process,
            other.files != nullptr ? *other.files : machine.files,
            other.drives != nullptr ? *other.drives : machine.drives,
            other.clock != nullptr ? *other.clock : machine.clock,
            other.settings != nullptr ? *other.settings : machine.settings,
            other.code_page != nullptr ? *other.code_page : machine.code_page,
            machine.shell,
            machine.mail_session,
            machine.mail_messages};
}

inline platform::Machine WithFiles(const platform::Machine& machine, platform::FileSystem& files) {
    return With({.files = &files}, machine);
}

}  // namespace vantrel::test
