#include "common/product.h"

namespace vantrel::product {

std::string VersionText() {
    return std::to_string(kVersionMajor) + "." + std::to_string(kVersionMinor) + "." +
           std::to_string(kVersionRevision);
}

std::vector<std::string> FileHeader() {
    const std::string rule = ";" + std::string(27, '-');
    return {rule, ";  Quennell Backup Utility  ", ";        Version " + VersionText(),
            std::string(";      ") + kNoticeWord + "  1999      ", rule};
}

}  // namespace vantrel::product
