#include "zip/disks/disk_prompt.h"

#include "common/display_text.h"
#include "common/path.h"

namespace vantrel::zip {

std::string DriveOf(const std::string& path) {
    std::string root = path::Root(path);
    while (!root.empty() && root.back() == '\\') {
        root.pop_back();
    }
    return root;
}

std::string PromptForDisk(std::uint32_t disk, std::uint32_t disks, const std::string& path,
                          const std::string& note) {
    const std::string which = disk == 0 ? "the last disk" : "disk " + std::to_string(disk);
    const std::string of_all = disks == 0 ? "" : " of the " + std::to_string(disks) + " disks";
    return "Please insert " + which + of_all + " of " + path::Name(path) + " into drive " +
           DriveOf(path) + " and press Retry." + (note.empty() ? "" : "\r\n\r\n" + note);
}

std::string FullDriveText(const std::string& path, std::uint64_t needed, std::uint64_t free) {
    const std::string drive = "drive " + DriveOf(path);
    const NumberFormat numbers;
    const std::string text = free < needed
                                 ? "The disk in " + drive + " is full: " + path + " needs about " +
                                       SizeText(needed, numbers) + " more"
                                 : "The file system of " + drive + " takes no larger file: " + path;
    return EscapeControls(text + " (" + SizeText(free, numbers) + " free).");
}

std::string FreeSpaceNote(std::uint64_t bytes) {
    return "The disk in the drive has " + Counted(bytes, "byte", "bytes") + " free.";
}

std::string FullNote(std::uint64_t bytes) {
    return "The disk in the drive is full: it has " + Counted(bytes, "byte", "bytes") + " free.";
}

std::string NoDiskNote() { return "There is no disk in the drive."; }

std::string HoldsArchiveNote(const std::string& path) {
    return "The disk in the drive holds " + path + " already, and no file is overwritten.";
}

std::string MissingNote(const std::string& path) {
    return "The disk in the drive does not hold " + path + ".";
}

std::string OtherDiskNote() { return "The disk in the drive is another one."; }

std::string NotLastNote() { return "The disk in the drive is not the last one of an archive."; }

std::string UnknownNumberNote() {
    return " The number of disks is unknown: the search ends when two in succession are left out.";
}

std::string MissingText(std::uint32_t disk) {
    return "disk " + std::to_string(disk + 1) + " is missing";
}

std::string ReadErrorNote(const Error& error) {
    const int number = error.number();
    return number == error_number::kDeviceUnavailable || number == error_number::kDiskNotReady
               ? NoDiskNote()
               : "The disk in the drive cannot be read (" + error.description() + ").";
}

std::string ErrorNote(const Error& error) {
    switch (error.number()) {
        case error_number::kDeviceUnavailable:
        case error_number::kDiskNotReady:
            return NoDiskNote();
        case error_number::kDiskFull:
            return "The disk in the drive is full.";
        case error_number::kPermissionDenied:
            return "The disk in the drive is write-protected.";
        case error_number::kPathFileAccess:
            return "The disk in the drive is write-protected, or a folder cannot be made on it.";
        default:
            return "The disk in the drive cannot be used (" + error.description() + ").";
    }
}

}  // namespace vantrel::zip
