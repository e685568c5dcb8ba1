#include "tests/zip/hostile_archives.h"

#include <filesystem>
#include <map>

#include "platform/text_file.h"
#include "tests/support/matchers.h"
#include "tests/zip/writer_fixture.h"
#include "zip/reader/archive_extractor.h"

namespace vantrel::test {
namespace {

using platform::FileInfo;

constexpr const char* kArchive = "C:\\Hostile\\In.zip";
constexpr const char* kOut = "C:\\Hostile\\Out";
constexpr const char* kOutside = "C:\\Hostile\\outside";

// Everything below a folder: what it is, and what is in it. Links are not followed.
using Snapshot = std::map<std::string, std::string>;

Snapshot Look(platform::FileSystem& files, const std::string& folder, const std::string& prefix) {
    Snapshot seen;
    std::vector<FileInfo> entries;
    files.List(folder, [&](const FileInfo& info) {
        entries.push_back(info);
        return true;
    });
    for (const FileInfo& info : entries) {
        const std::string path = folder + "\\" + info.name;
        const std::string name = prefix + info.name;
        if (info.is_link) {
            seen[name] = "link";
        } else if (info.IsFolder()) {
            seen[name + "\\"] = "folder";
            seen.merge(Look(files, path, name + "\\"));
        } else {
            seen[name] = "file " + std::to_string(info.attributes) + " " +
                         platform::ReadWholeFile(files, path);
        }
    }
    return seen;
}

class HostileArchiveTest : public ::testing::TestWithParam<HostileArchive> {
  protected:
    void Prepare(platform::FileSystem& files) {
        for (const char* folder : {"C:\\Hostile", kOut, kOutside}) {
            files.MakeFolder(folder);
        }
        platform::WriteWholeFile(files, kArchive, GetParam().bytes);
        platform::WriteWholeFile(files, std::string(kOutside) + "\\inner", "precious");
        const std::string out = std::string(kOut) + "\\";
        files.MakeFolder(out + Bait::kFolder);
        platform::WriteWholeFile(files, out + Bait::kFile, "old");
        platform::WriteWholeFile(files, out + Bait::kReadOnly, "old");
        files.SetAttributes(out + Bait::kReadOnly, platform::attribute::kReadOnly);
    }

    void Extract(platform::FileSystem& files) {
        const platform::Machine over = WithFiles(machine.machine(), files);
        const Snapshot before = Look(files, "C:", "");
        const zip::ExtractOptions options{.archive = kArchive, .destination = kOut, .threads = 2};
        result = zip::ExtractArchive(over, options, events);
        Compare(before, Look(files, "C:", ""));
    }

    void Compare(const Snapshot& before, const Snapshot& after) {
        const std::string out = "Hostile\\Out\\";
        Strings made;
        Strings changed;
        for (const auto& [path, what] : after) {
            const auto old = before.find(path);
            if (old == before.end()) {
                EXPECT_TRUE(path.starts_with(out)) << path << " is outside of the destination";
                made.push_back(path.substr(std::min(out.size(), path.size())));
            } else if (old->second != what) {
                changed.push_back(path);
            }
        }
        Strings replaced;
        for (const std::string& path : GetParam().replaced) {
            replaced.push_back(out + path);
        }
        std::sort(made.begin(), made.end());
        EXPECT_THAT(made, ElementsAreArray(GetParam().restored));
        EXPECT_THAT(changed, ElementsAreArray(replaced));
        for (const auto& [path, what] : before) {
            EXPECT_TRUE(after.contains(path)) << path;
        }
    }

    void Judge() {
        EXPECT_EQ(result.outcome, GetParam().outcome);
        EXPECT_EQ(result.failed, GetParam().failed);
        EXPECT_THAT(events.Texts(zip::MessageKind::kWarning),
                    ::testing::SizeIs(static_cast<std::size_t>(GetParam().reported)));
    }

    TestMachine machine;
    Recorder events;
    zip::ExtractResult result;
};

TEST_P(HostileArchiveTest, HarmsNothingOnADiskInMemory) {
    MemoryFileSystem files;
    Prepare(files);
    const std::string link = std::string(kOut) + "\\" + Bait::kLink;
    files.PutFolder(link);
    files.Change(link, [](FileInfo& info) { info.is_link = true; });
    Extract(files);
    Judge();
}

TEST_P(HostileArchiveTest, HarmsNothingOnARealDisk) {
    Prepare(machine.files());
    std::filesystem::create_directory_symlink(
        machine.HostPath(kOutside), machine.HostPath(std::string(kOut) + "\\" + Bait::kLink));
    Extract(machine.files());
    Judge();
}

INSTANTIATE_TEST_SUITE_P(Tricks, HostileArchiveTest, ::testing::ValuesIn(HostileArchives()),
                         [](const auto& tested) { return tested.param.trick; });

}  // namespace
}  // namespace vantrel::test
