#include "backupset/clsFiles.h"
#include "backupset/clsINI.h"
#include "common/error.h"
#include "tests/support/faulty_file_system.h"
#include "tests/support/program_fixture.h"

namespace vantrel {
namespace {

using test::Call;
using test::Effect;

const std::string kFile = "C:\\Vantrel\\WEEKLY.INI";
const std::string kOld = "; kept\r\n[S]\r\nK=old\r\n";
const std::string kNew = "; kept\r\n[S]\r\nK=new\r\n";

class ProfileFault : public test::ProgramFixture {
  protected:
    void WriteNew() { clsFiles(there).WriteINI("S", "K", "new", kFile); }
    // Writes with call 1, 2, 3 ... failing until none does, and returns how many could.
    int Sweep(bool from_then_on, Effect effect) {
        for (int at = 1;; ++at) {
            machine.PutFile(kFile, kOld);
            const int fired = faulty.plan.Fired();
            faulty.plan.Inject({Call::kAny, at, from_then_on, error_number::kDiskFull, effect});
            try {
                WriteNew();
            } catch (const test::ProcessDied&) {
                EXPECT_EQ(effect, Effect::kDie);
            }
            faulty.plan.Heal();
            if (from_then_on || effect == Effect::kDie) {
                RemoveScratch();
            }
            const std::string left = machine.Content(kFile);
            if (faulty.plan.Fired() == fired) {
                EXPECT_EQ(left, kNew);
                return at - 1;
            }
            EXPECT_TRUE(left == kOld || left == kNew) << at << ": " << left;
        }
    }

    // What a process leaves that dies, or a disk that fails from then on.
    void RemoveScratch() {
        const std::string scratch = "C:\\Vantrel\\~Vantrel.new";
        if (machine.Exists(scratch)) {
            machine.files().RemoveFile(scratch);
        }
    }

    test::FaultyFileSystem faulty{machine.files()};
    platform::Machine with_faults = test::WithFiles(machine.machine(), faulty);
    forms::Program there{with_faults, desktop};
};

TEST_F(ProfileFault, WriteThatFailsAnywhereLeavesTheOldBytesOrTheNewOnes) {
    EXPECT_GT(Sweep(false, Effect::kRaise), 8);
    EXPECT_EQ(machine.Names("C:\\Vantrel"), std::vector<std::string>{"WEEKLY.INI"});
    EXPECT_GT(Sweep(true, Effect::kRaise), 8);
    EXPECT_GT(Sweep(false, Effect::kShortWrite), 0);
    EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(ProfileFault, ProcessThatDiesAnywhereLeavesTheOldBytesOrTheNewOnes) {
    EXPECT_GT(Sweep(false, Effect::kDie), 8);
}

TEST_F(ProfileFault, FullDiskLeavesTheOldBytesAndNoScratchFile) {
    machine.PutFile(kFile, kOld);
    faulty.plan.LimitDisk(5);
    WriteNew();
    EXPECT_EQ(machine.Content(kFile), kOld);
    EXPECT_EQ(machine.Names("C:\\Vantrel"), std::vector<std::string>{"WEEKLY.INI"});
}

TEST_F(ProfileFault, FileThatCannotBeReadIsNotMadeAnew) {
    machine.PutFile(kFile, kOld);
    for (const Call call : {Call::kOpen, Call::kRead}) {
        faulty.plan.Inject({call, 1, false, error_number::kPermissionDenied});
        WriteNew();
        EXPECT_EQ(machine.Content(kFile), kOld);
        faulty.plan.Heal();
    }
    EXPECT_EQ(faulty.plan.Fired(), 2);
}

TEST_F(ProfileFault, FileThatIsOverlookedIsNotMadeAnew) {
    machine.PutFile(kFile, kOld);
    faulty.plan.Inject({.kind = Call::kOpen, .number = error_number::kFileNotFound});
    WriteNew();
    EXPECT_EQ(machine.Content(kFile), kOld);
    EXPECT_EQ(machine.Names("C:\\Vantrel"), std::vector<std::string>{"WEEKLY.INI"});
}

TEST_F(ProfileFault, SeveralKeysAreAllWrittenOrNone) {
    const std::string all = "; kept\r\n[S]\r\nK=new\r\nL=too\r\n";
    bool fired = true;
    for (int at = 1; fired; ++at) {
        machine.PutFile(kFile, kOld);
        const int before = faulty.plan.Fired();
        faulty.plan.Inject({.at = at, .effect = Effect::kDie});
        try {
            clsFiles(there).WriteINI({{"S", "K", "new"}, {"S", "L", "too"}}, kFile);
        } catch (const test::ProcessDied&) {
        }
        faulty.plan.Heal();
        RemoveScratch();
        fired = faulty.plan.Fired() > before;
        const std::string left = machine.Content(kFile);
        EXPECT_TRUE(left == all || (fired && left == kOld)) << at << ": " << left;
    }
}

TEST_F(ProfileFault, SeveralKeysAreReadFromOneOpenFile) {
    machine.PutFile(kFile, "[S]\r\nK= one \r\nL='two'\r\n");
    const auto values =
        clsFiles(there).ReadINI({{"S", "K", ""}, {"s", "l", ""}, {"S", "M", ""}}, kFile);
    ASSERT_TRUE(values.has_value());
    ASSERT_EQ(values->size(), 3u);
    EXPECT_EQ(values->at(0).text, "one");
    EXPECT_EQ(values->at(1).text, "two");
    EXPECT_EQ(values->at(2).text, "");
    EXPECT_EQ(faulty.plan.Count(Call::kOpen), 1);
}

TEST_F(ProfileFault, KeysOfAFileThatCannotBeReadAreNotEmptyButUnknown) {
    machine.PutFile(kFile, kOld);
    for (const Call call : {Call::kOpen, Call::kRead, Call::kClose}) {
        faulty.plan.Inject({call});
        EXPECT_FALSE(clsFiles(there).ReadINI({{"S", "K", ""}}, kFile).has_value());
        faulty.plan.Heal();
    }
    EXPECT_FALSE(clsFiles(there).ReadINI({{"S", "K", ""}}, "C:\\none.ini").has_value());
}

TEST_F(ProfileFault, SetIsReadAsAWholeOrNotAtAll) {
    PutSet("WEEKLY.INI", {.name = "WEEKLY"});
    bool fired = true;
    for (int at = 1; fired; ++at) {
        const int before = faulty.plan.Fired();
        faulty.plan.Inject({.at = at, .number = error_number::kPermissionDenied});
        clsINI set(there);
        set.Read_INI(kFile);
        faulty.plan.Heal();
        RemoveScratch();
        fired = faulty.plan.Fired() > before;
        EXPECT_EQ(set.WasRead(), !fired);
        EXPECT_EQ(set.BackupFileName(), fired ? "" : "WEEKLY");
        EXPECT_EQ(set.BackupSubDirectories(), fired ? "" : "ON");
    }
}

TEST_F(ProfileFault, ConfirmingASetThatCannotBeReadEmptiesNoKey) {
    PutSet("WEEKLY.INI", {.name = "weekly"});
    const std::string before = machine.Content(kFile);
    faulty.plan.Inject({.kind = Call::kOpen, .number = error_number::kPermissionDenied});
    clsINI(there).ConfirmBackslash(kFile);
    EXPECT_EQ(machine.Content(kFile), before);
    clsINI(there).ConfirmBackslash(kFile);
    EXPECT_NE(machine.Content(kFile), before);
}

TEST_F(ProfileFault, ConfirmingASetThatComesAfterItWasMissedLeavesIt) {
    PutSet("WEEKLY.INI", {.name = "weekly"});
    const std::string before = machine.Content(kFile);
    faulty.plan.Inject({.kind = Call::kOpen, .number = error_number::kFileNotFound});
    clsINI(there).ConfirmBackslash(kFile);
    EXPECT_EQ(faulty.plan.Fired(), 1);
    EXPECT_EQ(machine.Content(kFile), before);
    EXPECT_EQ(machine.Names("C:\\Vantrel"), std::vector<std::string>{"WEEKLY.INI"});
}

TEST_F(ProfileFault, NewSetIsNeverWrittenOverOneThatIsThere) {
    machine.PutFile(kFile, kOld);
    EXPECT_THROW(clsINI(there).Create_INI("WEEKLY.INI", true), Error);
    EXPECT_EQ(machine.Content(kFile), kOld);
    clsINI(there).Create_INI("WEEKLY.INI");
    EXPECT_NE(machine.Content(kFile), kOld);
}

TEST_F(ProfileFault, ReadThatFailsGivesAnEmptyValue) {
    machine.PutFile(kFile, kOld);
    for (const Call call : {Call::kOpen, Call::kRead, Call::kClose}) {
        faulty.plan.Inject({call});
        EXPECT_EQ(clsFiles(there).ReadINI("S", "K", kFile), "");
        faulty.plan.Heal();
    }
    EXPECT_EQ(faulty.plan.Fired(), 3);
}

TEST_F(ProfileFault, ShortReadsAreReadToTheEnd) {
    machine.PutFile(kFile, kOld);
    faulty.plan.LimitReads(1);
    EXPECT_EQ(clsFiles(there).ReadINI("S", "K", kFile), "old");
}

TEST_F(ProfileFault, ExistNeverRaises) {
    machine.PutFile(kFile, kOld);
    faulty.plan.Inject({Call::kAny, 1, true, error_number::kPermissionDenied});
    EXPECT_NO_THROW(EXPECT_FALSE(clsFiles(there).Exist(kFile, true)));
    EXPECT_NO_THROW(EXPECT_FALSE(clsFiles(there).Exist("C:\\Vantrel", false)));
    faulty.plan.Heal();
    faulty.plan.Inject({Call::kList});
    EXPECT_NO_THROW(EXPECT_FALSE(clsFiles(there).Exist(kFile, true)));
    EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(ProfileFault, DriveWhoseRootMayNotBeLookedAtIsReady) {
    machine.PutFile(kFile, kOld);
    faulty.plan.Inject({Call::kFind, 1, false, error_number::kPermissionDenied});
    EXPECT_TRUE(clsFiles(there).Exist(kFile, true));
    EXPECT_EQ(faulty.plan.Fired(), 1);
}

}  // namespace
}  // namespace vantrel
