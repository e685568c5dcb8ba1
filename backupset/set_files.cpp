#include "backupset/set_files.h"

namespace vantrel {

std::vector<std::string> SetFileNames(forms::Program& program) {
    constexpr std::string_view kExtension = ".INI";
    std::vector<std::string> names;
    auto& machine = program.machine;
    machine.files.List(machine.process.ApplicationFolder(), [&](const platform::FileInfo& file) {
        const std::string folded = machine.code_page.Fold(file.name);
        const bool plain = !file.IsFolder() && !file.IsHiddenOrSystem();
        if (plain && folded.ends_with(kExtension)) names.push_back(file.name);
        return true;
    });
    return names;
}

}  // namespace vantrel
