// A plan that grows while its first files are restored.
#include <new>
#include <utility>

#include "common/dos_mask.h"
#include "platform/host/host_code_page.h"
#include "tests/zip/directory_of.h"
#include "tests/zip/reader_fixture.h"
#include "zip/reader/extraction_plan.h"

namespace vantrel::test {
namespace {

using zip::ExtractionPlanner;

class GrowingPlan : public ReaderTest {
  protected:
    ExtractionPlanner PlannerOf(const zip::Directory& directory) {
        return {directory, everything, machine.code_page(),
                [this](const zip::ComponentMessage& message) { reported.push_back(message.text); }};
    }
    static Strings Paths(const ExtractionPlanner& planner) {
        Strings paths;
        for (const zip::PlannedEntry& file : planner.Plan().files) {
            paths.push_back(planner.PathOf(file));
        }
        return paths;
    }

    DosMask everything{"*.*"};
    Strings reported;
};

TEST_F(GrowingPlan, InPortionsIsTheSameAsAtOnce) {
    const zip::Directory directory = DirectoryOf({"a/b.txt", "a", "A/B.TXT", "../c", "d", "D/e"});
    ExtractionPlanner at_once = PlannerOf(directory);
    at_once.PlanAll();
    const Strings reported_at_once = std::exchange(reported, {});
    ExtractionPlanner planner = PlannerOf(directory);
    for (int i = 1; i < 6; ++i) {
        EXPECT_TRUE(planner.PlanMore(1));
    }
    EXPECT_FALSE(planner.PlanMore(1));
    EXPECT_FALSE(planner.PlanMore(1));
    EXPECT_EQ(Paths(planner), (Strings{"a\\b.txt", "A\\B (2).TXT", "d"}));
    EXPECT_EQ(Paths(planner), Paths(at_once));
    EXPECT_EQ(planner.Plan().failed, 3);
    EXPECT_EQ(planner.Plan().bytes, 30u);
    EXPECT_EQ(reported, reported_at_once);
}

TEST_F(GrowingPlan, FilesStayWhereTheyAre) {
    Strings names;
    for (int i = 0; i < 1000; ++i) {
        names.push_back(std::to_string(i));
    }
    const zip::Directory directory = DirectoryOf(names);
    ExtractionPlanner planner = PlannerOf(directory);
    EXPECT_TRUE(planner.PlanMore(1));
    const zip::PlannedEntry* const first = planner.Plan().files.data();
    planner.PlanAll();
    EXPECT_EQ(planner.Plan().files.data(), first);
    EXPECT_EQ(planner.Plan().files.size(), names.size());
}

TEST_F(GrowingPlan, EntriesInAnotherOrderThanTheirDataArePlannedAtOnceAndSorted) {
    const zip::Directory in_order = DirectoryOf({"one", "two", "three"});
    zip::Directory directory;
    directory.start = in_order.start;
    for (const std::size_t index : {2u, 1u, 0u}) {
        directory.entries.Append(in_order.entries[index]);
    }
    ExtractionPlanner planner = PlannerOf(directory);
    EXPECT_FALSE(planner.PlanMore(1));
    EXPECT_EQ(Paths(planner), (Strings{"one", "two", "three"}));
}

// Has no memory left for one name.
class FailingCodePage : public platform::HostCodePage {
  public:
    std::string Fold(const std::string& utf8) override {
        if (utf8 == "last.txt") {
            throw std::bad_alloc();
        }
        return HostCodePage::Fold(utf8);
    }
};

TEST_F(GrowingPlan, ThatFailsEndsTheRunForAllThreads) {
    BuiltArchive archive;
    for (int i = 0; i < 2000; ++i) {
        archive.entries.push_back({.name = std::to_string(i), .content = "x"});
    }
    archive.entries.push_back({.name = "last.txt", .content = "x"});
    files.Put(options.archive, archive.Bytes());
    FailingCodePage code_page;
    const platform::Machine failing =
        With({.files = &files, .code_page = &code_page}, machine.machine());
    EXPECT_EQ(zip::ExtractArchive(failing, options, events).outcome, RunOutcome::kFailed);
    EXPECT_FALSE(files.Exists("C:\\Out\\last.txt"));
}

TEST_F(GrowingPlan, EntriesThatAreNotRestoredNeedNoSpace) {
    BuiltArchive archive;
    archive.entries = {{.name = "a.txt", .content = "alpha"},
                       {.name = "../b.txt", .content = "beta"}};
    files.Put(options.archive, archive.Bytes());
    machine.drives.drives['C'].free_bytes = 5;
    EXPECT_EQ(Run(), RunOutcome::kComplete);
    EXPECT_EQ(Content("a.txt"), "alpha");
    EXPECT_EQ(result.failed, 1);
}

TEST_F(GrowingPlan, SizesWhoseSumIsBeyondAllNumbersNeedTooMuchSpace) {
    BuiltArchive archive;
    const std::string half = std::string(7, '\0') + '\x80';
    for (const char* name : {"a", "b"}) {
        archive.entries.push_back({.name = name,
                                   .content = "x",
                                   .central_extra = ExtraField(1, half),
                                   .size = 0xFFFFFFFF});
    }
    files.Put(options.archive, archive.Bytes());
    machine.drives.drives['C'].free_bytes = 1000;
    EXPECT_EQ(Run(), RunOutcome::kFailed);
    EXPECT_FALSE(files.Exists("C:\\Out"));
}

}  // namespace
}  // namespace vantrel::test
