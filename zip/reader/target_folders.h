// Folders below the destination of an extraction, and the names in them. Names are compared as the
// file system compares them: by the fold of the code page, and by short (8.3) names where a folder
// exists already.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/machine.h"
#include "zip/records/entry_list.h"

namespace vantrel::zip {

// The same key for all spellings of a name in the folder `number`. Complete paths as keys would
// need memory in the square of the depth of an archive's folders.
std::string KeyInFolder(platform::CodePage& code_page, std::uint32_t number,
                        const std::string& name);

// Whether `name` is only the short (8.3) name of `found`, which was found under it.
bool IsShortNameOf(platform::CodePage& code_page, const platform::FileInfo& found,
                   const std::string& name);

// The names that entries of an archive have taken in their folders, as a hash table without the
// names: a million take 17 MB. The owner of a name is a number of the caller's, who can repeat the
// key of each. One flat table, because every entry is looked up: that costs one cache miss, where a
// map made of nodes costs three. Belongs to one thread.
class TakenNames {
  public:
    using KeyOf = std::function<std::string(std::uint32_t owner)>;

    // `expected` names fit before the table must grow. `key_of` returns the key that an owner took
    // its name with; it is rarely called.
    TakenNames(std::size_t expected, KeyOf key_of);

    // The owner of a name, whose `key` comes from KeyInFolder: `owner` if it was free, and is taken
    // now. Less than 2^32 - 1.
    std::uint32_t Take(std::string_view key, std::uint32_t owner);

  private:
    struct Slot {
        std::uint32_t hash = 0;   // of the key: few keys are compared, and growing needs none
        std::uint32_t taken = 0;  // the owner and 1; 0 where the slot is free
    };
    void Grow();

    KeyOf key_of_;
    std::vector<Slot> slots_;  // a power of two, at least half of it free
    std::size_t count_ = 0;
};

// Makes the folders of an extraction: component by component, each looked at once, never entered
// through a link. Safe from any thread.
class FolderMaker {
  public:
    using ReportRenamed = std::function<void(const std::string& folder, const std::string& name)>;

    // `report_renamed` gets folder and new name when a name is another folder's short name.
    FolderMaker(const platform::Machine& machine, std::string destination,
                ReportRenamed report_renamed);

    // Makes the missing folders of `path` ("" is the destination itself, which must exist) and
    // returns the full path. Raises 75 when a file or a link has the name of a folder, with a
    // description for the user, and what the file system raises.
    std::string Ensure(const std::string& path);

  private:
    struct Made {
        std::string name;        // on disk
        std::uint32_t number{};  // its own, from 1; the destination is 0
        bool is_new = false;     // made by this run: it holds only what this run has put into it
    };
    Made Enter(const std::string& parent, bool parent_is_new, std::string name);
    bool MakeNew(const std::string& full_path);

    const platform::Machine& machine_;
    std::string destination_;
    ReportRenamed report_renamed_;
    std::mutex mutex_;
    std::unordered_map<std::string, Made> made_;  // by KeyInFolder
};

// The folders that extracting `entries` into `destination` makes or writes into, by the rules of
// FolderMaker, for callers who must unprotect them first. Paths below the destination ("" is that
// itself), each once, in the order of the entries. An entry whose name is refused has none. Changes
// nothing and raises nothing: of a folder that cannot be looked at the name is taken unchanged.
std::vector<std::string> TargetFolders(const platform::Machine& machine, const EntryList& entries,
                                       const std::string& destination);

}  // namespace vantrel::zip
