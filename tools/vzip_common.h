// What the commands of `vzip` have in common.
#pragma once

#include <cstdint>
#include <string>

#include "zip/base/run_context.h"

namespace vantrel::tools {

// Exit codes of `vzip`, the same as those of an unattended backup.
constexpr int kExitComplete = 0;
constexpr int kExitSomeSkipped = 1;
constexpr int kExitFailed = 2;

// A path of this computer ("/home/x", "a.zip", "D:\Data"), absolute, the way the seam spells it.
std::string SeamPath(const std::string& path);

// How a run ended, and what it did with how many.
struct Ending {
    zip::RunOutcome outcome;
    std::uint64_t entries;
    std::int32_t left_out;
    const char* left_out_means;  // "skipped", "failed"
};

// Prints the figures of a complete run, unless it shall be `quiet`; returns the exit code.
int Report(const Ending& ending, bool quiet);

}  // namespace vantrel::tools
