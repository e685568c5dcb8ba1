#include "zip/reader/target_file.h"

#include <algorithm>
#include <cstring>

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
// Bytes of an existing file that are compared, or copied, at a time.
constexpr std::size_t kBlockSize = std::size_t{1} << 16;

}  // namespace

TargetFile::TargetFile(const platform::Machine& machine, platform::Folder& folder,
                       const std::string& folder_path, const std::string& name,
                       const std::string& archive, std::uint64_t size)
    : machine_(machine), path_(path::Join(folder_path, name)), size_(size) {
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
        OpenExisting(*found);
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

// Opens the existing file if it can be equal, and otherwise a temporary one.
void TargetFile::OpenExisting(const platform::FileInfo& found) {
    old_attributes_ = found.attributes & kSettable;
    if (found.size == size_) {
        try {
            existing_ = machine_.files.Open(path_, platform::OpenMode::kReadUnchanging);
            if (existing_->Size() == size_) {  // that nothing can change from now on
                return;
            }
        } catch (const Error&) {
            // A file that cannot be read can be replaced all the same.
        }
        existing_.reset();
    }
    OpenBeside();
}

void TargetFile::OpenBeside() {
    for (int number = 1;; ++number) {
        temporary_ = path::Join(path::Parent(path_), "~vantrel-" + std::to_string(number) + ".tmp");
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

void TargetFile::Write(const std::uint8_t* data, std::size_t count) {
    if (existing_ && ExistingContinuesWith(data, count)) {
        equal_ += count;
        return;
    }
    if (existing_) {
        CopyExistingBeside();
    }
    file_->Write(data, count);
}

bool TargetFile::ExistingContinuesWith(const std::uint8_t* data, std::size_t count) {
    try {
        for (std::size_t done = 0; done < count; done += block_.size()) {
            block_.Resize(std::min(count - done, kBlockSize));
            if (ReadFully(*existing_, block_.data(), block_.size()) != block_.size() ||
                std::memcmp(block_.data(), data + done, block_.size()) != 0) {
                return false;
            }
        }
        return true;
    } catch (const Error&) {
        return false;
    }
}

// Continues in a temporary file. No other process can write the existing one meanwhile.
void TargetFile::CopyExistingBeside() {
    OpenBeside();
    existing_->Seek(0);
    for (std::uint64_t left = equal_; left > 0; left -= block_.size()) {
        block_.Resize(static_cast<std::size_t>(std::min<std::uint64_t>(left, kBlockSize)));
        if (ReadFully(*existing_, block_.data(), block_.size()) != block_.size()) {
            RaiseError(error_number::kDeviceIo);
        }
        file_->Write(block_.data(), block_.size());
    }
    existing_.reset();
}

void TargetFile::Commit(const platform::FileTimes& times, std::uint32_t attributes) {
    if (existing_ && equal_ == size_) {
        existing_.reset();
        machine_.files.SetTimes(path_, times);
        if ((attributes & kSettable) != old_attributes_) {
            machine_.files.SetAttributes(path_, attributes & kSettable);
        }
        return;
    }
    if (existing_) {
        CopyExistingBeside();
    }
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
