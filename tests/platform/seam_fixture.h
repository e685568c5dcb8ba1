// A machine under test and an empty folder on its work drive.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/text_file.h"
#include "tests/platform/machine_under_test.h"
#include "tests/platform/work_folder.h"
#include "tests/support/error_of.h"

namespace vantrel::test {

class Seam : public ::testing::Test {
  protected:
    Seam() {
        folder_ = under_test_->WorkDrive() + "\\Seam-" + NameOfThisTest();
        files().MakeFolder(folder_);
    }
    ~Seam() override { RemoveAll(files(), folder_); }

    MachineUnderTest& under_test() { return *under_test_; }
    platform::Machine& machine() { return under_test_->machine(); }
    platform::FileSystem& files() { return machine().files; }
    const std::string& folder() const { return folder_; }
    std::string In(const std::string& name) const { return folder_ + "\\" + name; }

    // Writes a file into the folder and returns its path.
    std::string Put(const std::string& name, const std::string& bytes = "text") {
        platform::WriteWholeFile(files(), In(name), bytes);
        return In(name);
    }
    std::string MakeFolder(const std::string& name) {
        files().MakeFolder(In(name));
        return In(name);
    }
    std::string Content(const std::string& path) { return platform::ReadWholeFile(files(), path); }
    bool Exists(const std::string& path) { return files().Find(path).has_value(); }
    std::vector<std::string> Names(const std::string& where) { return NamesIn(files(), where); }
    std::uint32_t Attributes(const std::string& path) {
        return files().Find(path).value().attributes;
    }
    std::unique_ptr<platform::File> Open(const std::string& path, platform::OpenMode mode) {
        return files().Open(path, mode);
    }

    int OpenError(const std::string& path, platform::OpenMode mode) {
        return ErrorOf([&] { files().Open(path, mode); });
    }

  private:
    std::unique_ptr<MachineUnderTest> under_test_ = NewMachineUnderTest();
    std::string folder_;
};

}  // namespace vantrel::test
