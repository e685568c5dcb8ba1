// Any bytes as an archive, restored as a whole onto a disk in memory: whatever it holds, nothing
// outside of the destination may change, and what a link leads to may not either.
#include <cstdint>
#include <map>
#include <string>

#include "platform/host/host_machine.h"
#include "tests/fuzz/fuzz_input.h"
#include "tests/support/memory_file_system.h"
#include "tests/support/test_machine.h"
#include "zip/reader/archive_extractor.h"

namespace {

using vantrel::platform::FileInfo;
using vantrel::platform::Machine;
using vantrel::test::MemoryFileSystem;

constexpr const char* kOut = "C:\\Out\\";
// What small archives could blow up to is not looked at beyond this many bytes.
constexpr std::uint64_t kDisk = std::uint64_t{4} << 20;

class Deaf : public vantrel::zip::RunEvents {
  public:
    void OnProgress(int, bool&) override {}
    void OnFileProgress(int) override {}
    void OnMessage(const vantrel::zip::ComponentMessage&) override {}
    vantrel::zip::Questions* QuestionHandler() override { return nullptr; }
};

// A disk in memory takes ".." for a name like any other; a real one would not.
bool LeadsOut(const std::string& path) {
    const bool upwards = path.find("\\..\\") != std::string::npos || path.ends_with("\\..");
    return upwards || path.find_first_of("/:", 2) != std::string::npos;
}

bool IsOutside(const std::string& path) {
    return !path.starts_with(kOut) || path.starts_with(std::string(kOut) + "link\\") ||
           LeadsOut(path);
}

std::map<std::string, std::string> Outside(const MemoryFileSystem& files) {
    std::map<std::string, std::string> seen;
    for (const std::string& path : files.Everything()) {
        if (IsOutside(path)) {
            seen[path] = path.ends_with('\\') ? "" : files.Content(path);
        }
    }
    return seen;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static vantrel::platform::HostMachine host;
    MemoryFileSystem files;
    files.Put("C:\\In.zip", std::string(reinterpret_cast<const char*>(data), size));
    files.Put("C:\\outside", "precious");
    files.Put("C:\\Out\\file", "old");
    files.Put("C:\\Out\\link\\inner", "precious");
    files.Change("C:\\Out\\link", [](FileInfo& info) { info.is_link = true; });
    files.capacity = kDisk + size;
    const auto before = Outside(files);

    const Machine machine = vantrel::test::WithFiles(host.machine(), files);
    Deaf events;
    vantrel::zip::ExtractArchive(
        machine, {.archive = "C:\\In.zip", .destination = "C:\\Out", .threads = 1}, events);
    vantrel::test::Demand(Outside(files) == before);
    return 0;
}
