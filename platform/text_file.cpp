#include "platform/text_file.h"

#include "common/error.h"

namespace vantrel::platform {

std::string ReadWholeFile(FileSystem& files, const std::string& path) {
    auto file = files.Open(path, OpenMode::kRead);
    std::string bytes;
    constexpr std::size_t kStep = 64 * 1024;  // bytes asked for at a time
    for (;;) {
        const std::size_t have = bytes.size();
        bytes.resize(have + kStep);
        const std::size_t got = file->Read(bytes.data() + have, kStep);
        bytes.resize(have + got);
        if (got == 0) {
            break;
        }
    }
    file->Close();
    return bytes;
}

void WriteWholeFile(FileSystem& files, const std::string& path, std::string_view bytes) {
    auto file = files.Open(path, OpenMode::kWrite);
    file->Write(bytes.data(), bytes.size());
    file->Close();
}

namespace {

void WriteFlushed(File& file, std::string_view bytes) {
    file.Write(bytes.data(), bytes.size());
    file.Flush();
    file.Close();
}

}  // namespace

void WriteFlushed(FileSystem& files, const std::string& path, std::string_view bytes) {
    WriteFlushed(*files.Open(path, OpenMode::kWrite), bytes);
}

void AppendToFile(FileSystem& files, const std::string& path, std::string_view bytes) {
    auto file = files.Open(path, OpenMode::kAppend);
    file->Write(bytes.data(), bytes.size());
    file->Close();
}

namespace {

void RemoveQuietly(FileSystem& files, const std::string& path) {
    try {
        files.RemoveFile(path);
    } catch (const Error&) {
        // The scratch file is not there, or as stuck as the disk itself: the first error tells
        // more.
    }
}

// Writes the scratch file of `path` and has `put` give it its name; it is gone afterwards.
template <typename Put>
void WriteBeside(FileSystem& files, const std::string& path, std::string_view bytes, Put&& put) {
    const std::string scratch = UnusedPathBeside(files, path);
    auto file = files.Open(scratch, OpenMode::kCreateNew);
    try {
        WriteFlushed(*file, bytes);
        put(scratch);
    } catch (const Error&) {
        file.reset();  // an open file cannot be removed
        RemoveQuietly(files, scratch);
        throw;
    }
}

}  // namespace

std::string UnusedPathBeside(FileSystem& files, const std::string& path) {
    constexpr int kMaxTries = 1000;
    const std::string folder = path.substr(0, path.rfind('\\') + 1);
    for (int number = 0; number < kMaxTries; ++number) {
        const std::string suffix = number == 0 ? "" : std::to_string(number);
        std::string candidate = folder + "~Vantrel";
        candidate.append(suffix).append(".new");
        if (!files.Find(candidate)) {
            return candidate;
        }
    }
    RaiseError(error_number::kFileExists);
}

void MakeWholeFile(FileSystem& files, const std::string& path, std::string_view bytes) {
    WriteBeside(files, path, bytes,
                [&](const std::string& scratch) { files.Rename(scratch, path); });
}

void ReplaceWholeFile(FileSystem& files, const std::string& path, std::string_view bytes) {
    const auto before = files.Find(path);
    if (before && (before->IsFolder() || (before->attributes & attribute::kReadOnly) != 0)) {
        RaiseError(error_number::kPermissionDenied);
    }
    WriteBeside(files, path, bytes, [&](const std::string& scratch) {
        if (before) {
            files.SetAttributes(scratch, before->attributes);
        }
        files.Replace(scratch, path);
    });
}

std::vector<std::string> SplitLines(std::string_view bytes) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    while (start < bytes.size()) {
        const std::size_t end = bytes.find_first_of("\r\n", start);
        if (end == std::string_view::npos) {
            lines.emplace_back(bytes.substr(start));
            break;
        }
        lines.emplace_back(bytes.substr(start, end - start));
        const bool pair = bytes[end] == '\r' && end + 1 < bytes.size() && bytes[end + 1] == '\n';
        start = end + (pair ? 2 : 1);
    }
    return lines;
}

}  // namespace vantrel::platform
