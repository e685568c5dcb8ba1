#include "backupset/clsString.h"

#include "common/error.h"

namespace vantrel {

std::string clsString::Backslash(const std::string& text) {
    return Reported("clsString:Backslash Method", [&] {
        const bool ends_in_one = !text.empty() && text.back() == '\\';
        return ends_in_one ? text : text + "\\";
    });
}

}  // namespace vantrel
