// Which mail programs count. What passes between the program and one that does is tested end to
// end.
#include "tests/platform/win32_support.h"

namespace vantrel::test {
namespace {

constexpr wchar_t kClients[] = L"Software\\Clients\\Mail";

class Win32Mail : public Win32Test {
  protected:
    // A new Wine prefix has a mail program that sends nothing and reports success. No test may
    // reach it.
    Win32Mail() {
        if (UnderWine()) {
            RegDeleteTreeW(HKEY_LOCAL_MACHINE, kClients);
        }
    }
    ~Win32Mail() override { RegDeleteTreeW(HKEY_CURRENT_USER, kClients); }
    // Makes `client` the user's choice, which goes before the computer's.
    static void Choose(const std::wstring& client) {
        const auto bytes = static_cast<DWORD>((client.size() + 1) * sizeof(wchar_t));
        ASSERT_EQ(
            RegSetKeyValueW(HKEY_CURRENT_USER, kClients, nullptr, REG_SZ, client.c_str(), bytes),
            ERROR_SUCCESS);
    }
    void ExpectNoMailProgram() {
        try {
            machine().mail_session.SignOn();
            ADD_FAILURE() << "signed on";
        } catch (const Error& error) {
            EXPECT_EQ(error.number(), platform::mail_error::kNotSupported);
            EXPECT_EQ(error.description(), "There is no mail program");
        }
    }
};

TEST_F(Win32Mail, ComputerWithoutMailClientsHasNoMailProgram) {
    if (UnderWine()) {
        ExpectNoMailProgram();  // a real computer keeps its mail clients
    }
}

TEST_F(Win32Mail, ClientThatIsNotInstalledIsNoMailProgram) {
    Choose(L"Nobody's Mail");
    ExpectNoMailProgram();
}

TEST_F(Win32Mail, ClientThatOnlyOpensAddressesIsNoMailProgram) {
    Choose(L"Web Mail");
    const std::wstring key = std::wstring(kClients) + L"\\Web Mail";
    ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, key.c_str(), nullptr, REG_SZ, L"Web Mail", 18),
              ERROR_SUCCESS);
    ExpectNoMailProgram();
}

TEST_F(Win32Mail, MessageWithoutAMailProgramIsRefused) {
    Choose(L"Nobody's Mail");
    EXPECT_EQ(ErrorOf([&] { machine().mail_messages.Send(false); }),
              platform::mail_error::kNotSupported);
}

TEST_F(Win32Mail, SigningOffWithoutASignOnDoesNothing) {
    Choose(L"Nobody's Mail");
    machine().mail_session.SignOff();
    EXPECT_EQ(machine().mail_session.SessionId(), 0u);
}

}  // namespace
}  // namespace vantrel::test
