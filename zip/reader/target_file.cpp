#include "zip/reader/target_file.h"

#include "common/error.h"
#include "common/path.h"
#include "zip/reader/target_folders.h"
#include "zip/records/entry_name.h"

namespace vantrel::zip {

namespace {

namespace attribute = platform::attribute;

// Attributes that prevent a file from being replaced.
constexpr std::uint32_t kProtecting =
    attribute::kReadOnly | attribute::kHidden | attribute::kSystem;
constexpr std::uint32_t kSettable = kProtecting | attribute::kArchive;
// Of a new file.
constexpr std::uint32_t kDefault = attribute::kArchive;
constexpr int kMaxTemporaryNames = 1000;

}  // namespace

TargetFile::TargetFile(const platform::Machine& machine, platform::Folder& folder,
                       const std::string& folder_path, const std::string& name,
                       const std::string& archive)
    : machine_(machine), path_(path::Join(folder_path, name)) {
    for (std::string leaf = name; !OpenNew(folder, leaf);) {
        const auto found = machine_.files.Find(path_);
        if (!found) {
            throw Error(error_number::kPermissionDenied, "",
                        ErrorText(error_number::kPermissionDenied));
        }
        if (IsShortNameOf(machine_.code_page, *found, leaf)) {
            leaf += '_';
            path_ += '_';
            continue;
        }
        if (found->is_link || found->IsFolder()) {
            const std::string what = found->is_link ? "a link" : "a folder";
            throw Error(error_number::kPathFileAccess, "", what + " has its name");
        }
        if (machine_.files.SameFile(path_, archive)) {
            throw Error(error_number::kPathFileAccess, "", "the archive itself has its name");
        }
        old_attributes_ = found->attributes & kSettable;
        OpenBeside(folder_path);
        break;
    }
}

// False when the name is taken.
bool TargetFile::OpenNew(platform::Folder& folder, const std::string& name) {
    if (IsTooLongPath(path_)) {
        throw Error(error_number::kBadFileName, "", "its path is too long");
    }
    try {
        file_ = folder.Create(name);
        return true;
    } catch (const Error& error) {
        const bool may_be_taken = error.number() == error_number::kFileExists ||
                                  error.number() == error_number::kPermissionDenied;
        if (!may_be_taken) {
            throw;
        }
        return false;
    }
}

void TargetFile::OpenBeside(const std::string& folder) {
    for (int number = 1;; ++number) {
        temporary_ = path::Join(folder, "~vantrel-" + std::to_string(number) + ".tmp");
        try {
            file_ = machine_.files.Open(temporary_, platform::OpenMode::kCreateNew);
            return;
        } catch (const Error& error) {
            if (error.number() != error_number::kFileExists || number == kMaxTemporaryNames) {
                throw;
            }
        }
    }
}

void TargetFile::Commit(const platform::FileTimes& times, std::uint32_t attributes) {
    file_->SetTimes(times);
    // The existing file is lost with its name, so the new bytes must be on the disk before that.
    if (!temporary_.empty()) {
        file_->Flush();
    }
    file_->Close();
    if (!temporary_.empty()) {
        PutInPlace();
    }
    committed_ = true;
    if ((attributes & kSettable) != kDefault) {
        machine_.files.SetAttributes(path_, attributes & kSettable);
    }
}

void TargetFile::PutInPlace() {
    const bool is_protected = (old_attributes_ & kProtecting) != 0;
    if (is_protected) {
        machine_.files.SetAttributes(path_, kDefault);
    }
    try {
        machine_.files.Replace(temporary_, path_);
    } catch (const Error&) {
        if (is_protected) {
            machine_.files.SetAttributes(path_, old_attributes_);
        }
        throw;
    }
}

TargetFile::~TargetFile() {
    if (committed_ || !file_) {
        return;
    }
    file_.reset();
    try {
        machine_.files.RemoveFile(temporary_.empty() ? path_ : temporary_);
    } catch (const Error&) {
        // The disk is gone, and the file with it.
    }
}

}  // namespace vantrel::zip
