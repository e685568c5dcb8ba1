#include "common/product.h"

namespace vantrel::product {

std::string VersionText() {
    return std::to_string(kVersionMajor) + "." + std::to_string(kVersionMinor) + "." +
           std::to_string(kVersionRevision);
}

}  // namespace vantrel::product
