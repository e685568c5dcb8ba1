#include "backupset/file_header.h"

#include "common/product.h"

namespace vantrel {

std::vector<std::string> FileHeader() {
    const std::string rule = ";" + std::string(27, '-');
    return {rule, ";  Quennell Backup Utility  ", ";        Version " + product::VersionText(),
            std::string(";      ") + product::kNoticeWord + "  1999      ", rule};
}

}  // namespace vantrel
