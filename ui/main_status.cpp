#include "ui/main_status.h"

#include "common/display_text.h"
#include "common/product.h"

namespace vantrel {

namespace {

using Volumes = SetFacts::Volumes;

constexpr const char* kNoSet = "There is no backup set yet. Press New Backup.";

// "1,234 folders".
std::string Number(int count, const char* one, const char* many, const NumberFormat& numbers) {
    return NumberText(static_cast<std::uint64_t>(count), numbers) + " " + (count == 1 ? one : many);
}

// The step that solves a problem, once the settings can be changed.
std::string Step(const BackupStatus& status, const std::string& verb, const std::string& object) {
    if (!status.is_locked) {
        return verb + " " + object;
    }
    return "Press Change Settings, then " + (verb == "Press" ? object : "choose " + object);
}

StatusLine WrongVolumes(const BackupStatus& status, const char* before, const char* after) {
    return {std::string("Multi Volume ") + before + status.facts.destination_root + after +
            Step(status, "Press", "... at Backup Options.")};
}

StatusLine Problem(const BackupStatus& status) {
    const SetFacts& facts = status.facts;
    if (!facts.missing_destination.empty()) {
        return {"Missing destination: " + facts.missing_destination + ". " +
                    Step(status, "Press", "... at Backup Location."),
                facts.missing_destination};
    }
    if (!facts.missing_source.empty()) {
        return {"Missing folder: " + facts.missing_source + ". " +
                    Step(status, "Choose", "a drive and a folder."),
                facts.missing_source};
    }
    switch (facts.volumes) {
        case Volumes::kOnButFixed:
            return WrongVolumes(status, "is on, but ", " is fixed. ");
        case Volumes::kOnButNotRemovable:
            return WrongVolumes(status, "is on, but ", " is not removable. ");
        case Volumes::kOffButRemovable:
            return WrongVolumes(status, "is off, but ", " is removable. ");
        default:
            return {};
    }
}

StatusLine ArchiveLine(const LastArchive& archive, const NumberFormat& numbers,
                       const std::string& rest) {
    switch (archive.state) {
        case LastArchive::State::kNone:
            return {"The set has no archive yet. " + rest};
        case LastArchive::State::kMissing:
            return {"The last archive is missing: " + archive.path + ". " + rest, archive.path};
        case LastArchive::State::kNotLooked:
            return {"Last archive: " + archive.path + ". " + rest, archive.path};
        default:
            return {"Last archive: " + archive.path + ", " + archive.when + ", " +
                        SizeText(archive.bytes, numbers) +
                        (archive.is_spanned ? " on this disk. " : ". ") + rest,
                    archive.path};
    }
}

StatusLine BackupText(const BackupStatus& status, const NumberFormat& numbers) {
    if (status.set.empty()) {
        return {status.sets == 0 ? kNoSet : "Choose a Backup Set, or press New Backup."};
    }
    StatusLine problem = Problem(status);
    if (!problem.text.empty()) {
        return problem;
    }
    return ArchiveLine(
        status.facts.archive, numbers,
        status.is_locked ? "Settings locked: press Change Settings." : "Press Backup Now.");
}

StatusLine RestoreText(const RestoreStatus& status, const NumberFormat& numbers) {
    if (status.archive.empty()) {
        return {"Choose a set under What to Restore?, or press ... and choose a zip file."};
    }
    if (status.is_reading) {
        return {"Reading " + status.archive + ".", status.archive};
    }
    if (status.entries == 0) {
        return {"No entries are listed. Choose another set or zip file."};
    }
    const std::string listed = Number(status.entries, "entry", "entries", numbers) + ", " +
                               SizeText(status.bytes, numbers) + ". ";
    if (status.destination.empty()) {
        return {listed + "Press ... under Where to Restore To? and choose a folder."};
    }
    return {listed + "Press Restore Now to restore into " + status.destination + ".",
            status.destination};
}

StatusLine EditText(const EditStatus& status) {
    if (status.file.empty() && status.is_unsaved && status.has_text) {
        return {"This text belongs to no file. Choose a file in the list before you type."};
    }
    if (status.file.empty()) {
        return {status.sets == 0 ? "There is no backup set yet. Press New Backup on the Backup tab."
                                 : "Choose a file in the list to see and change its text."};
    }
    return {status.is_unsaved
                ? status.file + " has unsaved changes. Press Save to keep them."
                : status.file + " is unchanged. The text is checked before it is saved."};
}

StatusLine LogText(const LastRun& run) {
    std::string outcome;
    switch (run.outcome) {
        case LastRun::Outcome::kNone:
            return {"The log has no backup or restore yet."};
        case LastRun::Outcome::kUnfinished:
            outcome = "not finished";
            break;
        case LastRun::Outcome::kComplete:
            outcome = run.detail.empty() ? "complete" : run.detail;
            break;
        case LastRun::Outcome::kCancelled:
            outcome = "cancelled";
            break;
        case LastRun::Outcome::kFailed:
            outcome = "failed, " + run.detail;
            break;
    }
    return {"Last run: " + run.name + ", " + run.when + ": " + outcome + "."};
}

StatusLine SecureText(const SecureStatus& status, const NumberFormat& numbers) {
    if (status.is_reading) {
        return {"Reading the folders of " + status.drive + ". Press Esc to stop."};
    }
    const std::string stopped =
        status.was_stopped ? "Reading was stopped after " +
                                 Number(status.folders, "folder", "folders", numbers) + ". "
                           : "";
    if (!status.folder.empty()) {
        return {stopped + status.folder +
                    (status.is_protected ? " is protected." : " is not protected.") +
                    " The menu key or the right button changes it.",
                status.folder};
    }
    if (status.folders == 0 && !status.was_stopped) {
        return {status.drive + " has no folders, or no disk."};
    }
    return {stopped + "Select a folder; the menu key or the right button protects it."};
}

}  // namespace

StatusLine StatusText(const MainStatus& status) {
    switch (status.tab) {
        case Tab::kBackup:
            return BackupText(status.backup, status.numbers);
        case Tab::kRestore:
            return RestoreText(status.restore, status.numbers);
        case Tab::kEdit:
            return EditText(status.edit);
        case Tab::kLog:
            return LogText(status.last_run);
        case Tab::kSecureData:
            return SecureText(status.secure, status.numbers);
        case Tab::kAbout:
            break;
    }
    return {std::string(product::kName) + " " + product::VersionText() +
            ". Contact Us writes a message with your mail program."};
}

}  // namespace vantrel
