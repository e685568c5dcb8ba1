// For the tests of the Windows machine: what scripts/wine-test has arranged, and a second opinion
// straight from the system.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>
#include <string>

#include "platform/win32/disk_path.h"
#include "platform/win32/handles.h"
#include "tests/platform/seam_fixture.h"

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

using Win32Test = Seam;

}  // namespace vantrel::test
