// Which files belong to a backup, the file specification, and the list of files in memory.
#include "zip/writer/source_scan.h"

#include "tests/zip/writer_fixture.h"

namespace vantrel::test {
namespace {

using platform::FileInfo;

class SourceScan : public WriterTest {
  protected:
    SourceScan() {
        for (const char* name : {"a.txt", "b.doc", "README", "Sub\\c.txt", "Sub\\d.doc"}) {
            files.Put(std::string("C:\\Data\\") + name, "x");
        }
        files.PutFolder("C:\\Data\\Empty");
    }
    Strings Names() {
        EXPECT_EQ(Run(), RunOutcome::kComplete);
        return Archive().Names();
    }
};

TEST_F(SourceScan, StarDotStarIncludesEverything) {
    EXPECT_EQ(Names(), (Strings{"README", "a.txt", "b.doc", "Empty/", "Sub/c.txt", "Sub/d.doc"}));
}

TEST_F(SourceScan, MaskAppliesInEachSubFolder) {
    options.source.mask = "*.txt";
    EXPECT_EQ(Names(), (Strings{"a.txt", "Sub/c.txt"}));
}

TEST_F(SourceScan, WithoutSubFoldersOnlyTheFolderItself) {
    options.source.sub_folders = false;
    EXPECT_EQ(Names(), (Strings{"README", "a.txt", "b.doc"}));
}

TEST_F(SourceScan, EmptyFoldersNeedStarDotStar) {
    options.source.mask = "*.doc";
    EXPECT_EQ(Names(), (Strings{"b.doc", "Sub/d.doc"}));
    files.PutFolder("C:\\Data\\Empty\\Inner");
    options.source.mask = "*.*";
    EXPECT_EQ(Names(),
              (Strings{"README", "a.txt", "b.doc", "Empty/Inner/", "Sub/c.txt", "Sub/d.doc"}));
}

TEST_F(SourceScan, HiddenAndSystemFilesAreIncluded) {
    files.Change("C:\\Data\\a.txt", [](FileInfo& info) {
        info.attributes |= platform::attribute::kHidden | platform::attribute::kSystem;
    });
    files.Change("C:\\Data\\Sub",
                 [](FileInfo& info) { info.attributes |= platform::attribute::kHidden; });
    options.source.mask = "*.txt";
    EXPECT_EQ(Names(), (Strings{"a.txt", "Sub/c.txt"}));
}

TEST_F(SourceScan, LinksAreNotEnteredWithOneMessageEach) {
    files.Change("C:\\Data\\Sub", [](FileInfo& info) { info.is_link = true; });
    files.Change("C:\\Data\\a.txt", [](FileInfo& info) { info.is_link = true; });
    EXPECT_EQ(Names(), (Strings{"README", "b.doc", "Empty/"}));
    EXPECT_EQ(events.Texts(MessageKind::kWarning),
              (Strings{"Skipped a link, which is not followed: C:\\Data\\Sub",
                       "Skipped a link, which is not followed: C:\\Data\\a.txt"}));
    EXPECT_EQ(result.skipped, 0) << "no data of a link is missing";
}

TEST_F(SourceScan, CloudPlaceholdersAreOrdinaryFiles) {
    files.Change("C:\\Data\\a.txt",
                 [](FileInfo& info) { info.attributes |= platform::attribute::kReparse; });
    options.source.mask = "a.*";
    EXPECT_EQ(Names(), (Strings{"a.txt"}));
}

TEST_F(SourceScan, DevicesAreSkippedWithAMessage) {
    files.Change("C:\\Data\\a.txt",
                 [](FileInfo& info) { info.attributes |= platform::attribute::kDevice; });
    options.source.sub_folders = false;
    EXPECT_EQ(Names(), (Strings{"README", "b.doc"}));
    EXPECT_EQ(events.Texts(MessageKind::kWarning),
              (Strings{"Skipped a device, which holds no data to back up: C:\\Data\\a.txt"}));
}

TEST_F(SourceScan, AnUnreadableFolderIsAWarningAndCounted) {
    FailCalls(files, {.name = "List", .path = "C:\\Data\\Sub"}, error_number::kPathFileAccess);
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    files.before = nullptr;
    EXPECT_EQ(Archive().Names(), (Strings{"README", "a.txt", "b.doc", "Empty/"}));
    EXPECT_EQ(result.skipped, 1);
    ASSERT_EQ(events.Texts(MessageKind::kWarning),
              (Strings{"Skipped a folder that cannot be read: C:\\Data\\Sub (Path/File access "
                       "error)."}));
    const auto& message = events.messages.front();
    EXPECT_EQ(message.code, error_number::kPathFileAccess);
    EXPECT_EQ(message.path, "C:\\Data\\Sub");
}

TEST_F(SourceScan, ListsEachFolderOnceAndOpensNoFile) {
    std::mutex mutex;
    std::map<std::string, int> lists;
    bool opened = false;
    bool opened_while_scanning = false;
    files.before = [&](const std::string& call, const std::string& path) {
        const std::lock_guard lock(mutex);
        if (call == "List" && path.starts_with("C:\\Data")) {
            ++lists[path];
            opened_while_scanning |= opened;
        }
        opened |= call == "Open" && path.starts_with("C:\\Data");
    };
    ASSERT_EQ(Run(), RunOutcome::kComplete);
    files.before = nullptr;
    EXPECT_FALSE(opened_while_scanning);
    EXPECT_TRUE(opened);
    EXPECT_EQ(lists, (std::map<std::string, int>{
                         {"C:\\Data", 1}, {"C:\\Data\\Empty", 1}, {"C:\\Data\\Sub", 1}}));
}

TEST_F(SourceScan, ListAndWarningsDoNotDependOnThreads) {
    for (int i = 0; i < 200; ++i) {
        const std::string folder = "C:\\Data\\" + std::to_string(i % 7) + "\\" + std::to_string(i);
        files.Put(folder + "\\file", "x");
        files.PutFolder(folder + "\\Empty");
        files.PutFolder(folder + "\\Denied");
    }
    files.before = [](const std::string& call, const std::string& path) {
        if (call == "List" && path.ends_with("Denied")) {
            RaiseError(error_number::kPathFileAccess);
        }
    };
    Strings warnings;
    Strings names;
    for (const int threads : {1, 2, 4}) {
        events.messages.clear();
        options.threads = threads;
        ASSERT_EQ(Run(), RunOutcome::kComplete);
        EXPECT_EQ(result.skipped, 200);
        if (threads == 1) {
            warnings = events.Texts(MessageKind::kWarning);
            names = Archive().Names();
            EXPECT_EQ(names.size(), 406u);
        }
        EXPECT_EQ(events.Texts(MessageKind::kWarning), warnings) << threads;
        EXPECT_EQ(Archive().Names(), names) << threads;
    }
}

TEST_F(SourceScan, ARootCanBeTheSource) {
    options.source.folder = "C:\\";
    options.source.mask = "a.txt";
    EXPECT_EQ(Names(), (Strings{"Data/a.txt"}));
}

TEST_F(SourceScan, APathTooLongForAHeaderIsSkippedWithAWarning) {
    std::string folder = "C:\\Data";
    for (int i = 0; i < 300; ++i) {
        folder += "\\" + std::string(250, 'n');
    }
    files.Put(folder + "\\deep.txt", "x");
    options.source.mask = "*.txt";
    EXPECT_EQ(Names(), (Strings{"a.txt", "Sub/c.txt"}));
    EXPECT_EQ(result.skipped, 1);
}

TEST(FileSpec, QuotesAreRemovedAndFolderAndMaskSplit) {
    const char* const rows[][3] = {{R"("C:\My Data\*.txt")", R"(C:\My Data)", "*.txt"},
                                   {R"(C:\Data\*.*)", R"(C:\Data)", "*.*"},
                                   {R"("C:\*.*")", R"(C:\)", "*.*"},
                                   {R"("C:\Data\")", R"(C:\Data)", "*.*"},
                                   {R"("\\s\d\x\*.*")", R"(\\s\d\x)", "*.*"},
                                   {R"("\\s\d\*.*")", R"(\\s\d\)", "*.*"},
                                   {R"("\*.*")", R"(\)", "*.*"},
                                   {R"("\Data\*.*")", R"(\Data)", "*.*"},
                                   {"", "", "*.*"}};
    for (const auto& [spec, folder, mask] : rows) {
        EXPECT_EQ(zip::ParseFileSpec(spec).folder, folder) << spec;
        EXPECT_EQ(zip::ParseFileSpec(spec).mask, mask) << spec;
    }
}

TEST(RecordList, ReturnsRecordsInOrder) {
    zip::RecordList list;
    for (int i = 0; i < 50000; ++i) {
        list.Append("Folder\\Sub\\file" + std::to_string(i));
    }
    list.Append("");
    EXPECT_EQ(list.Count(), 50001u);
    for (int i = 0; i < 50000; ++i) {
        ASSERT_EQ(list.Take(), "Folder\\Sub\\file" + std::to_string(i));
    }
    EXPECT_EQ(list.Take(), "");
    EXPECT_EQ(list.Take(), std::nullopt);
    EXPECT_EQ(list.Take(), std::nullopt);
}

TEST(RecordList, WithoutRecordsReturnsNothing) {
    EXPECT_EQ(zip::RecordList().Take(), std::nullopt);
}

TEST(RecordList, HoldsRecordsLongerThanABlock) {
    zip::RecordList list;
    list.Append(std::string(1000000, 'x'));
    list.Append("y");
    EXPECT_EQ(list.Take(), std::string(1000000, 'x'));
    EXPECT_EQ(list.Take(), "y");
}

}  // namespace
}  // namespace vantrel::test
