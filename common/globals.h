// The process-wide values that start-up sets before anything else runs. None is saved. Window
// thread only.
#pragma once

#include <string>

namespace vantrel {

struct Globals {
    std::string LogFilePath;  // application folder + "\" + executable base name + ".Log"
    std::string CrLf;         // carriage return + line feed
    std::string MessageText;  // where message-box and log texts are built
    std::string TextBuffer;   // a new set file's text; the archive path of a backup run
};

}  // namespace vantrel
