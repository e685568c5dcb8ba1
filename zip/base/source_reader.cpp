#include "zip/base/source_reader.h"

namespace vantrel::zip {

bool SourceReader::IsGone() {
    try {
        return !machine_.files.Find(folder_);
    } catch (const Error&) {
        return false;
    }
}

void SourceReader::AskForSource(const Error& error) {
    channel_.RetryOrStop({error.number(), folder_,
                          Sentence("The folder to back up cannot be read", folder_, error)});
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
