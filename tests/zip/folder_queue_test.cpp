// The order of folders does not depend on which thread lists them.
#include "zip/writer/folder_queue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

#include "common/error.h"
#include "tests/support/memory_file_system.h"

namespace vantrel::test {
namespace {

using platform::FileInfo;
using zip::FolderQueue;

class FolderQueueTest : public ::testing::Test {
  protected:
    FolderQueueTest() {
        for (int i = 100; i < 100 + kFolders; ++i) {
            const std::string name = std::to_string(i);
            for (const char* file : {"b", "a"}) {
                files.Put("C:\\Data\\" + name + "\\" + file + name, "x");
            }
            FileInfo folder;
            folder.name = name;
            folders.push_back(folder);
        }
        files.before = [this](const std::string& call, const std::string& path) {
            if (call == "List") {
                ++lists;
                if (on_list) {
                    on_list(path);
                }
            }
        };
    }
    void AwaitLists(int count) const {
        while (lists < count) {
            std::this_thread::yield();
        }
    }

    // No listing ends before `go_on` is set.
    void HoldListings() {
        on_list = [this](const std::string&) {
            while (!go_on) {
                std::this_thread::yield();
            }
        };
    }

    // Delays the helper at the first folder until there have been `count` listings. Meanwhile the
    // scan's thread lists as many others as the limit allows.
    void ListAhead(int count) {
        on_list = [&](const std::string& path) {
            if (path.ends_with("100")) {
                AwaitLists(count);
            }
        };
        FolderQueue queue(files, "C:\\Data", stop.get_token(), 2);
        queue.Add(folders);
        AwaitLists(1);
        EXPECT_EQ(queue.Next()->listing->size(), 2u);
    }

    static constexpr int kFolders = 100;
    static constexpr int kMaxListedAhead = 64;
    MemoryFileSystem files;
    std::vector<FileInfo> folders;
    std::atomic<int> lists = 0;
    std::atomic<bool> go_on = false;
    std::function<void(const std::string& path)> on_list;
    std::stop_source stop;
};

TEST_F(FolderQueueTest, OrderDoesNotDependOnThreads) {
    for (const int threads : {1, 2, 8}) {
        FolderQueue queue(files, "C:\\Data", stop.get_token(), threads);
        queue.Add(folders);
        for (const FileInfo& folder : folders) {
            auto next = queue.Next();
            ASSERT_TRUE(next);
            EXPECT_EQ(next->folder.name, folder.name);
            const auto listing = next->listing ? *next->listing : queue.List(folder.name);
            ASSERT_EQ(listing.size(), 2u) << folder.name;
            EXPECT_EQ(listing[0].name, "a" + folder.name);
            EXPECT_EQ(listing[1].name, "b" + folder.name);
        }
        EXPECT_FALSE(queue.Next());
    }
    EXPECT_EQ(lists, 3 * kFolders) << "each is listed once";
}

TEST_F(FolderQueueTest, FoldersAddedLaterComeFirst) {
    FolderQueue queue(files, "C:\\Data", stop.get_token(), 2);
    queue.Add({folders[5], folders[6]});
    EXPECT_EQ(queue.Next()->folder.name, "105");
    queue.Add({folders[1], folders[2]});
    queue.Add({});
    EXPECT_EQ(queue.Next()->folder.name, "101");
    EXPECT_EQ(queue.Next()->folder.name, "102");
    EXPECT_EQ(queue.Next()->folder.name, "106");
    EXPECT_FALSE(queue.Next());
}

TEST_F(FolderQueueTest, OneThreadListsNothingAhead) {
    FolderQueue queue(files, "C:\\Data", stop.get_token(), 1);
    queue.Add(folders);
    for (int i = 0; i < kFolders; ++i) {
        EXPECT_FALSE(queue.Next()->listing);
    }
    EXPECT_EQ(lists, 0);
}

TEST_F(FolderQueueTest, NextFoldersAreListedAhead) {
    FolderQueue queue(files, "C:\\Data", stop.get_token(), 2);
    queue.Add(folders);
    AwaitLists(10);
    for (int i = 0; i < 9; ++i) {
        EXPECT_TRUE(queue.Next()->listing) << i;
    }
}

TEST_F(FolderQueueTest, NoMoreThan64AreListedAhead) {
    ListAhead(1 + kMaxListedAhead);
    EXPECT_EQ(lists, 1 + kMaxListedAhead);
}

TEST_F(FolderQueueTest, LargeListingsOnlyDelayListingAhead) {
    for (int i = 0; i < 15'000; ++i) {
        files.Put("C:\\Data\\101\\" + std::to_string(i), "");
        files.Put("C:\\Data\\103\\" + std::to_string(i), "");
    }
    FolderQueue queue(files, "C:\\Data", stop.get_token(), 2);
    queue.Add(folders);
    AwaitLists(4);
    EXPECT_EQ(queue.Next()->listing->size(), 2u);
    EXPECT_EQ(queue.Next()->listing->size(), 15'002u);
    AwaitLists(6);
}

TEST_F(FolderQueueTest, AFailedListingIsRepeatedByTheScan) {
    on_list = [this](const std::string&) {
        if (lists == 1) {
            RaiseError(error_number::kPathFileAccess);
        }
    };
    FolderQueue queue(files, "C:\\Data", stop.get_token(), 2);
    queue.Add({folders[0]});
    AwaitLists(1);
    EXPECT_FALSE(queue.Next()->listing);
    EXPECT_EQ(queue.List("100").size(), 2u);
}

TEST_F(FolderQueueTest, WaitsForAFolderThatIsBeingListed) {
    HoldListings();
    FolderQueue queue(files, "C:\\Data", stop.get_token(), 2);
    queue.Add({folders[0]});
    AwaitLists(1);
    const std::jthread other([this] { go_on = true; });
    EXPECT_EQ(queue.Next()->listing->size(), 2u);
}

TEST_F(FolderQueueTest, AStoppedRunDoesNotWaitForAListing) {
    HoldListings();
    FolderQueue queue(files, "C:\\Data", stop.get_token(), 2);
    queue.Add({folders[0]});
    AwaitLists(1);
    const std::jthread user([this] { stop.request_stop(); });
    EXPECT_FALSE(queue.Next());
    go_on = true;
}

}  // namespace
}  // namespace vantrel::test
