// The protected-folder list: folders that a restore must never overwrite, one a line below a fixed
// header of seven lines, in upper case. Keeps no state; each operation opens the file and closes
// it. Operations that read the list raise 53 when the file is missing, and 62 with its path when it
// has fewer lines than the header; the damaged list stays as it is.
#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "forms/lists.h"
#include "forms/program.h"

namespace vantrel {

class clsCfg {
  public:
    // Picture numbers of a folder's node in the Secure Data tree.
    static constexpr int kClosedFolder = 1;
    static constexpr int kOpenFolder = 2;
    static constexpr int kProtectedFolder = 3;

    explicit clsCfg(forms::Program& program) : program_(program) {}

    // Creates or replaces the list with an empty one: the header and one empty line.
    void Create_CFG(const std::string& path);
    // Creates the empty list unless a list exists, which stays as it is. True when it was created.
    bool CreateMissing();
    // All entries in the file's order, without a "\" at their end; empty when there is none.
    std::vector<std::string> ReturnProtected();
    // Whether an entry equals `path` without regard to case. `path` is not trimmed: with a "\" at
    // its end it never matches.
    bool IsProtected(const std::string& path);
    // The entries in upper case, to which IsProtected compares; for a caller with many paths.
    std::unordered_set<std::string> UpperEntries();
    // Drops every entry equal to the Tag of the tree's selected node, and gives the node its
    // ordinary pictures. A root ("C:\") is never dropped: entries lose their last "\", the Tag not.
    void Protected_Delete(forms::Tree& tree);
    // Adds the Tag of the tree's selected node as the last entry, and gives the node the protected
    // picture.
    void Protected_Add(forms::Tree& tree);

    // The file's name in the application folder.
    std::string ListPath() const { return program_.InApplicationFolder("Vantrel.Cfg"); }

  private:
    static std::string EmptyList();
    // The bytes of the list, whose header is complete.
    std::string ReadList();
    // The lines below the header, each without a "\" at its end.
    std::vector<std::string> Lines();
    std::string Upper(const std::string& text) const;

    forms::Program& program_;
};

}  // namespace vantrel
