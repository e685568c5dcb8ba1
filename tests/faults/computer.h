// A whole computer for one run of the program over a disk that fails on demand: the program from
// its start-up procedure on, the person in front of it, and what is left when it has ended.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "app/application.h"
#include "tests/support/faulty_file_system.h"
#include "tests/support/scripted_desktop.h"
#include "tests/support/test_machine.h"
#include "tests/zip/disk_box.h"

namespace vantrel::test {

constexpr const char* kSetPath = "C:\\Vantrel\\WEEKLY.INI";
constexpr const char* kListPath = "C:\\Vantrel\\Vantrel.Cfg";
constexpr const char* kLogPath = "C:\\Vantrel\\Vantrel.Log";

// How the program came out of what it was doing.
enum class Ending {
    kCameBack,  // and its window is still open, or it has closed it
    kEnded,     // at once, by itself
    kDied,
};

using Tree = std::map<std::string, std::string>;  // content by path

class Computer {
  public:
    // Files in memory, which cost less than folders of the host; what renames folders needs the
    // host. Drive A: has disks that are changed in kBoxOfDisks only.
    enum class Disk { kMemory, kHost, kBoxOfDisks };
    explicit Computer(Disk disk = Disk::kMemory);
    ~Computer();

    FaultPlan& plan() { return faulty.plan; }

    // --- arranging; no fault strikes here unless one has been injected ---
    void Put(const std::string& path, const std::string& bytes) { PutFile(disk, path, bytes); }
    void MakeFolders(const std::string& path) { test::MakeFolders(disk, path); }
    // C:\Vantrel with a set WEEKLY.INI (C:\Data to C:\Backups\WEEKLY.zip), a log with records and
    // a list that protects C:\Data; C:\Data with three files.
    void Furnish();
    // Runs the start-up procedure: with a command line one unattended run, else until the main
    // window is there.
    void Start(const std::string& command_line = "");
    Frm_Mainmenu& window() { return application->main_window(); }
    // Runs `act` and whatever the entry point does with what comes out of it.
    Ending Work(const std::function<void()>& act);

    // --- looking, below the faults ---
    bool Exists(const std::string& path) { return disk.Find(path).has_value(); }
    // "" for a file that is not there.
    std::string Content(const std::string& path);
    // Every file below a folder.
    Tree Below(const std::string& folder);

    TestMachine services;
    MemoryFileSystem memory;
    DiskBox box{memory};
    platform::FileSystem& disk;
    FaultyFileSystem faulty;
    ScriptedDesktop desktop;
    platform::Machine machine;
    std::unique_ptr<Application> application;

    Ending ending = Ending::kCameBack;
    int exit_code = 0;            // of the process, when it has ended
    bool writes_are_cut = false;  // by the fault that strikes
    bool power_failed = false;    // after the work, whether it had ended or not
    std::string outcome;          // what the progress window said at its end
    // Files as they were before the run.
    Tree before;

  private:
    void Answer(const forms::Box& box);
    std::vector<std::string> asked_;
};

// A set file as the program's template has it.
std::string SetText(const std::string& archive_name, const std::string& destination,
                    const std::string& multi_volume = "OFF");
// A log with a header and records, `bytes` long at least.
std::string LogText(std::size_t bytes = 0);
// The list of protected folders with its header.
std::string ListText(const std::vector<std::string>& folders);

// Where the set WEEKLY of a furnished computer puts its archive.
constexpr const char* kArchivePath = "C:\\Backups\\WEEKLY.zip";
// What stands in the archive's place before; not an archive, since it only has to stay.
constexpr const char* kEarlierArchive = "an earlier archive";

// A furnished computer that has an earlier archive. Remembers what is there.
void FurnishForBackup(Computer& computer);

// Queues what the user does when the backup's window waits: reads how it ended, for
// Computer::outcome, and presses the button that is left.
void CloseWhenOver(Computer& computer);

// The set WEEKLY after a backup to `destination`, which ends in a backslash.
std::string SetAfterBackup(const std::string& destination, const std::string& multi_volume = "OFF");

}  // namespace vantrel::test
