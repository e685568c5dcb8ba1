// Restoring over files that exist: those with the same content are left in place.
#include <map>
#include <mutex>

#include "tests/zip/reader_fixture.h"

namespace vantrel::test {
namespace {

namespace attribute = platform::attribute;

class EqualFiles : public ReaderTest {
  protected:
    EqualFiles() {
        options.threads = 1;
        files.before = [this](const std::string& call, const std::string& path) {
            if (path != options.archive) {
                ++calls[call];
            }
        };
    }
    // Restores `content` over `old`, deflated, and expects it, and nothing beside it.
    void RestoreOver(const std::string& old, const std::string& content) {
        files.Put("C:\\Out\\a", old);
        calls.clear();
        Extract({{.name = "a", .content = content, .method = 8}});
        EXPECT_TRUE(Content("a") == content);
        EXPECT_EQ(Restored(), Strings{"a"});
        EXPECT_EQ(result.failed, 0);
    }

    std::map<std::string, int> calls;  // of the file system, by name
    // The first is checked before it is written, the second is not.
    const std::string small = Prose(200'000);
    const std::string large = Prose(33 << 20);
};

TEST_F(EqualFiles, AreNotWritten) {
    for (const std::string& content : {std::string(), small, large}) {
        RestoreOver(content, content);
        EXPECT_EQ(calls["Write"] + calls["Replace"] + calls["Flush"], 0) << content.size();
    }
}

TEST_F(EqualFiles, GetTimesAndAttributes) {
    files.Put("C:\\Out\\a", small);
    files.Change("C:\\Out\\a", [](platform::FileInfo& info) {
        info.attributes = attribute::kReadOnly | attribute::kArchive;
    });
    const auto before = files.Info("C:\\Out\\a");
    Extract({{.name = "a", .content = small, .method = 8, .external = attribute::kHidden}});
    const auto after = files.Info("C:\\Out\\a");
    EXPECT_EQ(after.attributes, attribute::kHidden);
    EXPECT_NE(after.times.modified, before.times.modified);
    EXPECT_EQ(calls["Write"], 0);
}

TEST_F(EqualFiles, ADifferenceAnywhereReplacesTheFile) {
    for (const std::string& content : {small, large}) {
        for (const std::size_t at : {std::size_t{0}, content.size() / 2, content.size() - 1}) {
            std::string old = content;
            old[at] ^= 1;
            RestoreOver(old, content);
            EXPECT_EQ(calls["Replace"], 1) << at;
        }
    }
}

TEST_F(EqualFiles, AnotherSizeReplacesTheFileUnread) {
    RestoreOver(small + "x", small);
    EXPECT_EQ(calls["Read"], 0);
    EXPECT_EQ(calls["Replace"], 1);
}

TEST_F(EqualFiles, AFileThatGrowsBeforeItIsOpenedIsReplaced) {
    files.Put("C:\\Out\\a", small);
    // The first call is for a new file.
    files.before = [this, opened = 0](const std::string& call, const std::string& path) mutable {
        if (call == "Open" && path == "C:\\Out\\a" && ++opened == 2) {
            files.Append(path, "x");
        }
    };
    Extract({{.name = "a", .content = small, .method = 8}});
    EXPECT_TRUE(Content("a") == small);
}

TEST_F(EqualFiles, ADamagedEntryChangesNothing) {
    for (const std::string& content : {small, large}) {
        files.Put("C:\\Out\\a", content);
        const auto before = files.Info("C:\\Out\\a").times.modified;
        Extract({{.name = "a", .content = content, .method = 8, .crc = 1}});
        EXPECT_EQ(result.failed, 1);
        EXPECT_TRUE(Content("a") == content);
        EXPECT_EQ(files.Info("C:\\Out\\a").times.modified, before);
        EXPECT_EQ(Restored(), Strings{"a"});
    }
}

// Call n of the restore fails: the file has the old content or the new one, and nothing is beside
// it.
TEST_F(EqualFiles, EveryCallMayFail) {
    std::string old = small;
    old.back() ^= 1;
    for (const std::string& existing : {small, old}) {
        int left = 0;
        for (int n = 1; left <= 0; ++n) {
            ASSERT_LT(n, 1000);
            files.Put("C:\\Out\\a", existing);
            left = n;
            files.before = [&](const std::string&, const std::string& path) {
                if (path.starts_with("C:\\Out\\") && --left == 0) {
                    RaiseError(error_number::kDeviceIo);
                }
            };
            Extract({{.name = "a", .content = small, .method = 8}});
            EXPECT_TRUE(Content("a") == small || (result.failed == 1 && Content("a") == existing))
                << n;
            EXPECT_EQ(Restored(), Strings{"a"}) << n;
        }
    }
}

TEST_F(EqualFiles, WhatIsLeftOfADamagedFileReplacesALongerOne) {
    options.keep_broken = true;
    files.Put("C:\\Out\\a.damaged", small);
    Extract({{.name = "a", .content = small, .method = 8, .packed_size = 1000}});
    EXPECT_EQ(result.failed, 1);
    EXPECT_LT(Content("a.damaged").size(), small.size());
    EXPECT_EQ(Restored(), Strings{"a.damaged"});
}

}  // namespace
}  // namespace vantrel::test
