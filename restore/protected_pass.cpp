#include "restore/protected_pass.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>
#include <set>

#include "backupset/clsFiles.h"
#include "backupset/clsINI.h"
#include "backupset/clsString.h"
#include "log/clsLog.h"
#include "protect/clsCfg.h"

namespace vantrel {

namespace {

// The distinct folders that the entries go into, in the order in which they are first met. Archives
// hold many entries a folder; the folders decide.
std::vector<std::string> TargetFolders(forms::Program& program,
                                       const std::vector<std::string>& entries,
                                       const std::string& destination) {
    clsINI paths(program);
    const std::string root = clsString().Backslash(destination);
    std::vector<std::string> folders;
    std::set<std::string> seen;
    for (std::string entry : entries) {
        std::replace(entry.begin(), entry.end(), '/', '\\');
        std::string folder = root + paths.Backup_Parts(entry, clsINI::kFolder);
        if (seen.insert(folder).second) folders.push_back(std::move(folder));
    }
    return folders;
}

// "C:\DATA_001" to "C:\DATA_999": the first that is no folder yet; nothing when all are.
std::optional<std::string> FreeName(forms::Program& program, const std::string& folder) {
    constexpr int kMost = 999;
    for (int n = 1; n <= kMost; ++n) {
        std::array<char, 16> number{};
        std::snprintf(number.data(), number.size(), "_%03d", n);
        std::string name = folder + number.data();
        if (!clsFiles(program).Exist(name, false)) return name;
    }
    return std::nullopt;
}

// The existence test says no, too, when it could not look. A folder that is there all the same
// would be overwritten, so it is looked for a second time, and what hinders that ends the restore.
bool IsThere(forms::Program& program, const std::string& folder) {
    if (clsFiles(program).Exist(folder, false)) return true;
    const auto found = program.machine.files.Find(folder);
    return found && found->IsFolder();
}

void RenameAside(forms::Program& program, const std::string& folder) {
    const auto name = FreeName(program, folder);
    if (!name) return;
    program.machine.files.Rename(folder, *name);
    clsLog log(program);
    log.WriteToLog("Backup", true, "Restore process about to Overwrite " + folder);
    log.WriteToLog("Backup", false, folder + " renamed to " + *name);
}

}  // namespace

void RenameProtectedFolders(forms::Program& program, const std::vector<std::string>& entries,
                            const std::string& destination) {
    const auto entries_of_list = clsCfg(program).ReturnProtected();
    if (entries_of_list.empty()) return;
    auto& code_page = program.machine.code_page;
    for (const std::string& target : TargetFolders(program, entries, destination)) {
        const std::string upper_target = code_page.Upper(target);
        for (const std::string& folder : entries_of_list) {
            if (upper_target.find(code_page.Upper(folder)) == std::string::npos) continue;
            if (IsThere(program, folder)) RenameAside(program, folder);
        }
    }
}

}  // namespace vantrel
