#include <array>

#include "common/error.h"
#include "tests/log/log_fixture.h"

namespace vantrel {
namespace {

using test::TransactionLog;

class LogRotation : public TransactionLog {
  protected:
    bool RolledOver() { return machine.Exists(kBak) && machine.Content(kBak) == "old"; }
    // Writes on that day into a log last written on the other.
    void WriteOn(int year, int month, int day) {
        machine.clock.Set(year, month, day);
        Write("Backup", "new", false);
    }
};

TEST_F(LogRotation, FirstOfTheMonthMovesLastMonthsLogAside) {
    PutLog(kLog, "old", 2026, 10, 31);
    machine.PutFile(kBak, "older");
    WriteOn(2026, 11, 1);
    EXPECT_TRUE(RolledOver());
    EXPECT_EQ(machine.Content(kLog), Header() + std::string(20, ' ') + "new\r\n");
    EXPECT_EQ(machine.Names("C:\\Vantrel"),
              (std::vector<std::string>{"Vantrel.Bak", "Vantrel.Log"}));
}

TEST_F(LogRotation, HappensOncePerMonth) {
    PutLog(kLog, "old", 2026, 10, 31);
    WriteOn(2026, 11, 1);
    const platform::Ticks now = machine.clock.UtcNow();
    machine.files().SetTimes(kLog, {now, now, now});
    WriteOn(2026, 11, 1);
    EXPECT_TRUE(RolledOver());
}

TEST_F(LogRotation, JanuaryDoesNotRotate) {
    PutLog(kLog, "old", 2026, 12, 31);
    WriteOn(2027, 1, 1);
    EXPECT_FALSE(machine.Exists(kBak));
    EXPECT_EQ(machine.Content(kLog), "old" + std::string(20, ' ') + "new\r\n");
}

TEST_F(LogRotation, HappensOnTheFirstOfAMonthWhenTheLogIsFromTheMonthBefore) {
    struct Case {
        const char* what;
        std::array<int, 3> log;
        std::array<int, 3> today;
        bool rotates;
    };
    for (const Case& test : {
             Case{"without an earlier .Bak", {2026, 10, 1}, {2026, 11, 1}, true},
             {"only the number of the month is compared", {2024, 10, 31}, {2026, 11, 1}, true},
             {"the second of the month", {2026, 10, 31}, {2026, 11, 2}, false},
             {"a log older than the last month", {2026, 9, 30}, {2026, 11, 1}, false},
             {"a log written in this month", {2026, 11, 1}, {2026, 11, 1}, false},
         }) {
        SCOPED_TRACE(test.what);
        if (machine.Exists(kBak)) {
            machine.files().RemoveFile(kBak);
        }
        PutLog(kLog, "old", test.log[0], test.log[1], test.log[2]);
        WriteOn(test.today[0], test.today[1], test.today[2]);
        EXPECT_EQ(machine.Exists(kBak), test.rotates);
        EXPECT_EQ(RolledOver(), test.rotates);
    }
}

TEST_F(LogRotation, HappensBeforeAnUnknownKindToo) {
    PutLog(kLog, "old", 2026, 10, 31);
    machine.clock.Set(2026, 11, 1);
    Write("backup");
    EXPECT_TRUE(RolledOver());
    EXPECT_EQ(machine.Content(kLog), Header());
}

TEST_F(LogRotation, RenamedExecutableRollsTheFixedNameOver) {
    program.globals.LogFilePath = "C:\\Vantrel\\Other.Log";
    PutLog(kLog, "old", 2026, 10, 31);
    PutLog("C:\\Vantrel\\Other.Log", "other", 2026, 10, 31);
    WriteOn(2026, 11, 1);
    EXPECT_TRUE(RolledOver());
    EXPECT_FALSE(machine.Exists(kLog));
    EXPECT_EQ(machine.Content("C:\\Vantrel\\Other.Log"),
              "other" + Header() + std::string(20, ' ') + "new\r\n");
}

TEST_F(LogRotation, BakThatCannotGoIsReportedAndBothLogsStay) {
    PutLog(kLog, "old", 2026, 10, 31);
    machine.PutFile(kBak, "older");
    machine.files().SetAttributes(kBak, platform::attribute::kReadOnly);
    EXPECT_THROW(WriteOn(2026, 11, 1), Error);
    EXPECT_EQ(machine.Content(kLog), "old");
    EXPECT_EQ(machine.Content(kBak), "older");
}

// Ten hours ahead of UTC.
class EasternClock : public platform::Clock {
  public:
    explicit EasternClock(test::TestClock& utc) : utc_(utc) {}
    platform::LocalTime Now() override { return ToLocal(utc_.UtcNow()); }
    platform::LocalTime ToLocal(platform::Ticks utc) override {
        return utc_.ToLocal(utc + 10ull * 60 * 60 * 10'000'000);
    }
    std::chrono::milliseconds SteadyNow() override { return utc_.SteadyNow(); }
    void Sleep(std::chrono::milliseconds time) override { utc_.Sleep(time); }
    void Wait(std::condition_variable& signal, std::unique_lock<std::mutex>& lock,
              std::chrono::milliseconds time) override {
        utc_.Wait(signal, lock, time);
    }

  private:
    test::TestClock& utc_;
};

TEST_F(LogRotation, BothMonthsAreLocalOnes) {
    EasternClock clock(machine.clock);
    platform::Machine east = test::With({.clock = &clock}, machine.machine());
    forms::Program there{east, desktop, program.globals};
    PutLog(kLog, "old", 2026, 10, 31);       // 22:00 in the east
    machine.clock.Set(2026, 10, 31, 15, 0);  // already 1 November there
    clsLog(there).WriteToLog("Backup", true, "new");
    EXPECT_TRUE(RolledOver());
    EXPECT_EQ(machine.Content(kLog), Header() + "01/11/2026 01:00:00 new\r\n");
}

TEST_F(LogRotation, LogWrittenAtTheLocalTurnOfTheMonthIsThisMonths) {
    EasternClock clock(machine.clock);
    platform::Machine east = test::With({.clock = &clock}, machine.machine());
    forms::Program there{east, desktop, program.globals};
    machine.PutFile(kLog, "old");
    machine.clock.Set(2026, 10, 31, 14, 30);  // 00:30 on 1 November there
    const platform::Ticks then = machine.clock.UtcNow();
    machine.files().SetTimes(kLog, {then, then, then});
    clsLog(there).WriteToLog("Backup", true, "new");
    EXPECT_FALSE(machine.Exists(kBak));
}

}  // namespace
}  // namespace vantrel
