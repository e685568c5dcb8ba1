// Which verb a file is opened with.
#include "tests/platform/win32_support.h"

namespace vantrel::test {
namespace {

using platform::ShellVerb;

constexpr int kLastError = 32;  // the shell's answers up to here are error codes

class Win32ShellVerbs : public Win32Test {
  protected:
    ~Win32ShellVerbs() override {
        RegDeleteTreeW(Classes(), Key(L".vantrel-verbs").c_str());
        RegDeleteTreeW(Classes(), Key(L"Vantrel.Verbs").c_str());
    }
    // A file of a kind that can be looked at, which its user prefers, and nothing else.
    std::string FileToLookAt() {
        Set(L".vantrel-verbs", L"Vantrel.Verbs");
        Set(L"Vantrel.Verbs\\shell", L"look");
        Set(L"Vantrel.Verbs\\shell\\look\\command", L"cmd.exe /c rem \"%1\"");
        return Put("file.vantrel-verbs");
    }

  private:
    // The user's own kinds of files; Wine knows those of all users only.
    static HKEY Classes() { return UnderWine() ? HKEY_CLASSES_ROOT : HKEY_CURRENT_USER; }
    static std::wstring Key(const std::wstring& name) {
        return UnderWine() ? name : L"Software\\Classes\\" + name;
    }
    static void Set(const std::wstring& name, const std::wstring& value) {
        EXPECT_EQ(RegSetKeyValueW(Classes(), Key(name).c_str(), nullptr, REG_SZ, value.c_str(),
                                  static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t))),
                  ERROR_SUCCESS);
    }
};

TEST_F(Win32ShellVerbs, DefaultIsTheOneThatTheUserHasSet) {
    EXPECT_GT(machine().shell.Open(FileToLookAt(), ShellVerb::kDefault), kLastError);
}

TEST_F(Win32ShellVerbs, OpenIsOpenAlone) {
    EXPECT_LE(machine().shell.Open(FileToLookAt(), ShellVerb::kOpen), kLastError);
}

}  // namespace
}  // namespace vantrel::test
