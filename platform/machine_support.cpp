#include "platform/machine_support.h"

#include <algorithm>
#include <thread>

#include "common/error.h"

namespace vantrel::platform {

namespace {

std::size_t EndOfName(std::string_view line) {
    bool quoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '"') {
            quoted = !quoted;
        }
        if (!quoted && (line[i] == ' ' || line[i] == '\t')) {
            return i;
        }
    }
    return line.size();
}

class FolderByPath : public Folder {
  public:
    FolderByPath(FileSystem& files, const std::string& path) : files_(files), path_(path) {
        if (!path_.ends_with('\\')) {
            path_ += '\\';
        }
    }
    std::unique_ptr<File> Create(const std::string& name) override {
        return files_.Open(path_ + name, OpenMode::kCreateNew);
    }

  private:
    FileSystem& files_;
    std::string path_;
};

}  // namespace

std::chrono::milliseconds SteadyClock::SteadyNow() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
}

void SteadyClock::Sleep(std::chrono::milliseconds time) { std::this_thread::sleep_for(time); }

void SteadyClock::Wait(std::condition_variable& signal, std::unique_lock<std::mutex>& lock,
                       std::chrono::milliseconds time) {
    signal.wait_for(lock, time);
}

std::string ParameterText(std::string_view whole_line) {
    const std::string_view text = whole_line.substr(EndOfName(whole_line));
    const std::size_t first = text.find_first_not_of(' ');
    if (first != std::string_view::npos) {
        return std::string(text.substr(first));
    }
    return std::string(text.empty() ? 0 : text.size() - 1, ' ');
}

NumberFormat MakeNumberFormat(const std::string& decimal, const std::string& group,
                              const std::string& sizes) {
    if (decimal.empty()) {
        return {};
    }
    // Single digits with semicolons between them.
    const auto size_at = [&](std::size_t index) {
        const bool is_digit = index < sizes.size() && sizes[index] >= '0' && sizes[index] <= '9';
        return is_digit ? sizes[index] - '0' : 0;
    };
    const int last = size_at(0);
    const bool repeats = sizes.size() > 2;
    const int other = repeats && size_at(2) == 0 ? last : size_at(2);
    return {decimal, group, last, other};
}

DiskSpace ClassicDiskSpace(const DiskSpace& true_space) {
    constexpr std::uint64_t kTwoGigabytes = std::uint64_t{1} << 31;  // bytes
    const std::uint64_t cluster =
        std::uint64_t{true_space.sectors_per_cluster} * true_space.bytes_per_sector;
    if (cluster == 0 || cluster >= kTwoGigabytes) {
        return {};
    }
    const auto most = static_cast<std::uint32_t>((kTwoGigabytes - cluster) / cluster);
    DiskSpace classic = true_space;
    classic.free_clusters = std::min(classic.free_clusters, most);
    classic.total_clusters = std::min(classic.total_clusters, most);
    return classic;
}

int NumberFor(FileOperation operation, int of_a_file) {
    using namespace error_number;
    if (operation == FileOperation::kFile) {
        return of_a_file;
    }
    if (of_a_file == kFileNotFound) {
        return kPathNotFound;
    }
    if (operation == FileOperation::kList && of_a_file == kBadFileName) {
        return kPathNotFound;
    }
    const bool refused =
        of_a_file == kPermissionDenied || of_a_file == kFileExists || of_a_file == kBadFileName;
    return refused ? kPathFileAccess : of_a_file;
}

std::unique_ptr<Folder> FileSystem::OpenFolder(const std::string& path) {
    return std::make_unique<FolderByPath>(*this, path);
}

}  // namespace vantrel::platform
