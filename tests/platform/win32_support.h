// For the tests of the Windows machine: the machine, a folder to work in, what scripts/wine-test
// has arranged, and a second opinion straight from the system.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "platform/text_file.h"
#include "platform/win32/disk_path.h"
#include "platform/win32/handles.h"
#include "platform/win32/win32_machine.h"
#include "tests/platform/work_folder.h"
#include "tests/support/error_of.h"

namespace vantrel::test {

// An environment variable that the test cannot do without.
inline std::string Arranged(const char* name) {
    const char* const value = std::getenv(name);
    EXPECT_NE(value, nullptr) << name << " is not set; run through scripts/wine-test";
    return value == nullptr ? "" : value;
}

inline bool UnderWine() {
    const HMODULE system = GetModuleHandleW(L"ntdll.dll");
    return GetProcAddress(system, "wine_get_version") != nullptr;
}

// A handle of another program, as far as sharing goes.
inline platform::FileHandle Held(const std::string& path, DWORD access, DWORD sharing) {
    platform::FileHandle handle(CreateFileW(platform::Wide("\\\\?\\" + path).c_str(), access,
                                            sharing, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_TRUE(handle.IsValid()) << path << ": " << GetLastError();
    return handle;
}

class Win32Test : public ::testing::Test {
  protected:
    Win32Test() {
        folder_ = Arranged("VANTREL_WORK_DRIVE") + "\\" + NameOfThisTest();
        files().MakeFolder(folder_);
    }
    ~Win32Test() override { RemoveAll(files(), folder_); }

    platform::Machine& machine() { return machine_.machine(); }
    platform::FileSystem& files() { return machine().files; }
    const std::string& folder() const { return folder_; }
    std::string In(const std::string& name) const { return folder_ + "\\" + name; }

    std::string Put(const std::string& name, const std::string& bytes = "text") {
        platform::WriteWholeFile(files(), In(name), bytes);
        return In(name);
    }
    std::string Content(const std::string& path) { return platform::ReadWholeFile(files(), path); }
    std::vector<std::string> Names(const std::string& where) { return NamesIn(files(), where); }

  private:
    platform::Win32Machine machine_;
    std::string folder_;
};

}  // namespace vantrel::test
