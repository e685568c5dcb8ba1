// What only the host's machine can be asked: links, devices, names that Windows does not know.
#include <fcntl.h>
#include <sched.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>

#include "common/error.h"
#include "platform/host/host_info.h"
#include "platform/host/host_machine.h"
#include "platform/host/host_path.h"
#include "platform/text_file.h"
#include "tests/platform/work_folder.h"
#include "tests/support/error_of.h"
#include "tests/support/matchers.h"
#include "tests/support/test_machine.h"

namespace vantrel::test {
namespace {

using namespace error_number;
using platform::OpenMode;
namespace attribute = platform::attribute;

class Host : public ::testing::Test {
  protected:
    TestMachine machine;
    platform::FileSystem& files = machine.files();

    std::string OnHost(const std::string& name) { return machine.HostPath("C:\\" + name); }
};

TEST_F(Host, LinksAreListedAndFoundAsLinksWithoutBeingFollowed) {
    machine.PutFile("C:\\real\\a.txt", "bytes");
    ASSERT_EQ(::symlink("real", OnHost("to folder").c_str()), 0);
    ASSERT_EQ(::symlink("nowhere", OnHost("dangling").c_str()), 0);
    std::vector<std::string> links;
    files.List("C:\\", [&](const platform::FileInfo& info) {
        if (info.is_link) {
            links.push_back(info.name);
        }
        return true;
    });
    EXPECT_THAT(links, UnorderedElementsAre("to folder", "dangling"));
    EXPECT_TRUE(files.Find("C:\\to folder")->is_link);
    EXPECT_TRUE(files.Find("C:\\DANGLING")->is_link);
    EXPECT_NE(files.Find("C:\\dangling")->attributes & attribute::kReparse, 0u);
}

TEST_F(Host, LinkOnTheWayIsFollowed) {
    machine.PutFile("C:\\real\\a.txt", "bytes");
    ASSERT_EQ(::symlink("real", OnHost("link").c_str()), 0);
    EXPECT_EQ(machine.Content("C:\\LINK\\A.TXT"), "bytes");
    EXPECT_TRUE(files.SameFile("C:\\link\\a.txt", "C:\\real\\a.txt"));
}

TEST_F(Host, RemovingALinkLeavesItsTarget) {
    machine.PutFile("C:\\a.txt", "bytes");
    ASSERT_EQ(::symlink("a.txt", OnHost("link").c_str()), 0);
    files.RemoveFile("C:\\link");
    EXPECT_EQ(machine.Content("C:\\a.txt"), "bytes");
}

TEST_F(Host, AttributesOfALinkAreNotItsTargets) {
    machine.PutFile("C:\\a.txt", "bytes");
    ASSERT_EQ(::symlink("a.txt", OnHost("link").c_str()), 0);
    EXPECT_EQ(ErrorOf([&] { files.SetAttributes("C:\\link", attribute::kReadOnly); }),
              kPermissionDenied);
    EXPECT_EQ(files.Find("C:\\a.txt")->attributes & attribute::kReadOnly, 0u);
}

TEST_F(Host, PipeIsADeviceAndOpeningItDoesNotBlock) {
    ASSERT_EQ(::mkfifo(OnHost("pipe").c_str(), 0600), 0);
    EXPECT_NE(files.Find("C:\\pipe")->attributes & attribute::kDevice, 0u);
    for (const OpenMode mode : {OpenMode::kRead, OpenMode::kWrite, OpenMode::kAppend}) {
        EXPECT_EQ(ErrorOf([&] { files.Open("C:\\pipe", mode); }), kPermissionDenied);
    }
}

TEST_F(Host, DeviceIsADevice) {
    const platform::HostDriveMap map({{'Z', {.folder = "/"}}});
    const auto all = platform::NewHostFileSystem(map);
    EXPECT_NE(all->Find("Z:\\dev\\null")->attributes & attribute::kDevice, 0u);
    EXPECT_EQ(ErrorOf([&] { all->Open("Z:\\dev\\null", OpenMode::kRead); }), kPermissionDenied);
}

TEST_F(Host, RootOfTheHostIsDriveZUnlessToldOtherwise) {
    platform::HostMachine whole;
    machine.PutFile("C:\\a.txt", "bytes");
    std::string path = "Z:" + OnHost("a.txt");
    EXPECT_EQ(platform::ReadWholeFile(whole.machine().files, path), "bytes");
    EXPECT_EQ(whole.machine().drives.Type("Z:\\"), platform::drive_type::kFixed);
    EXPECT_EQ(whole.machine().drives.Type("C:\\"), platform::drive_type::kNoRoot);
}

TEST_F(Host, DriveOfExactNamesKnowsOneSpellingOnly) {
    machine.PutFile("C:\\sub\\name.txt", "bytes");
    platform::HostMachine exact({{'C', {.folder = OnHost(""), .exact_names = true}}});
    auto& exact_files = exact.machine().files;
    EXPECT_TRUE(exact_files.Find("C:\\sub\\name.txt"));
    EXPECT_FALSE(exact_files.Find("C:\\sub\\NAME.txt"));
    exact_files.Open("C:\\sub\\NAME.txt", OpenMode::kCreateNew)->Close();
    EXPECT_THAT(machine.Names("C:\\sub"), UnorderedElementsAre("NAME.txt", "name.txt"));
    EXPECT_EQ(ErrorOf([&] { exact_files.Open("C:\\sub\\NAME.txt", OpenMode::kCreateNew); }),
              kFileExists);
    EXPECT_EQ(ErrorOf([&] { exact_files.Open("C:\\SUB\\new", OpenMode::kCreateNew); }),
              kPathNotFound);
}

TEST_F(Host, FolderOfAnExactNameIsMadeOnce) {
    machine.PutFile("C:\\sub\\file", "bytes");
    platform::HostMachine exact({{'C', {.folder = OnHost(""), .exact_names = true}}});
    auto& exact_files = exact.machine().files;
    exact_files.MakeFolder("C:\\sub\\new");
    exact_files.MakeFolder("C:\\sub\\NEW");
    EXPECT_THAT(machine.Names("C:\\sub"), UnorderedElementsAre("NEW\\", "file", "new\\"));
    for (const char* taken : {"C:\\sub\\new", "C:\\sub\\file", "C:\\"}) {
        EXPECT_EQ(ErrorOf([&] { exact_files.MakeFolder(taken); }), kPathFileAccess) << taken;
    }
    EXPECT_EQ(ErrorOf([&] { exact_files.MakeFolder("C:\\SUB\\new"); }), kPathNotFound);
    EXPECT_EQ(ErrorOf([&] { exact_files.MakeFolder("C:\\sub\\file\\new"); }), kPathNotFound);
}

TEST_F(Host, FolderOfExactNamesIsLookedForOnceAndMakesNewFilesLikeOpen) {
    machine.PutFile("C:\\sub\\taken", "bytes");
    platform::HostMachine exact({{'C', {.folder = OnHost(""), .exact_names = true}}});
    auto& exact_files = exact.machine().files;
    const auto sub = exact_files.OpenFolder("C:\\sub");
    for (const char* name : {"a", "b", "TAKEN"}) {
        sub->Create(name)->Close();
    }
    EXPECT_EQ(ErrorOf([&] { sub->Create("taken"); }), kFileExists);
    for (const char* name : {"a?b", "", ".", ".."}) {
        EXPECT_NE(ErrorOf([&] { sub->Create(name); }), 0) << name;
    }
    // What is made while it has another name goes along.
    exact_files.Rename("C:\\sub", "C:\\other");
    sub->Create("c")->Close();
    EXPECT_THAT(machine.Names("C:\\other"), UnorderedElementsAre("TAKEN", "a", "b", "c", "taken"));
    EXPECT_EQ(ErrorOf([&] { sub->Create("c"); }), kPathNotFound);
}

TEST_F(Host, FolderOfExactNamesMadeAnewTakesFilesAgain) {
    machine.PutFile("C:\\sub\\old", "bytes");
    platform::HostMachine exact({{'C', {.folder = OnHost(""), .exact_names = true}}});
    auto& exact_files = exact.machine().files;
    const auto sub = exact_files.OpenFolder("C:\\sub");
    for (const char* name : {"a", "b"}) {
        sub->Create(name)->Close();
    }
    for (const char* name : {"a", "b", "old"}) {
        exact_files.RemoveFile(std::string("C:\\sub\\") + name);
    }
    exact_files.RemoveFolder("C:\\sub");
    EXPECT_EQ(ErrorOf([&] { sub->Create("c"); }), kPathNotFound);
    exact_files.MakeFolder("C:\\sub");
    sub->Create("c")->Close();
    EXPECT_THAT(machine.Names("C:\\sub"), UnorderedElementsAre("c"));
}

TEST_F(Host, RenameMayChangeLetterCaseOnly) {
    machine.PutFile("C:\\sub\\name.txt", "bytes");
    files.Rename("C:\\SUB\\name.txt", "C:\\SUB\\NAME.txt");
    EXPECT_THAT(machine.Names("C:\\sub"), ElementsAre("NAME.txt"));
}

TEST_F(Host, ExactNameComesBeforeOneThatDiffersInLetterCase) {
    // Made behind the seam's back: here the host knows two names where Windows knows one.
    machine.PutFile("C:\\a.txt", "small");
    ::close(::open(OnHost("b.txt").c_str(), O_CREAT | O_WRONLY, 0600));
    ASSERT_EQ(::rename(OnHost("b.txt").c_str(), (OnHost("") + "/A.txt").c_str()), 0);
    EXPECT_EQ(machine.Content("C:\\a.txt"), "small");
    EXPECT_EQ(machine.Content("C:\\A.txt"), "");
}

TEST_F(Host, AttributesAreTheTextThatOtherProgramsKeep) {
    machine.PutFile("C:\\a.txt", "bytes");
    const std::string host = OnHost("a.txt");
    files.SetAttributes("C:\\a.txt", attribute::kHidden | attribute::kArchive);
    char text[16] = {};
    ASSERT_EQ(::getxattr(host.c_str(), "user.DOSATTRIB", text, sizeof text), 4);
    EXPECT_EQ(std::string(text), "0x22");
    // Others add bytes of their own behind it.
    ASSERT_EQ(::setxattr(host.c_str(), "user.DOSATTRIB", "0x6\0\0junk", 9, 0), 0);
    EXPECT_EQ(files.Find("C:\\a.txt")->attributes, attribute::kHidden | attribute::kSystem);
    ASSERT_EQ(::setxattr(host.c_str(), "user.DOSATTRIB", "nonsense", 8, 0), 0);
    EXPECT_EQ(files.Find("C:\\a.txt")->attributes, attribute::kArchive);
}

TEST_F(Host, ReadOnlyIsTheLackOfWriteBits) {
    machine.PutFile("C:\\a.txt", "bytes");
    ASSERT_EQ(::chmod(OnHost("a.txt").c_str(), 0444), 0);
    EXPECT_NE(files.Find("C:\\a.txt")->attributes & attribute::kReadOnly, 0u);
    files.SetAttributes("C:\\a.txt", 0);
    struct stat status {};
    ASSERT_EQ(::stat(OnHost("a.txt").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777u, 0644u);
}

TEST_F(Host, ReadOnlyFolderStillTakesFiles) {
    machine.MakeFolders("C:\\sub");
    files.SetAttributes("C:\\sub", attribute::kReadOnly);
    EXPECT_NE(files.Find("C:\\sub")->attributes & attribute::kReadOnly, 0u);
    machine.PutFile("C:\\sub\\a", "bytes");
    EXPECT_EQ(machine.Content("C:\\sub\\a"), "bytes");
}

TEST_F(Host, PathBeyondTheHostsOwnLimitWorks) {
    std::string path = "C:";
    while (path.size() < 9000) {
        path += "\\" + std::string(200, 'd');
        files.MakeFolder(path);
    }
    platform::WriteWholeFile(files, path + "\\File", "deep");
    EXPECT_EQ(platform::ReadWholeFile(files, path + "\\FILE"), "deep");
    files.SetAttributes(path + "\\file", attribute::kHidden);
    EXPECT_TRUE(files.Find(path + "\\File")->IsHiddenOrSystem());
    EXPECT_THAT(machine.Names(path), ElementsAre("File"));
    files.RemoveFile(path + "\\File");
}

TEST_F(Host, NamesThatAreNoUtf8AreFoundAsTheyAre) {
    const std::string raw = "caf\xE9";
    ::close(::open((OnHost("") + "/" + raw).c_str(), O_CREAT | O_WRONLY, 0600));
    EXPECT_THAT(machine.Names("C:\\"), ElementsAre("Vantrel\\", raw));
    EXPECT_TRUE(machine.Exists("C:\\" + raw));
}

TEST_F(Host, NetworkPathIsAFolderThatIsNotThere) {
    EXPECT_FALSE(machine.Exists("\\\\server\\share\\a"));
    EXPECT_EQ(ErrorOf([&] { files.List("\\\\server\\share", [](const auto&) { return true; }); }),
              kPathNotFound);
}

TEST_F(Host, TimeOfCreationIsTold) {
    const auto before = UtcNow();
    machine.PutFile("C:\\a.txt", "bytes");
    const auto created = files.Find("C:\\a.txt")->times.created;
    constexpr platform::Ticks kSecond = 10'000'000;
    EXPECT_GE(created + kSecond, before);
    EXPECT_LE(created, UtcNow());
}

TEST_F(Host, HasNoMailProgram) {
    platform::HostMachine host;
    platform::Machine& seam = host.machine();
    EXPECT_EQ(ErrorOf([&] { seam.mail_session.SignOn(); }), platform::mail_error::kNotSupported);
    EXPECT_EQ(ErrorOf([&] { seam.mail_messages.Send(true); }), platform::mail_error::kNotSupported);
    seam.mail_session.SignOff();
    EXPECT_EQ(seam.mail_session.SessionId(), 0u);
}

TEST(HostProcess, RunsOnTheProcessorsThatItMayUse) {
    platform::HostProcess process({});
    cpu_set_t before;
    ASSERT_EQ(::sched_getaffinity(0, sizeof before, &before), 0);
    EXPECT_EQ(process.Processors(), CPU_COUNT(&before));
    int first = 0;
    while (!CPU_ISSET(first, &before)) {
        ++first;
    }
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(first, &one);
    ASSERT_EQ(::sched_setaffinity(0, sizeof one, &one), 0);
    EXPECT_EQ(process.Processors(), 1);
    ASSERT_EQ(::sched_setaffinity(0, sizeof before, &before), 0);
}

TEST(HostError, EachCodeIsTheNumberThatWindowsHasForIt) {
    using platform::FileOperation;
    const struct {
        int code, of_a_file, of_a_folder, of_a_list;
    } expected[] = {
        {ENOENT, kFileNotFound, kPathNotFound, kPathNotFound},
        {ENOTDIR, kPathNotFound, kPathNotFound, kPathNotFound},
        {EACCES, kPermissionDenied, kPathFileAccess, kPathFileAccess},
        {EEXIST, kFileExists, kPathFileAccess, kPathFileAccess},
        {ENOTEMPTY, kDeviceIo, kPathFileAccess, kPathFileAccess},
        {ENOSPC, kDiskFull, kDiskFull, kDiskFull},
        {EXDEV, kAcrossDrives, kAcrossDrives, kAcrossDrives},
        {ENAMETOOLONG, kBadFileName, kPathFileAccess, kPathNotFound},
        {ENOMEM, kOutOfMemory, kOutOfMemory, kOutOfMemory},
        {ENODEV, kDeviceUnavailable, kDeviceUnavailable, kDeviceUnavailable},
        {ENOMEDIUM, kDiskNotReady, kDiskNotReady, kDiskNotReady},
        {EIO, kDeviceIo, kDeviceIo, kDeviceIo},
    };
    for (const auto& row : expected) {
        EXPECT_EQ(HostErrorNumber(row.code, FileOperation::kFile), row.of_a_file) << row.code;
        EXPECT_EQ(HostErrorNumber(row.code, FileOperation::kFolder), row.of_a_folder) << row.code;
        EXPECT_EQ(HostErrorNumber(row.code, FileOperation::kList), row.of_a_list) << row.code;
    }
}

}  // namespace
}  // namespace vantrel::test
