// A program for the tests to start: prints what it knows about itself, waits until its input is
// closed, and ends at once with exit code 7. For a line of input it releases its instance and
// prints the answer about a previous one again.
#include <fcntl.h>
#include <io.h>

#include <cstdio>

#include "platform/win32/win32_machine.h"

namespace {

struct Farewell {
    ~Farewell() { std::puts("cleaned up"); }
};

}  // namespace

int main() {
    static const Farewell farewell;
    _setmode(_fileno(stdout), _O_BINARY);
    vantrel::platform::Win32Machine machine;
    auto& process = machine.machine().process;
    // A second machine in the process must not take the first for another copy of the program.
    vantrel::platform::Win32Machine second;
    std::printf("%s\n%s\n%s\n%d%d\n", process.ApplicationFolder().c_str(),
                process.ExecutableBaseName().c_str(), process.CommandLine().c_str(),
                process.PreviousInstance(), second.machine().process.PreviousInstance());
    std::fflush(stdout);
    while (std::getchar() != EOF) {
        machine.ReleaseInstance();
        std::printf("%d\n", process.PreviousInstance());
        std::fflush(stdout);
    }
    std::fputs("never flushed", stdout);
    process.End(7);
}
