#include "common/error.h"
#include "log/clsLog.h"
#include "tests/log/log_fixture.h"
#include "tests/support/error_of.h"
#include "tests/support/faulty_file_system.h"

namespace vantrel {
namespace {

using test::Call;
using test::Effect;

class LogFault : public test::TransactionLog {
  protected:
    LogFault() { there.globals = program.globals; }

    test::FaultyFileSystem faulty{machine.files()};
    platform::Machine with_faults = test::WithFiles(machine.machine(), faulty);
    forms::Program there{with_faults, desktop};
};

TEST_F(LogFault, FailingAppendTravelsUnderTheLabelOfTheRecord) {
    machine.PutFile(kLog, "old\r\n");
    faulty.plan.Inject({Call::kWrite, 1, false, error_number::kDiskFull});
    test::ExpectReported([&] { clsLog(there).WriteToLog("Backup", true, "lost"); },
                         "clsLog:WriteToLog Method", "Disk full");
    EXPECT_EQ(machine.Content(kLog), "old\r\n");
}

TEST_F(LogFault, AppendThatIsCutOffLosesItsOwnRecordOnly) {
    machine.PutFile(kLog, "old\r\n");
    faulty.plan.Inject({Call::kWrite, 1, false, error_number::kDiskFull, Effect::kShortWrite});
    EXPECT_THROW(clsLog(there).WriteToLog("Exit", true, "1"), Error);
    EXPECT_EQ(machine.Content(kLog).substr(0, 5), "old\r\n");
    EXPECT_EQ(faulty.plan.Count(Call::kWrite), 1);
}

TEST_F(LogFault, EveryRecordIsOneWrite) {
    machine.PutFile(kLog, "old\r\n");
    int writes = 0;
    for (const char* kind : {"Backup", "Exit", "INI Edit", "Startup", "Command Line"}) {
        clsLog(there).WriteToLog(kind, true, "6");
        EXPECT_EQ(faulty.plan.Count(Call::kWrite), ++writes) << kind;
    }
    EXPECT_EQ(faulty.plan.Count(Call::kOpen), faulty.plan.Count(Call::kClose));
}

TEST_F(LogFault, TrimThatFailsOrDiesAnywhereLeavesOneWholeLog) {
    std::string text = Header() + "first\r\n";
    for (int i = 0; i < 50; ++i) {
        text += "record\r\n";
    }
    const long limit = static_cast<long>(text.size());
    std::string trimmed = text;
    trimmed.erase(trimmed.size() - 8);
    for (const Effect effect : {Effect::kRaise, Effect::kDie}) {
        for (int at = 1;; ++at) {
            machine.PutFile(kLog, text);
            const int fired = faulty.plan.Fired();
            faulty.plan.Inject({Call::kAny, at, false, error_number::kDeviceIo, effect});
            try {
                clsLog(there).Log_Truncate(limit);
            } catch (const Error&) {
            } catch (const test::ProcessDied&) {
            }
            faulty.plan.Heal();
            // What a process leaves that dies.
            const std::string scratch = "C:\\Vantrel\\~Vantrel.new";
            if (effect == Effect::kDie && machine.Exists(scratch)) {
                machine.files().RemoveFile(scratch);
            }
            const std::string left = machine.Content(kLog);
            EXPECT_TRUE(left == text || left == trimmed + "\r\n") << at;
            if (faulty.plan.Fired() == fired) {
                break;
            }
            ASSERT_LT(at, 100);
        }
    }
}

TEST_F(LogFault, ErrorThatNobodySeesAndTheLogCannotTakeIsDropped) {
    Unattended("DAILY.INI");
    faulty.plan.Inject({Call::kWrite, 1, true, error_number::kDiskFull});
    ShowError(there, Error(53, "Vantrel", "File not found"));
    EXPECT_GT(faulty.plan.Fired(), 0);
    EXPECT_TRUE(desktop.boxes.empty());
}

}  // namespace
}  // namespace vantrel
