// Any bytes as an archive, up to its list of entries: the end records, the central directory, the
// names, and the plan that is made of it all.
#include <cstdint>
#include <string>
#include <string_view>

#include "common/dos_mask.h"
#include "platform/host/host_machine.h"
#include "tests/fuzz/fuzz_input.h"
#include "tests/zip/zip_builder.h"
#include "zip/reader/extraction_plan.h"
#include "zip/records/directory_reader.h"

namespace {

using vantrel::test::Demand;
using vantrel::zip::Directory;
using vantrel::zip::ExtractionPlanner;

// A path below the destination: no component that Windows or a host takes for something else.
bool IsSafe(std::string_view path) {
    for (bool more = true; more;) {
        const std::size_t end = path.find('\\');
        const std::string_view component = path.substr(0, end);
        more = end != std::string_view::npos;
        path.remove_prefix(more ? end + 1 : path.size());
        if (component.empty() || component.back() == '.' || component.back() == ' ') {
            return false;
        }
        for (const char c : component) {
            const bool forbidden = std::string_view("/:*?\"<>|").find(c) != std::string_view::npos;
            if (forbidden || static_cast<unsigned char>(c) < ' ') {
                return false;
            }
        }
    }
    return true;
}

void CheckPlan(const Directory& directory, const ExtractionPlanner& planner) {
    const auto& plan = planner.Plan();
    for (const auto* list : {&plan.files, &plan.folders}) {
        for (const auto& planned : *list) {
            Demand(planned.index < directory.entries.size());
            Demand(IsSafe(planner.PathOf(planned)));
        }
    }
    Demand(plan.files.size() + plan.folders.size() <= directory.entries.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static vantrel::platform::HostMachine machine;
    vantrel::platform::CodePage& code_page = machine.machine().code_page;
    vantrel::test::StringSource source(std::string(reinterpret_cast<const char*>(data), size));
    const Directory directory =
        vantrel::zip::ReadDirectory(source, code_page, machine.machine().clock);
    // A record takes 46 bytes, whatever an archive states.
    Demand(directory.entries.size() <= size / 46);
    const vantrel::DosMask everything("*.*");
    ExtractionPlanner planner(directory, everything, code_page, [](auto) {});
    planner.PlanAll();
    CheckPlan(directory, planner);
    return 0;
}
