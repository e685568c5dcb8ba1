// Floppy disks for drive A: of a disk in memory. A disk that is taken out keeps its files.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/support/memory_file_system.h"
#include "tests/support/test_machine.h"

namespace vantrel::test {

class DiskBox : public platform::Drives {
  public:
    static constexpr std::uint64_t kHuge = std::uint64_t{1} << 40;

    explicit DiskBox(MemoryFileSystem& files) : files_(files) { files_.TakeAway("A:"); }

    struct Disk {
        std::uint64_t size = kHuge;                  // bytes of all files that it takes
        std::uint64_t promises = 0;                  // its stated size; 0: the real one
        std::map<std::string, std::string> files{};  // by path
    };
    std::vector<Disk> disks;
    // The size of disks that are put in without having been arranged.
    std::uint64_t usual_size = kHuge;
    // Disks fill up; off for reading, when nothing is written to them, but elsewhere.
    bool limits = true;

    // Takes out the disk in the drive, if there is one.
    void Eject() {
        if (inserted_ < 0) {
            return;
        }
        Disk& disk = disks[static_cast<std::size_t>(inserted_)];
        disk.files.clear();
        for (const std::string& path : files_.Files("A:")) {
            disk.files[path] = files_.Content(path);
        }
        files_.Remove("A:");
        files_.TakeAway("A:");
        files_.capacity = ~std::uint64_t{0};
        inserted_ = -1;
    }
    // Puts in disk `number`, counted from 0.
    void Insert(int number) {
        Eject();
        while (disks.size() <= static_cast<std::size_t>(number)) {
            disks.push_back({.size = usual_size});
        }
        inserted_ = number;
        const Disk& disk = Current();
        files_.BringBack();
        files_.PutFolder("A:\\");
        const std::uint64_t others = files_.Used();
        for (const auto& [path, bytes] : disk.files) {
            files_.Put(path, bytes);
        }
        others_ = others;
        files_.capacity = limits ? others + disk.size : ~std::uint64_t{0};
    }
    int Inserted() const { return inserted_; }

    // The archive's file of each disk that holds one, in the order of the disks.
    std::vector<std::string> Volumes(const std::string& archive) {
        Eject();
        std::vector<std::string> volumes;
        for (const Disk& disk : disks) {
            if (const auto found = disk.files.find(archive); found != disk.files.end()) {
                volumes.push_back(found->second);
            }
        }
        return volumes;
    }

    int Type(const std::string& root) override {
        return root.starts_with("A") ? platform::drive_type::kRemovable
                                     : platform::drive_type::kFixed;
    }
    platform::DiskSpace Space(const std::string&) override { return {}; }
    std::uint64_t FreeBytes(const std::string& folder) override {
        if (!folder.starts_with("A:")) {
            return kHuge;
        }
        if (inserted_ < 0) {
            return 0;
        }
        const Disk& disk = Current();
        const std::uint64_t size = disk.promises > 0 ? disk.promises : disk.size;
        return size - std::min(size, files_.Used() - others_);
    }
    std::string Label(const std::string&) override { return ""; }

  private:
    const Disk& Current() const { return disks[static_cast<std::size_t>(inserted_)]; }

    MemoryFileSystem& files_;
    int inserted_ = -1;
    std::uint64_t others_ = 0;  // bytes that are not on the disk in the drive
};

}  // namespace vantrel::test
