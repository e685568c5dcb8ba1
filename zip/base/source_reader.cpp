#include "zip/base/source_reader.h"

namespace vantrel::zip {

bool SourceReader::SourceIsGone() {
    try {
        return !machine_.files.Find(folder_);
    } catch (const Error&) {
        return false;
    }
}

std::size_t ReadFully(platform::File& file, std::uint8_t* out, std::size_t count) {
    std::size_t total = 0;
    while (total < count) {
        const std::size_t read = file.Read(out + total, count - total);
        if (read == 0) {
            break;
        }
        total += read;
    }
    return total;
}

}  // namespace vantrel::zip
