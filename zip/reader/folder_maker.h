// The folders below the destination of an extraction: made component by component, each looked at
// once, never entered through a link. Safe from any thread.
#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <unordered_map>

#include "platform/machine.h"

namespace vantrel::zip {

class FolderMaker {
  public:
    // `told_alias` gets folder and new name when a name meets another folder's short alias.
    FolderMaker(const platform::Machine& machine, std::string destination,
                std::function<void(const std::string& folder, const std::string& name)> told_alias);

    // Makes the missing folders of `path` ("" is the destination itself, which must exist) and
    // returns where they are. Raises 75 when a file or a link is in the way, with words for the
    // user, and what the disk raises.
    std::string Ensure(const std::string& path);

    // Whether the destination itself is not there any more.
    bool DestinationIsGone();

  private:
    struct Made {
        std::string name;        // on disk
        std::uint32_t number{};  // its own, from 1; the destination is 0
        bool is_new = false;  // by this run, so that nothing can be in it that we did not put there
    };
    Made Enter(const std::string& parent, bool parent_is_new, std::string name);
    bool MakeNew(const std::string& full_path);

    platform::Machine machine_;
    std::string destination_;
    std::function<void(const std::string&, const std::string&)> told_alias_;
    std::mutex mutex_;
    std::unordered_map<std::string, Made> made_;  // by KeyInFolder
};

// One key for all spellings of a name in the folder `number`. Whole paths as keys would take the
// square of the memory where an archive's folders are deep.
std::string KeyInFolder(platform::CodePage& code_page, std::uint32_t number,
                        const std::string& name);

// Whether something that was found under a name bears another one: `name` is then its short alias.
bool IsAliasOf(platform::CodePage& code_page, const platform::FileInfo& found,
               const std::string& name);

}  // namespace vantrel::zip
