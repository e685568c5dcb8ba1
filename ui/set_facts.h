// What the disks hold of a backup set, for the status bar: whether its source and destination are
// there, whether the destination suits its Multi Volume switch, and its last archive.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "forms/program.h"

namespace vantrel {

struct LastArchive {
    enum class State {
        kNone,       // the set has made no archive
        kThere,      // with size and time
        kMissing,    // the set names one that is not there
        kNotLooked,  // on a network path
    };
    State state = State::kNone;
    std::string path{};
    std::uint64_t bytes = 0;
    std::string when{};  // "15/11/2026 13:05", local time
    // Multi Volume is on: `bytes` and `when` are of the disk in the drive.
    bool is_spanned = false;
};

struct SetFacts {
    enum class Volumes { kSuitable, kOnButFixed, kOnButNotRemovable, kOffButRemovable };
    std::string missing_source;       // its folder, "" when it is there
    std::string missing_destination;  // "" when it is there
    Volumes volumes = Volumes::kSuitable;
    std::string destination_root;  // "E:\"
    LastArchive archive;
};

// Whether a backup would be refused, or would find no source.
bool HasProblem(const SetFacts& facts);

// Reads the set's file and asks its disks once. Called when a set is selected, after a dialog or a
// backup has changed it, and not for any other event, since a slow drive may take seconds. A
// network path is not asked: where the server is gone, that would take half a minute. A file that
// cannot be read has no facts. Never raises.
SetFacts ReadSetFacts(forms::Program& program, const std::string& set_name);

}  // namespace vantrel
