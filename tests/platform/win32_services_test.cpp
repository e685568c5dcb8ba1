// Settings, code pages, the clock and the shell of the system.
#include "tests/platform/win32_support.h"

namespace vantrel::test {
namespace {

constexpr wchar_t kTestKey[] = L"Software\\Vantrel\\Test";

class Win32Settings : public Win32Test {
  protected:
    ~Win32Settings() override { RegDeleteKeyW(HKEY_CURRENT_USER, kTestKey); }
    platform::Settings& settings() { return machine().settings; }
};

TEST_F(Win32Settings, MissingValueIsNothing) {
    EXPECT_EQ(settings().Read("Test", "INI File"), std::nullopt);
}

TEST_F(Win32Settings, ValueIsATextUnderTheProductsKey) {
    settings().Write("Test", "INI File", "T\xC3\xA4glich.ini");
    wchar_t text[64];
    DWORD bytes = sizeof(text), type = 0;
    ASSERT_EQ(
        RegGetValueW(HKEY_CURRENT_USER, kTestKey, L"INI File", RRF_RT_ANY, &type, text, &bytes),
        ERROR_SUCCESS);
    EXPECT_EQ(type, DWORD{REG_SZ});
    EXPECT_STREQ(text, L"T\x00E4glich.ini");
}

TEST_F(Win32Settings, TextsOfAnyLengthRoundTrip) {
    for (const std::size_t size : {0u, 1u, 255u, 256u, 5000u}) {
        const std::string text(size, 'v');
        settings().Write("Test", "INI File", text);
        EXPECT_EQ(settings().Read("Test", "INI File"), text);
    }
}

TEST_F(Win32Settings, ValueOfAnotherTypeIsNothing) {
    settings().Write("Test", "INI File", "x");
    const DWORD number = 5;
    RegSetKeyValueW(HKEY_CURRENT_USER, kTestKey, L"INI File", REG_DWORD, &number, sizeof(number));
    EXPECT_EQ(settings().Read("Test", "INI File"), std::nullopt);
}

// A mark of the user's region, as it was again when this goes.
class RegionMark {
  public:
    RegionMark(LCTYPE which, const wchar_t* mark) : which_(which) {
        EXPECT_GT(GetLocaleInfoW(LOCALE_USER_DEFAULT, which, before_, 16), 0);
        EXPECT_TRUE(SetLocaleInfoW(LOCALE_USER_DEFAULT, which, mark));
    }
    ~RegionMark() { SetLocaleInfoW(LOCALE_USER_DEFAULT, which_, before_); }
    RegionMark(const RegionMark&) = delete;
    RegionMark& operator=(const RegionMark&) = delete;

  private:
    LCTYPE which_;
    wchar_t before_[16]{};
};

TEST_F(Win32Settings, NumberFormatIsThatOfTheUsersRegion) {
    const RegionMark decimal(LOCALE_SDECIMAL, L"#");
    const RegionMark group(LOCALE_STHOUSAND, L"'");
    const RegionMark sizes(LOCALE_SGROUPING, L"3;2;0");
    const NumberFormat format = settings().Numbers();
    EXPECT_EQ(format.decimal, "#");
    EXPECT_EQ(NumberText(1234567, format), "12'34'567");
}

class Win32CodePage : public Win32Test {
  protected:
    Win32CodePage() {
        // What the letters below are in; scripts/wine-test arranges it.
        EXPECT_EQ(GetACP(), 1252u);
        EXPECT_EQ(GetOEMCP(), 437u);
    }
    platform::CodePage& code_page() { return machine().code_page; }
};

TEST_F(Win32CodePage, LettersRoundTrip) {
    EXPECT_EQ(code_page().Encode("\xC3\xA4\xE2\x82\xAC"), "\xE4\x80");
    EXPECT_EQ(code_page().Decode("\xE4\x80"), "\xC3\xA4\xE2\x82\xAC");
    EXPECT_EQ(code_page().Encode(""), "");
    EXPECT_EQ(code_page().Decode(""), "");
}

TEST_F(Win32CodePage, BestFitIsNoCounterpart) {
    EXPECT_EQ(code_page().Encode("\xC4\x81"), std::nullopt);          // a with macron
    EXPECT_EQ(code_page().Encode("\xEF\xBC\xA1"), std::nullopt);      // full-width A
    EXPECT_EQ(code_page().Encode("\xE4\xB8\xAD"), std::nullopt);      // a Chinese character
    EXPECT_EQ(code_page().Encode("\xF0\x9F\x98\x80"), std::nullopt);  // beyond 16 bits
    EXPECT_EQ(code_page().Encode("\xED\xA0\x80"), std::nullopt);      // a lone surrogate
}

TEST_F(Win32CodePage, LossyHasOneQuestionMarkForEachCharacter) {
    EXPECT_EQ(code_page().EncodeLossy("a\xC4\x81\xE4\xB8\xAD\xF0\x9F\x98\x80z"), "a???z");
    EXPECT_EQ(code_page().EncodeLossy("\xED\xA0\x80"), "?");
}

TEST_F(Win32CodePage, OemBytesHaveTheirOwnPage) {
    EXPECT_EQ(code_page().DecodeOem("\x84\xE1"), "\xC3\xA4\xC3\x9F");
}

TEST_F(Win32CodePage, UpperIsOneForOne) {
    EXPECT_EQ(code_page().Upper("c:\\stra\xC3\x9F"
                                "e \xC3\xA4"),
              "C:\\STRA\xC3\x9F"
              "E \xC3\x84");
}

TEST_F(Win32CodePage, UpperLeavesALetterWhoseCapitalTheCodePageLacks) {
    EXPECT_EQ(code_page().Upper("\xC3\xBF"), "\xC5\xB8");  // y diaeresis has its capital
    EXPECT_EQ(code_page().Upper("\xC6\x92"), "\xC6\x92");  // f with hook has not
    EXPECT_EQ(code_page().Upper("\xC2\xB5"), "\xC2\xB5");  // nor the micro sign
    EXPECT_EQ(code_page().Upper("\xD0\xB6"), "\xD0\xB6");  // nor a Cyrillic letter
    EXPECT_EQ(code_page().Upper("\xF0\x90\x90\xA8"), "\xF0\x90\x90\xA8");
}

TEST_F(Win32CodePage, FoldIsTheFileSystemsIdeaOfOneName) {
    EXPECT_EQ(code_page().Fold("\xD0\xB6\xC3\xA4"
                               "a"),
              code_page().Fold("\xD0\x96\xC3\x84"
                               "A"));
    EXPECT_NE(code_page().Fold("\xC3\x9F"), code_page().Fold("ss"));
    EXPECT_NE(code_page().Fold("\xC3\xA4"), code_page().Fold("a"));
    EXPECT_EQ(code_page().Fold("i"), "I");
}

class Win32Clock : public Win32Test {
  protected:
    static platform::Ticks At(WORD year, WORD month, WORD day, WORD hour) {
        SYSTEMTIME fields{};
        fields.wYear = year;
        fields.wMonth = month;
        fields.wDay = day;
        fields.wHour = hour;
        FILETIME time{};
        EXPECT_TRUE(SystemTimeToFileTime(&fields, &time));
        return (platform::Ticks{time.dwHighDateTime} << 32) | time.dwLowDateTime;
    }
    int LocalHour(WORD year, WORD month, WORD day, WORD hour) {
        return machine().clock.ToLocal(At(year, month, day, hour)).hour;
    }
};

// scripts/wine-test sets the zone of New York: 5 hours behind, 4 in summer. Summer began in April
// until 2006 and has begun in March since.
TEST_F(Win32Clock, LocalTimeFollowsTheRulesOfItsDate) {
    EXPECT_EQ(LocalHour(2026, 1, 15, 12), 7);
    EXPECT_EQ(LocalHour(2026, 7, 15, 12), 8);
    EXPECT_EQ(LocalHour(2026, 3, 25, 12), 8);
    EXPECT_EQ(LocalHour(2006, 3, 25, 12), 7);
}

TEST_F(Win32Clock, LocalDayMayBeTheDayBefore) {
    const auto local = machine().clock.ToLocal(At(2026, 1, 1, 3));
    EXPECT_EQ(local.year, 2025);
    EXPECT_EQ(local.month, 12);
    EXPECT_EQ(local.day, 31);
    EXPECT_EQ(local.hour, 22);
}

TEST_F(Win32Clock, NowIsTheSystemsLocalTime) {
    SYSTEMTIME before{}, after{};
    platform::LocalTime now;
    do {  // until no second went by meanwhile
        GetLocalTime(&before);
        now = machine().clock.Now();
        GetLocalTime(&after);
    } while (before.wSecond != after.wSecond);
    EXPECT_EQ(now.year, before.wYear);
    EXPECT_EQ(now.month, before.wMonth);
    EXPECT_EQ(now.day, before.wDay);
    EXPECT_EQ(now.hour, before.wHour);
    EXPECT_EQ(now.minute, before.wMinute);
    EXPECT_EQ(now.second, before.wSecond);
}

TEST_F(Win32Clock, TicksBeyondTheCalendarAreItsFirstDay) {
    const auto local = machine().clock.ToLocal(~platform::Ticks{0});
    EXPECT_LE(local.year, 1601);
    EXPECT_GE(local.month, 1);
}

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
