// What a program knows about itself, asked of a real second program: the probe beside this one.
#include <algorithm>
#include <bit>

#include "tests/platform/win32_support.h"

namespace vantrel::test {
namespace {

std::string OwnFolder() {
    platform::Win32Machine machine;
    return machine.machine().process.ApplicationFolder();
}

// A running probe. Its input stays open until Finish.
class Probe {
  public:
    // Starts `exe` with exactly `command_line`.
    Probe(const std::string& exe, const std::string& command_line) {
        SECURITY_ATTRIBUTES inherited{sizeof(inherited), nullptr, TRUE};
        HANDLE in = nullptr, to_in = nullptr, from_out = nullptr, out = nullptr;
        EXPECT_TRUE(CreatePipe(&in, &to_in, &inherited, 0));
        EXPECT_TRUE(CreatePipe(&from_out, &out, &inherited, 0));
        SetHandleInformation(to_in, HANDLE_FLAG_INHERIT, 0);
        SetHandleInformation(from_out, HANDLE_FLAG_INHERIT, 0);
        input_ = platform::ObjectHandle(to_in);
        output_ = platform::ObjectHandle(from_out);
        STARTUPINFOW startup{};
        startup.cb = sizeof(startup);
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdInput = in;
        startup.hStdOutput = out;
        PROCESS_INFORMATION started{};
        std::wstring line = platform::Wide(command_line);
        EXPECT_TRUE(CreateProcessW(platform::Wide(exe).c_str(), line.data(), nullptr, nullptr, TRUE,
                                   0, nullptr, nullptr, &startup, &started))
            << exe << ": " << GetLastError();
        CloseHandle(in);
        CloseHandle(out);
        CloseHandle(started.hThread);
        process_ = platform::ObjectHandle(started.hProcess);
        for (std::string* fact : {&folder, &base_name, &command, &previous}) {
            *fact = Line();
        }
    }

    // Lets the probe end; its exit code. What it still printed is in `last_words`.
    DWORD Finish() {
        input_.Close();
        last_words = Line();
        WaitForSingleObject(process_.Get(), INFINITE);
        DWORD code = 0;
        GetExitCodeProcess(process_.Get(), &code);
        return code;
    }

    // The probe's answer about a previous instance once it has released its own.
    std::string ReleaseInstance() {
        DWORD written = 0;
        EXPECT_TRUE(WriteFile(input_.Get(), "r", 1, &written, nullptr));
        return Line();
    }

    std::string folder, base_name, command, previous, last_words;

  private:
    std::string Line() {
        std::string line;
        char unit = 0;
        DWORD got = 0;
        while (ReadFile(output_.Get(), &unit, 1, &got, nullptr) && got == 1 && unit != '\n') {
            line += unit;
        }
        return line;
    }

    platform::ObjectHandle input_, output_, process_;
};

class Win32Process : public Win32Test {
  protected:
    static std::string ProbePath() { return OwnFolder() + "\\process_probe.exe"; }
    // The probe copied under another name into the test's folder.
    std::string Copy(const std::string& name) {
        platform::WriteWholeFile(files(), In(name), Content(ProbePath()));
        return In(name);
    }
    static std::string CommandSeen(const std::string& after_name) {
        std::string line(1, '"');
        line.append(ProbePath()).append(1, '"').append(after_name);
        Probe probe(ProbePath(), line);
        EXPECT_EQ(probe.Finish(), 7u);
        return probe.command;
    }
};

TEST_F(Win32Process, KnowsItsFolderAndBaseName) {
    const std::string exe = Copy("My.Program \xC3\xA4.exe");
    Probe probe(exe, "x");
    EXPECT_EQ(probe.folder, folder());
    EXPECT_EQ(probe.base_name, "My.Program \xC3\xA4");
    EXPECT_EQ(probe.Finish(), 7u);
}

TEST_F(Win32Process, FolderOfAProgramInARootEndsInASeparator) {
    const std::string root = Arranged("VANTREL_OTHER_DRIVE") + "\\";
    const std::string exe = root + "probe.exe";
    platform::WriteWholeFile(files(), exe, Content(ProbePath()));
    {
        Probe probe(exe, "probe");
        EXPECT_EQ(probe.folder, root);
        EXPECT_EQ(probe.Finish(), 7u);
    }
    files().RemoveFile(exe);
}

TEST_F(Win32Process, CommandLineIsWhatFollowsTheName) {
    EXPECT_EQ(CommandSeen(""), "");
    EXPECT_EQ(CommandSeen(" Daily.INI"), "Daily.INI");
    EXPECT_EQ(CommandSeen("   T\xC3\xA4glich \"a\" .ini "), "T\xC3\xA4glich \"a\" .ini ");
}

TEST_F(Win32Process, CommandLineOfBlanksOnlyLosesExactlyOne) {
    EXPECT_EQ(CommandSeen(" "), "");
    EXPECT_EQ(CommandSeen("   "), "  ");
}

TEST_F(Win32Process, EndIsAtOnceAndFlushesNothing) {
    Probe probe(ProbePath(), "probe");
    EXPECT_EQ(probe.Finish(), 7u);
    EXPECT_EQ(probe.last_words, "");
}

TEST_F(Win32Process, RunsOnTheProcessorsThatItMayUse) {
    platform::Win32Machine machine;
    platform::Process& process = machine.machine().process;
    DWORD_PTR before = 0;
    DWORD_PTR all = 0;
    ASSERT_TRUE(GetProcessAffinityMask(GetCurrentProcess(), &before, &all));
    EXPECT_EQ(process.Processors(), std::popcount(before));
    ASSERT_TRUE(SetProcessAffinityMask(GetCurrentProcess(), before & (~before + 1)));
    EXPECT_EQ(process.Processors(), 1);
    ASSERT_TRUE(SetProcessAffinityMask(GetCurrentProcess(), before));
}

TEST_F(Win32Process, PreviousInstanceIsAnotherRunningCopy) {
    Probe first(ProbePath(), "probe");
    EXPECT_EQ(first.previous, "00");
    std::string shouted = ProbePath();
    std::transform(shouted.begin(), shouted.end(), shouted.begin(),
                   [](char unit) { return unit >= 'a' && unit <= 'z' ? char(unit - 32) : unit; });
    Probe second(shouted, "probe");
    EXPECT_EQ(second.previous, "11");
    EXPECT_EQ(second.Finish(), 7u);
    EXPECT_EQ(first.Finish(), 7u);
    Probe third(ProbePath(), "probe");
    EXPECT_EQ(third.previous, "00");
    EXPECT_EQ(third.Finish(), 7u);
}

TEST_F(Win32Process, ReleasedInstanceIsNoPreviousOneAndKeepsItsOwnAnswer) {
    Probe first(ProbePath(), "probe");
    Probe second(ProbePath(), "probe");
    EXPECT_EQ(first.ReleaseInstance(), "0");
    EXPECT_EQ(second.ReleaseInstance(), "1");
    Probe third(ProbePath(), "probe");
    EXPECT_EQ(third.previous, "00");
    Probe fourth(ProbePath(), "probe");
    EXPECT_EQ(fourth.previous, "11");
    for (Probe* each : {&fourth, &third, &second, &first}) {
        EXPECT_EQ(each->Finish(), 7u);
    }
}

TEST_F(Win32Process, ProgramElsewhereIsNoPreviousInstance) {
    Probe first(ProbePath(), "probe");
    Probe other(Copy("process_probe.exe"), "probe");
    EXPECT_EQ(other.previous, "00");
    EXPECT_EQ(other.Finish(), 7u);
    EXPECT_EQ(first.Finish(), 7u);
}

}  // namespace
}  // namespace vantrel::test
