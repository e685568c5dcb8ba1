#include "tools/vzip_common.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "common/display_text.h"
#include "common/product.h"
#include "zip/deflate/deflate.h"

namespace vantrel::tools {

std::string SeamPath(const std::string& path) {
    std::string full = std::filesystem::absolute(path).lexically_normal().string();
#ifndef _WIN32
    full = "Z:" + full;
#endif
    std::replace(full.begin(), full.end(), '/', '\\');
    while (full.size() > 3 && full.back() == '\\') {
        full.pop_back();
    }
    return full;
}

int ShowVersion() {
    std::printf("vzip %s\n%s\n", product::VersionText().c_str(),
                zip::CompressorDescription().c_str());
    return kExitComplete;
}

int Report(const Ending& ending, bool quiet) {
    if (ending.outcome != zip::RunOutcome::kComplete) {
        return kExitFailed;
    }
    if (!quiet) {
        std::printf("%s, %d %s\n", Counted(ending.entries, "entry", "entries").c_str(),
                    static_cast<int>(ending.left_out), ending.left_out_means);
    }
    return ending.left_out > 0 ? kExitSomeSkipped : kExitComplete;
}

}  // namespace vantrel::tools
