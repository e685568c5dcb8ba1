#include "restore/protected_pass.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>
#include <set>

#include "backupset/clsFiles.h"
#include "common/error.h"
#include "common/path.h"
#include "log/clsLog.h"
#include "protect/clsCfg.h"

namespace vantrel {

namespace {

// `path` with its short (8.3) names replaced by the long ones. Every short name that the system
// makes contains "~". The name of a folder that cannot be read stays as it is.
std::string WithLongNames(forms::Program& program, const std::string& path) {
    const std::string spelled = path::Normalize(path);
    if (spelled.empty() || spelled.find('~') == std::string::npos) {
        return path;
    }
    std::string with_long_names;
    for (const std::string& folder : path::Ancestors(spelled)) {
        std::string name = path::Name(folder);
        try {
            const auto found = program.machine.files.Find(folder);
            if (found && !with_long_names.empty()) {
                name = found->name;
            }
        } catch (const Error&) {
            // A folder that cannot be read cannot be written into either.
        }
        with_long_names = with_long_names.empty() ? folder : path::Join(with_long_names, name);
    }
    return with_long_names;
}

// The target folders, each once: first those of the stored names, in their order, then those that
// the component writes into, which differ for names that no file can have.
std::vector<std::string> TargetPaths(forms::Program& program, const RestoreTargets& targets,
                                     const std::string& destination) {
    const std::string root = path::WithBackslash(destination);
    std::vector<std::string> found;
    std::set<std::string> seen;
    const auto add = [&](const std::string& path) {
        if (seen.insert(path).second) {
            found.push_back(path);
        }
    };
    for (std::string entry : targets.entries) {
        std::replace(entry.begin(), entry.end(), '/', '\\');
        add(root + path::FolderPart(entry));
    }
    const auto folders = targets.folders ? targets.folders() : std::vector<std::string>();
    for (const std::string& real_root :
         {root, path::WithBackslash(WithLongNames(program, destination))}) {
        for (const std::string& folder : folders) {
            add(folder.empty() ? real_root : path::WithBackslash(real_root + folder));
        }
    }
    return found;
}

// The first of "C:\DATA_001" to "C:\DATA_999" that is not a folder; nothing when all are.
std::optional<std::string> FreeName(forms::Program& program, const std::string& folder) {
    constexpr int kMax = 999;
    for (int n = 1; n <= kMax; ++n) {
        std::array<char, 16> number{};
        std::snprintf(number.data(), number.size(), "_%03d", n);
        std::string name = folder + number.data();
        if (!clsFiles(program).Exist(name, false)) {
            return name;
        }
    }
    return std::nullopt;
}

// The existence test is also false when the folder could not be read. Such a folder could still be
// overwritten, so it is looked up a second time, and an error of that ends the restore.
bool FolderExists(forms::Program& program, const std::string& folder) {
    if (clsFiles(program).Exist(folder, false)) {
        return true;
    }
    const auto found = program.machine.files.Find(folder);
    return found && found->IsFolder();
}

void RenameAside(forms::Program& program, const std::string& folder) {
    const auto name = FreeName(program, folder);
    if (!name) {
        return;
    }
    program.machine.files.Rename(folder, *name);
    clsLog log(program);
    log.WriteToLog("Backup", true, "Restore process about to Overwrite " + folder);
    log.WriteToLog("Backup", false, folder + " renamed to " + *name);
}

// The spellings under which a path may contain a protected folder.
class Spellings {
  public:
    Spellings(forms::Program& program, const std::string& folder) {
        for (const std::string& spelled : {folder, WithLongNames(program, folder)}) {
            upper_.push_back(program.machine.code_page.Upper(spelled));
            folded_.push_back(program.machine.code_page.Fold(spelled));
        }
    }
    // Compares also by the file system's rules: letters whose capitals the code page lacks are
    // equal there.
    bool OccurIn(const std::string& upper_path, const std::string& folded_path) const {
        return AnyIn(upper_, upper_path) || AnyIn(folded_, folded_path);
    }

  private:
    static bool AnyIn(const std::vector<std::string>& parts, const std::string& path) {
        return std::any_of(parts.begin(), parts.end(), [&](const std::string& part) {
            return path.find(part) != std::string::npos;
        });
    }

    std::vector<std::string> upper_, folded_;
};

}  // namespace

void RenameProtectedFolders(forms::Program& program, const RestoreTargets& targets,
                            const std::string& destination) {
    const auto folders = clsCfg(program).ReturnProtected();
    if (folders.empty()) {
        return;
    }
    std::vector<Spellings> spellings;
    spellings.reserve(folders.size());
    for (const std::string& folder : folders) {
        spellings.emplace_back(program, folder);
    }
    auto& code_page = program.machine.code_page;
    for (const std::string& target : TargetPaths(program, targets, destination)) {
        const std::string upper = code_page.Upper(target);
        const std::string folded = code_page.Fold(target);
        for (std::size_t i = 0; i < folders.size(); ++i) {
            if (!spellings[i].OccurIn(upper, folded)) {
                continue;
            }
            if (FolderExists(program, folders[i])) {
                RenameAside(program, folders[i]);
            }
        }
    }
}

}  // namespace vantrel
