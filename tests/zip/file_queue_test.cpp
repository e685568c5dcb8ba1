// Who restores which files.
#include "zip/reader/file_queue.h"

#include <gtest/gtest.h>

#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "common/dos_mask.h"
#include "tests/support/test_machine.h"
#include "tests/zip/directory_of.h"

namespace vantrel::test {
namespace {

using FileRange = zip::FileQueue::FileRange;
using Batch = zip::FileQueue::Batch;

class FileQueue : public ::testing::Test {
  protected:
    // All of a folder's files have `size` bytes.
    void Add(const std::string& folder, int files) {
        for (int i = 0; i < files; ++i) {
            names_.push_back(folder + "/" + std::to_string(i));
        }
    }
    // Nothing of it may be restored yet.
    zip::FileQueue& Make(std::uint64_t size = 10) {
        directory_ = DirectoryOf(names_, size);
        planner_.emplace(directory_, everything_, machine_.code_page(), [](const auto&) {});
        planner_->PlanAll();
        return queue_.emplace(directory_, planner_->Plan(), stop.get_token());
    }
    static std::string Text(const Batch& batch) {
        return std::to_string(batch.begin) + "-" + std::to_string(batch.end);
    }

    std::stop_source stop;

  private:
    TestMachine machine_;
    std::vector<std::string> names_;
    DosMask everything_{"*.*"};
    zip::Directory directory_;
    std::optional<zip::ExtractionPlanner> planner_;
    std::optional<zip::FileQueue> queue_;
};

TEST_F(FileQueue, GivesOnlyWhatIsPlanned) {
    Add("a", 3);
    zip::FileQueue& queue = Make();
    FileRange& range = queue.Join();
    queue.SetPlanned(2, false);
    EXPECT_EQ(Text(queue.Next(range)), "0-2");
    queue.SetPlanned(3, true);
    EXPECT_EQ(Text(queue.Next(range)), "2-3");
    EXPECT_TRUE(queue.Next(range).IsEmpty());
}

TEST_F(FileQueue, WaitsForMore) {
    Add("a", 2);
    zip::FileQueue& queue = Make();
    std::size_t files = 0;
    {
        std::jthread other([&queue, &files] {
            FileRange& range = queue.Join();
            for (Batch batch = queue.Next(range); !batch.IsEmpty(); batch = queue.Next(range)) {
                files += batch.end - batch.begin;
            }
        });
        queue.SetPlanned(1, false);
        queue.SetPlanned(2, true);
    }
    EXPECT_EQ(files, 2u);
}

TEST_F(FileQueue, EndsWithTheRun) {
    Add("a", 2);
    zip::FileQueue& queue = Make();
    std::jthread other([&queue] { EXPECT_TRUE(queue.Next(queue.Join()).IsEmpty()); });
    stop.request_stop();
}

TEST_F(FileQueue, ManySmallFilesAreABatchAndALargeOneIsAlone) {
    Add("a", 100);
    zip::FileQueue& small = Make();
    small.SetPlanned(100, true);
    FileRange& range = small.Join();
    const Batch first = small.Next(range);
    EXPECT_EQ(Text(first), "0-64");
    EXPECT_GE(first.bytes, 64u * 40);
    EXPECT_EQ(Text(small.Next(range)), "64-100");

    zip::FileQueue& large = Make(2 << 20);
    large.SetPlanned(100, true);
    const Batch alone = large.Next(large.Join());
    EXPECT_EQ(Text(alone), "0-1");
    EXPECT_EQ(alone.bytes, 0u);
}

TEST_F(FileQueue, FolderIsOneThreadsAsLongAsThereIsAnother) {
    Add("a", 200);
    Add("b", 10);
    zip::FileQueue& queue = Make();
    queue.SetPlanned(210, true);
    FileRange& one = queue.Join();
    FileRange& other = queue.Join();
    EXPECT_EQ(Text(queue.Next(one)), "0-64");
    EXPECT_EQ(Text(queue.Next(other)), "200-210");
    EXPECT_EQ(Text(queue.Next(one)), "64-128");
    // Of the 72 that the first one still has the later half.
    EXPECT_EQ(Text(queue.Next(other)), "164-200");
    EXPECT_EQ(Text(queue.Next(one)), "128-164");
    EXPECT_TRUE(queue.Next(one).IsEmpty());
    EXPECT_TRUE(queue.Next(other).IsEmpty());
}

TEST_F(FileQueue, FolderOfLargeFilesIsForAllThreads) {
    Add("a", 20);
    zip::FileQueue& queue = Make(10 << 20);
    queue.SetPlanned(20, true);
    EXPECT_EQ(Text(queue.Next(queue.Join())), "0-1");
    EXPECT_EQ(Text(queue.Next(queue.Join())), "3-4");
}

TEST_F(FileQueue, GivesEachFileOnceToAnyNumberOfThreads) {
    for (const char* folder : {"a", "b", "c", "d"}) {
        Add(folder, 700);
    }
    zip::FileQueue& queue = Make();
    std::mutex mutex;
    std::set<std::size_t> given;
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 5; ++i) {
            threads.emplace_back([&] {
                FileRange& range = queue.Join();
                for (Batch batch = queue.Next(range); !batch.IsEmpty(); batch = queue.Next(range)) {
                    const std::lock_guard lock(mutex);
                    for (std::size_t file = batch.begin; file < batch.end; ++file) {
                        EXPECT_TRUE(given.insert(file).second) << file;
                    }
                }
            });
        }
        for (std::size_t planned = 0; planned <= 2800; planned += 100) {
            queue.SetPlanned(planned, planned == 2800);
        }
    }
    EXPECT_EQ(given.size(), 2800u);
}

}  // namespace
}  // namespace vantrel::test
