// Names that no file can have go into folders of other names. A protected folder is one of those as
// well: whatever an archive calls it, nothing in it changes.

#include <map>

#include "tests/restore/restore_tab_fixture.h"
#include "tests/support/matchers.h"
#include "tests/support/memory_file_system.h"
#include "tests/zip/zip_builder.h"

namespace vantrel::test {
namespace {

constexpr const char* kInto = "C:\\RESTORE";
constexpr std::uint16_t kUtf8Name = 0x800;    // APPNOTE 4.4.4, bit 11
constexpr std::uint32_t kFolderEntry = 0x10;  // in the external attributes

// What is below a folder: by path, what each file holds, its attributes and its time.
struct Seen {
    std::string content;
    std::uint32_t attributes = 0;
    platform::Ticks modified = 0;
    bool operator==(const Seen&) const = default;
};
using Below = std::map<std::string, Seen>;

void Look(TestMachine& machine, const std::string& folder, const std::string& path, Below& below) {
    const auto found = machine.files().Find(folder + path);
    ASSERT_TRUE(found) << folder + path;
    below[path] = {found->IsFolder() ? "" : machine.Content(folder + path), found->attributes,
                   found->times.modified};
    if (!found->IsFolder()) {
        return;
    }
    for (std::string name : machine.Names(folder + path)) {
        if (name.back() == '\\') {
            name.pop_back();
        }
        Look(machine, folder, path + "\\" + name, below);
    }
}

struct Row {
    const char* what;
    std::string entry;     // in the archive
    std::string folder;    // on the disk, where that goes
    std::string written;   // the file below the destination; "" where only a folder comes back
    std::string listed{};  // in the list of protected folders; "" is `folder`
    std::uint32_t external = 0x20;
};

std::ostream& operator<<(std::ostream& out, const Row& row) { return out << row.what; }

const Row kRows[] = {
    {"AsItIs", "Mine/letter.txt", "C:\\RESTORE\\Mine", "Mine\\letter.txt"},
    {"Below", "Mine/Deep/Deeper/letter.txt", "C:\\RESTORE\\Mine", "Mine\\Deep\\Deeper\\letter.txt"},
    {"DotSlash", "./Mine/letter.txt", "C:\\RESTORE\\Mine", "Mine\\letter.txt"},
    {"DotBackslash", ".\\Mine\\letter.txt", "C:\\RESTORE\\Mine", "Mine\\letter.txt"},
    {"LeadingSlash", "/Mine/letter.txt", "C:\\RESTORE\\Mine", "Mine\\letter.txt"},
    {"LeadingBackslash", "\\Mine\\letter.txt", "C:\\RESTORE\\Mine", "Mine\\letter.txt"},
    {"SlashAndDotSlash", "/./Mine/letter.txt", "C:\\RESTORE\\Mine", "Mine\\letter.txt"},
    {"LeadingSlashAlone", "/letter.txt", "C:\\RESTORE", "letter.txt"},
    {"Colon", "Mi:ne/letter.txt", "C:\\RESTORE\\Mi_ne", "Mi_ne\\letter.txt"},
    {"Forbidden", "M?i*n|e/letter.txt", "C:\\RESTORE\\M_i_n_e", "M_i_n_e\\letter.txt"},
    {"ControlCharacter", "Mi\x01ne/letter.txt", "C:\\RESTORE\\Mi_ne", "Mi_ne\\letter.txt"},
    {"DotsAtTheEnd", "Mine../letter.txt", "C:\\RESTORE\\Mine__", "Mine__\\letter.txt"},
    {"BlankAtTheEnd", "Mine /letter.txt", "C:\\RESTORE\\Mine_", "Mine_\\letter.txt"},
    {"Device", "aux/letter.txt", "C:\\RESTORE\\_aux", "_aux\\letter.txt"},
    {"DeviceWithExtension", "com1.old/letter.txt", "C:\\RESTORE\\_com1.old",
     "_com1.old\\letter.txt"},
    {"LetterCase", "mINE/letter.txt", "C:\\RESTORE\\Mine", "mine\\letter.txt"},
    {"LetterWithoutCapitalInTheCodePage", "\xCE\x9C/letter.txt", "C:\\RESTORE\\\xC2\xB5",
     "\xC2\xB5\\letter.txt", "C:\\RESTORE\\\xB5"},
    {"FolderAlone", "Mine/", "C:\\RESTORE\\Mine", ""},
    {"FolderAloneAfterDotSlash", "./Mine/", "C:\\RESTORE\\Mine", ""},
    {"FolderByItsAttribute", "Mine", "C:\\RESTORE\\Mine", "", "", kFolderEntry},
};

class ProtectedNames : public RestoreTabTest, public ::testing::WithParamInterface<Row> {
  protected:
    void RestoreArchiveOf(const std::vector<BuiltEntry>& entries) {
        BuiltArchive archive;
        archive.entries = entries;
        machine.PutFile(kArchive, archive.Bytes());
        tab.Fld_RestoreTo.SetCaption(kInto);
        Browse(kArchive);
        Restore();
    }
    Below LookAt(const std::string& folder) {
        Below below;
        Look(machine, folder, "", below);
        return below;
    }
};

TEST_P(ProtectedNames, NothingInTheProtectedFolderChanges) {
    const Row& row = GetParam();
    machine.PutFile(row.folder + "\\letter.txt", "newer work");
    machine.PutFile(row.folder + "\\Deep\\Deeper\\letter.txt", "newer still");
    machine.PutFile(row.folder + "\\Deep\\other.txt", "not in the archive");
    Protect(row.listed.empty() ? row.folder : row.listed);
    const Below before = LookAt(row.folder);
    RestoreArchiveOf({{.name = row.entry,
                       .content = row.written.empty() ? "" : "older",
                       .flags = kUtf8Name,
                       .external = row.external}});
    ASSERT_TRUE(machine.Exists(row.folder + "_001"));
    EXPECT_EQ(LookAt(row.folder + "_001"), before);
    EXPECT_THAT(LogRecords(), Contains(HasSubstr(" renamed to ")).Times(1));
    if (row.written.empty()) {
        return;
    }
    EXPECT_EQ(machine.Content(std::string(kInto) + "\\" + row.written), "older");
}

INSTANTIATE_TEST_SUITE_P(Rows, ProtectedNames, ::testing::ValuesIn(kRows),
                         [](const auto& row) { return row.param.what; });

// A tree with protected folders on several levels, and an archive that calls each by a name of its
// own.
TEST_F(ProtectedNames, WholeTreeComesBackBesideItsProtectedFolders) {
    const std::string folders[] = {"C:\\RESTORE\\Letters", "C:\\RESTORE\\Work\\Plans_",
                                   "C:\\RESTORE\\Work\\_con"};
    std::map<std::string, Below> before;
    for (const std::string& folder : folders) {
        machine.PutFile(folder + "\\a.txt", "newer a");
        machine.PutFile(folder + "\\Sub\\b.txt", "newer b");
        Protect(folder);
        before[folder] = LookAt(folder);
    }
    machine.PutFile("C:\\RESTORE\\Work\\open.txt", "is overwritten");
    RestoreArchiveOf({{.name = "./Letters/a.txt", .content = "older"},
                      {.name = "/LETTERS/Sub/b.txt", .content = "older"},
                      {.name = "Work/Plans./a.txt", .content = "older"},
                      {.name = "Work\\Plans \\Sub\\b.txt", .content = "older"},
                      {.name = "Work/con/a.txt", .content = "older"},
                      {.name = "Work/open.txt", .content = "older"}});
    for (const auto& [folder, seen] : before) {
        EXPECT_EQ(LookAt(folder + "_001"), seen) << folder;
    }
    EXPECT_EQ(machine.Content("C:\\RESTORE\\Letters\\Sub\\b.txt"), "older");
    EXPECT_EQ(machine.Content("C:\\RESTORE\\Work\\open.txt"), "older");
}

// The first names mean no folder of their own; refused ones are not written anywhere.
TEST_F(ProtectedNames, FolderThatNoEntryGoesIntoStays) {
    machine.PutFile("C:\\RESTORE\\Mine\\letter.txt", "newer work");
    Protect("C:\\RESTORE\\MINE");
    RestoreArchiveOf({{.name = "./", .content = ""},
                      {.name = "./letter.txt", .content = "older"},
                      {.name = "Other/../Mine/letter.txt", .content = "refused"}});
    EXPECT_EQ(machine.Content("C:\\RESTORE\\Mine\\letter.txt"), "newer work");
    EXPECT_FALSE(machine.Exists("C:\\RESTORE\\MINE_001"));
}

// On a disk that has short names.
class ProtectedShortNames : public ProgramFixture {
  protected:
    ProtectedShortNames() {
        there.globals = program.globals;
        files.PutFolder("C:\\Vantrel");
        clsCfg(there).Create_CFG(clsCfg(there).ListPath());
    }
    void RestoreOver(const std::string& listed, const std::string& into, const std::string& entry) {
        platform::AppendToFile(files, clsCfg(there).ListPath(), listed + "\r\n");
        BuiltArchive archive;
        archive.entries = {{.name = entry, .content = "older"}};
        files.Put(kArchive, archive.Bytes());
        Tab tab(there);
        tab.Fld_RestoreTo.SetCaption(into);
        desktop.files.push_back(kArchive);
        tab.actions.Cmd_RestoreFile_Click();
        desktop.idle.push_back(
            [this] { dynamic_cast<forms::Button*>(desktop.Front()->Find("Cmd_Ok"))->UserPress(); });
        tab.actions.Cmd_Restore_Click();
    }

    MemoryFileSystem files;
    platform::Machine over_memory{WithFiles(machine.machine(), files)};
    forms::Program there{over_memory, desktop};
};

// The entry does not mean that folder, so it goes into one with "_", which is the protected one.
TEST_F(ProtectedShortNames, EntryNamedAsAnotherFoldersShortName) {
    files.Put("C:\\RESTORE\\Letters of mine\\x", "other");
    files.Alias("C:\\RESTORE\\LETTER~1", "C:\\RESTORE\\Letters of mine");
    files.Alias("C:\\RESTORE\\LETTERS OF MINE_", "C:\\RESTORE\\LETTER~1_");  // it is none of that
    files.Put("C:\\RESTORE\\LETTER~1_\\letter.txt", "newer work");
    RestoreOver("C:\\RESTORE\\LETTER~1_", "C:\\RESTORE", "Letter~1/letter.txt");
    EXPECT_EQ(files.Content("C:\\RESTORE\\LETTER~1__001\\letter.txt"), "newer work");
    EXPECT_EQ(files.Content("C:\\RESTORE\\LETTER~1_\\letter.txt"), "older");
}

TEST_F(ProtectedShortNames, DestinationGivenByItsShortName) {
    files.Put("C:\\Work of mine\\Plans\\letter.txt", "newer work");
    files.Alias("C:\\WORKOF~1", "C:\\Work of mine");
    RestoreOver("C:\\WORK OF MINE\\PLANS", "C:\\WORKOF~1", "Plans/letter.txt");
    EXPECT_EQ(files.Content("C:\\Work of mine\\Plans_001\\letter.txt"), "newer work");
    EXPECT_EQ(files.Content("C:\\Work of mine\\Plans\\letter.txt"), "older");
}

TEST_F(ProtectedShortNames, ProtectedFolderListedByItsShortName) {
    files.Put("C:\\RESTORE\\Plans of mine\\letter.txt", "newer work");
    files.Alias("C:\\RESTORE\\PLANSO~1", "C:\\RESTORE\\Plans of mine");
    RestoreOver("C:\\RESTORE\\PLANSO~1", "C:\\RESTORE", "Plans of mine/letter.txt");
    EXPECT_EQ(files.Content("C:\\RESTORE\\Plans of mine\\letter.txt"), "older");
    bool kept = false;
    for (const std::string& path : files.Everything()) {
        kept |= path.ends_with("\\letter.txt") && files.Content(path) == "newer work";
    }
    EXPECT_TRUE(kept);
}

}  // namespace
}  // namespace vantrel::test
