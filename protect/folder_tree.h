// The folder tree of the Secure Data tab: every folder of a drive, and which of them are protected.
#pragma once

#include <string>

#include "forms/controls.h"
#include "forms/lists.h"

namespace vantrel {

// Adds all folders below `path` to `tree`, depth first, each level in the order of a folder list:
// the folder's name as text, its full path as a folder list spells it as Tag, the protected picture
// or the ordinary pair. At the top level (`parent` empty) they become root nodes, and `progress`
// fills with the share of them that is reached, and is emptied at the end; otherwise they become
// children of the node whose index `parent` is written as. All at once: nothing is left to be read
// when a node is opened. Esc stops the reading; the nodes added so far stay, and the result is
// false. No handler runs meanwhile. Every error goes through the shared error reporter; a missing
// or damaged protected-folder list is one as soon as there is a folder.
bool Create_DirectoryStructure(forms::Tree& tree, forms::Panel& progress, const std::string& path,
                               const std::string& parent);

}  // namespace vantrel
