// Creates the files of one folder in another and writes their contents: the lower limit for the
// time of a restore. The contents are read first; only the writing is measured. Prints the
// milliseconds.
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

struct FileToWrite {
    fs::path path;
    std::string content;
};

bool WriteNew(const FileToWrite& file) {
    std::ofstream out(file.path, std::ios::binary);
    out.write(file.content.data(), static_cast<std::streamsize>(file.content.size()));
    out.close();
    return static_cast<bool>(out);
}

int Run(const fs::path& from, const fs::path& to) {
    std::vector<fs::path> folders;
    std::vector<FileToWrite> files;
    for (const auto& entry : fs::recursive_directory_iterator(from)) {
        const fs::path target = to / entry.path().lexically_relative(from);
        if (entry.is_directory()) {
            folders.push_back(target);
        } else if (entry.is_regular_file()) {
            std::ifstream in(entry.path(), std::ios::binary);
            files.push_back({target, {std::istreambuf_iterator<char>(in), {}}});
        }
    }
    const auto start = std::chrono::steady_clock::now();
    for (const fs::path& folder : folders) {
        fs::create_directories(folder);
    }
    for (const FileToWrite& file : files) {
        if (!WriteNew(file)) {
            const std::u8string name = file.path.u8string();
            std::fprintf(stderr, "cannot write %s\n", reinterpret_cast<const char*>(name.c_str()));
            return 1;
        }
    }
    const auto taken = std::chrono::steady_clock::now() - start;
    std::printf("%lld\n",
                static_cast<long long>(
                    std::chrono::duration_cast<std::chrono::milliseconds>(taken).count()));
    return 0;
}

}  // namespace

int main(int count, char** words) {
    if (count != 3) {
        std::fputs("usage: write_files FROM TO\n", stderr);
        return 2;
    }
    try {
        return Run(words[1], words[2]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
