// Code page, clock and settings on every machine: the code pages are 1252 and 437, the time zone is
// New York's.
#include <atomic>
#include <chrono>
#include <thread>

#include "tests/platform/seam_fixture.h"

namespace vantrel::test {
namespace {

using platform::Ticks;

const std::string kEuro = "\xE2\x82\xAC";
const std::string kJapanese = "\xE6\x97\xA5";
const std::string kDisk = "\xF0\x9F\x92\xBE";

class SeamCodePage : public Seam {
  protected:
    platform::CodePage& page() { return machine().code_page; }
};

TEST_F(SeamCodePage, EncodesExactlyOrNotAtAll) {
    EXPECT_EQ(page().Encode("abc"), "abc");
    EXPECT_EQ(page().Encode(""), "");
    EXPECT_EQ(page().Encode("\xC3\x84 " + kEuro), "\xC4 \x80");
    EXPECT_EQ(page().Encode(kJapanese), std::nullopt);
    EXPECT_EQ(page().Encode("a" + kDisk), std::nullopt);
}

TEST_F(SeamCodePage, BestFitIsNoCounterpart) {
    EXPECT_EQ(page().Encode("\xCE\x91"), std::nullopt);      // Greek capital alpha is no A
    EXPECT_EQ(page().Encode("\xC4\x81"), std::nullopt);      // a with macron
    EXPECT_EQ(page().Encode("\xEF\xBC\xA1"), std::nullopt);  // full-width A
}

TEST_F(SeamCodePage, LossyHasOneQuestionMarkForEachCharacter) {
    EXPECT_EQ(page().EncodeLossy("a" + kJapanese + kDisk + "\xC3\xA9"), "a??\xE9");
}

TEST_F(SeamCodePage, EveryByteDecodesAndComesBack) {
    std::string bytes;
    for (int i = 0; i < 256; ++i) {
        bytes += static_cast<char>(i);
    }
    EXPECT_EQ(page().Encode(page().Decode(bytes)), bytes);
    EXPECT_EQ(page().Decode("\x80\xE4"), kEuro + "\xC3\xA4");
}

TEST_F(SeamCodePage, OemBytesHaveTheirOwnPage) {
    EXPECT_EQ(page().DecodeOem("a\x81\x84\x94\xE1"), "a\xC3\xBC\xC3\xA4\xC3\xB6\xC3\x9F");
    EXPECT_EQ(page().DecodeOem("\xC4\xB0\xFE"), "\xE2\x94\x80\xE2\x96\x91\xE2\x96\xA0");
}

TEST_F(SeamCodePage, UpperIsOneForOne) {
    EXPECT_EQ(page().Upper("abc \xC3\xA4\xC3\xA9 XYZ1"), "ABC \xC3\x84\xC3\x89 XYZ1");
    EXPECT_EQ(page().Upper("stra\xC3\x9F\x65"), "STRA\xC3\x9F\x45");  // sharp s has no capital
}

TEST_F(SeamCodePage, UpperTakesCapitalsFromAllOverTheCodePage) {
    EXPECT_EQ(page().Upper("\xC3\xBF"), "\xC5\xB8");  // y with diaeresis: FF to 9F
    EXPECT_EQ(page().Upper("\xC5\xA1\xC5\x93\xC5\xBE"), "\xC5\xA0\xC5\x92\xC5\xBD");
}

TEST_F(SeamCodePage, UpperLeavesALetterWhoseCapitalTheCodePageLacks) {
    EXPECT_EQ(page().Upper("\xC2\xB5"), "\xC2\xB5");  // micro sign
    EXPECT_EQ(page().Upper("\xD0\xB6"), "\xD0\xB6");  // Cyrillic zhe
}

TEST_F(SeamCodePage, FoldIsTheFileSystemsIdeaOfOneName) {
    EXPECT_EQ(page().Fold("\xD0\xB6 \xC3\xA4 a"), page().Fold("\xD0\x96 \xC3\x84 A"));
    EXPECT_NE(page().Fold("a"), page().Fold("\xC3\xA4"));
    EXPECT_NE(page().Fold("\xC3\x9F"), page().Fold("ss"));
    EXPECT_EQ(page().Fold(kDisk), kDisk);
}

class SeamClock : public Seam {
  protected:
    platform::Clock& clock() { return machine().clock; }
    static constexpr Ticks kSecond = 10'000'000;
    // 2026-07-01 00:30:15 UTC, and 2026-01-01 00:30:15.
    static constexpr Ticks kSummer = 134'273'394'150'000'000;
    static constexpr Ticks kWinter = 134'117'010'150'000'000;
    static std::string Text(const platform::LocalTime& time) {
        char text[64];
        std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", time.year, time.month,
                      time.day, time.hour, time.minute, time.second);
        return text;
    }
};

TEST_F(SeamClock, LocalTimeFollowsTheRulesOfItsDateAndMayBeTheDayBefore) {
    EXPECT_EQ(Text(clock().ToLocal(kSummer)), "2026-06-30 20:30:15");
    EXPECT_EQ(Text(clock().ToLocal(kWinter)), "2025-12-31 19:30:15");
}

TEST_F(SeamClock, PartsOfASecondAreCutOff) {
    EXPECT_EQ(Text(clock().ToLocal(kSummer + kSecond - 1)), "2026-06-30 20:30:15");
    EXPECT_EQ(Text(clock().ToLocal(kSummer + kSecond)), "2026-06-30 20:30:16");
}

TEST_F(SeamClock, NowIsTheLocalTimeOfTheSystemClock) {
    // Between two looks at the clock, so that a second's turn does not matter.
    const Ticks before = UtcNow();
    const std::string now = Text(clock().Now());
    const Ticks after = UtcNow();
    EXPECT_GE(now, Text(clock().ToLocal(before)));
    EXPECT_LE(now, Text(clock().ToLocal(after)));
}

TEST_F(SeamClock, SleepLastsAtLeastItsTime) {
    const auto start = std::chrono::steady_clock::now();
    clock().Sleep(std::chrono::milliseconds(20));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(19));
}

TEST_F(SeamClock, SteadyTimeAdvancesWithSleepAndNeverFalls) {
    const auto start = clock().SteadyNow();
    clock().Sleep(std::chrono::milliseconds(20));
    const auto end = clock().SteadyNow();
    EXPECT_GE(end - start, std::chrono::milliseconds(19));
    EXPECT_GE(clock().SteadyNow(), end);
}

TEST_F(SeamClock, WaitReturnsEarlyWhenNotified) {
    std::mutex mutex;
    std::condition_variable signal;
    bool ready = false;
    std::thread other([&] {
        const std::lock_guard lock(mutex);
        ready = true;
        signal.notify_all();
    });
    std::unique_lock lock(mutex);
    // Longer than any test may run.
    while (!ready) {
        clock().Wait(signal, lock, std::chrono::hours(24));
    }
    lock.unlock();
    other.join();
    EXPECT_TRUE(ready);
}

TEST_F(SeamClock, WaitEndsWithoutANotification) {
    std::mutex mutex;
    std::condition_variable signal;
    std::unique_lock lock(mutex);
    clock().Wait(signal, lock, std::chrono::milliseconds(1));
    EXPECT_TRUE(lock.owns_lock());
}

class SeamSettings : public Seam {};

TEST_F(SeamSettings, MissingValueIsNothing) {
    EXPECT_EQ(machine().settings.Read("Seam Test", "never written"), std::nullopt);
}

// Any region has a decimal mark that differs from the one between groups.
TEST_F(SeamSettings, NumberFormatIsComplete) {
    const NumberFormat format = machine().settings.Numbers();
    EXPECT_NE(format.decimal, "");
    EXPECT_NE(format.decimal, format.group);
    EXPECT_GE(format.last_group, 0);
}

TEST_F(SeamSettings, ValuesAreKeptBySectionAndKey) {
    machine().settings.Write("Seam Test", "One", "first");
    machine().settings.Write("Seam Test", "Two", "\xC3\xA4 " + kJapanese);
    machine().settings.Write("Seam Test 2", "One", "");
    machine().settings.Write("Seam Test", "One", "second");
    EXPECT_EQ(machine().settings.Read("Seam Test", "One"), "second");
    EXPECT_EQ(machine().settings.Read("Seam Test", "Two"), "\xC3\xA4 " + kJapanese);
    EXPECT_EQ(machine().settings.Read("Seam Test 2", "One"), "");
}

}  // namespace
}  // namespace vantrel::test
