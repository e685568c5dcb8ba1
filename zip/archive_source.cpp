#include "zip/archive_source.h"

#include <utility>

namespace vantrel::zip {

platform::File& ArchiveSource::Opened() {
    if (!file_) {
        file_ = files_.Open(path_, platform::OpenMode::kRead);
        position_ = 0;
        if (channel_ != nullptr && file_->Size() != expected_size_) {
            throw Error(error_number::kDeviceIo, "", "It is another archive than before");
        }
    }
    return *file_;
}

template <typename Step>
auto ArchiveSource::Try(Step step) {
    const auto once = [&] {
        try {
            return step(Opened());
        } catch (const Error&) {
            file_.reset();  // a disk that comes back needs a new handle
            throw;
        }
    };
    return channel_ == nullptr
               ? once()
               : UntilItWorks(*channel_, Cannot("The archive cannot be read", path_), once);
}

std::uint64_t ArchiveSource::Size() {
    return Try([](platform::File& file) { return file.Size(); });
}

std::size_t ArchiveSource::ReadAt(std::uint64_t offset, void* out, std::size_t count) {
    return Try([&](platform::File& file) {
        if (position_ != offset) {
            file.Seek(offset);
            position_ = offset;
        }
        const std::size_t got = file.Read(out, count);
        position_ += got;
        return got;
    });
}

}  // namespace vantrel::zip
