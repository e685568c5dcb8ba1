#include "tests/support/faulty_file_system.h"

#include <thread>

#include "platform/text_file.h"
#include "tests/support/error_of.h"
#include "tests/support/matchers.h"
#include "tests/support/test_machine.h"

namespace vantrel::test {
namespace {

using namespace error_number;
using platform::OpenMode;

class FaultyFiles : public ::testing::Test {
  protected:
    TestMachine machine;
    FaultyFileSystem faulty{machine.files()};
    const std::string path = "C:\\a.txt";

    void Write(const std::string& bytes) { platform::WriteWholeFile(faulty, path, bytes); }
    std::vector<Call> Kinds() {
        std::vector<Call> kinds;
        for (const auto& call : faulty.plan.Calls()) {
            kinds.push_back(call.kind);
        }
        return kinds;
    }
};

TEST_F(FaultyFiles, WithoutAFaultIsTheFileSystemBelow) {
    Write("bytes");
    faulty.MakeFolder("C:\\sub");
    faulty.Rename(path, "C:\\sub\\b");
    EXPECT_EQ(platform::ReadWholeFile(faulty, "C:\\sub\\b"), "bytes");
    EXPECT_EQ(faulty.plan.Fired(), 0);
    EXPECT_EQ(machine.Content("C:\\sub\\b"), "bytes");
}

TEST_F(FaultyFiles, LogNamesCallsPathsAndThreads) {
    Write("bytes");
    faulty.Rename(path, "C:\\b.txt");
    EXPECT_THAT(Kinds(), ElementsAre(Call::kOpen, Call::kWrite, Call::kClose, Call::kRename));
    const auto calls = faulty.plan.Calls();
    EXPECT_EQ(calls[1].path, path);
    EXPECT_EQ(calls[3].other_path, "C:\\b.txt");
    EXPECT_EQ(calls[3].thread, std::this_thread::get_id());
    EXPECT_EQ(faulty.plan.Count(Call::kAny), 4);
    EXPECT_EQ(faulty.plan.Count(Call::kAny, "b.txt"), 1);
    faulty.plan.ForgetCalls();
    EXPECT_EQ(faulty.plan.Count(Call::kAny), 0);
}

TEST_F(FaultyFiles, NthCallOfAKindFailsOnceWithTheChosenNumber) {
    faulty.plan.Inject({.kind = Call::kFind, .at = 2, .number = kPermissionDenied});
    EXPECT_EQ(ErrorOf([&] { faulty.Find(path); }), 0);
    EXPECT_EQ(ErrorOf([&] { faulty.List("C:\\", [](const auto&) { return true; }); }), 0);
    EXPECT_EQ(ErrorOf([&] { faulty.Find(path); }), kPermissionDenied);
    EXPECT_EQ(ErrorOf([&] { faulty.Find(path); }), 0);
    EXPECT_EQ(faulty.plan.Fired(), 1);
}

TEST_F(FaultyFiles, FailingFromThenOnLastsUntilHealed) {
    faulty.plan.Inject({.at = 2, .from_then_on = true, .number = kPermissionDenied});
    EXPECT_EQ(ErrorOf([&] { faulty.Find(path); }), 0);
    EXPECT_EQ(ErrorOf([&] { faulty.Find(path); }), kPermissionDenied);
    EXPECT_EQ(ErrorOf([&] { faulty.MakeFolder("C:\\x"); }), kPermissionDenied);
    EXPECT_FALSE(machine.Exists("C:\\x"));
    faulty.plan.Heal();
    EXPECT_EQ(ErrorOf([&] { faulty.MakeFolder("C:\\x"); }), 0);
}

TEST_F(FaultyFiles, FaultMayConcernOnePathOnly) {
    faulty.plan.Inject({.kind = Call::kOpen, .number = kPermissionDenied, .path_part = "b.txt"});
    EXPECT_EQ(ErrorOf([&] { Write("x"); }), 0);
    EXPECT_EQ(ErrorOf([&] { faulty.Open("C:\\b.txt", OpenMode::kWrite); }), kPermissionDenied);
    EXPECT_FALSE(machine.Exists("C:\\b.txt"));
}

TEST_F(FaultyFiles, FullDiskTakesWhatFits) {
    faulty.plan.LimitDisk(7);
    Write("12345");
    EXPECT_EQ(ErrorOf([&] { platform::AppendToFile(faulty, path, "67890"); }), kDiskFull);
    EXPECT_EQ(machine.Content(path), "1234567");
    EXPECT_EQ(ErrorOf([&] { platform::AppendToFile(faulty, path, "8"); }), kDiskFull);
}

TEST_F(FaultyFiles, ShortWritePutsDownHalf) {
    faulty.plan.Inject({.kind = Call::kWrite, .number = kDeviceIo, .effect = Effect::kShortWrite});
    EXPECT_EQ(ErrorOf([&] { Write("12345678"); }), kDeviceIo);
    EXPECT_EQ(machine.Content(path), "1234");
}

TEST_F(FaultyFiles, ShortReadsGiveNoMoreThanTheirLimit) {
    machine.PutFile(path, "12345678");
    faulty.plan.LimitReads(3);
    char room[8];
    auto file = faulty.Open(path, OpenMode::kRead);
    EXPECT_EQ(file->Read(room, 8), 3u);
    EXPECT_EQ(file->Read(room, 2), 2u);
    EXPECT_EQ(file->Read(room, 8), 3u);
    EXPECT_EQ(file->Read(room, 8), 0u);
}

TEST_F(FaultyFiles, OneShortReadHandsOverHalfAndTheNextGoesOn) {
    machine.PutFile(path, "12345678");
    faulty.plan.Inject({.kind = Call::kRead, .effect = Effect::kShortRead});
    char room[8];
    auto file = faulty.Open(path, OpenMode::kRead);
    EXPECT_EQ(file->Read(room, 8), 4u);
    EXPECT_EQ(file->Read(room, 8), 4u);
    EXPECT_EQ(file->Read(room, 8), 0u);
}

TEST_F(FaultyFiles, WhatIsMissingIsNotFoundWithoutAnError) {
    machine.PutFile(path, "1");
    for (const int number : {kFileNotFound, kPathNotFound, kDeviceUnavailable, kDiskNotReady}) {
        faulty.plan.Inject({.from_then_on = true, .number = number});
        EXPECT_FALSE(faulty.Find(path).has_value()) << number;
        EXPECT_FALSE(faulty.SameFile(path, path)) << number;
        faulty.plan.Heal();
    }
    faulty.plan.Inject({.number = kPermissionDenied});
    EXPECT_EQ(ErrorOf([&] { faulty.Find(path); }), kPermissionDenied);
}

TEST_F(FaultyFiles, RuleMayChooseItsCallsAndItsNumberByTheCall) {
    machine.PutFile(path, "1");
    faulty.plan.Inject({.from_then_on = true,
                        .only = [](const CallRecord& call) { return call.opens_to_write; },
                        .number_of =
                            [](const CallRecord& call) {
                                return call.path == "C:\b.txt" ? kPathNotFound : kDiskFull;
                            }});
    EXPECT_NO_THROW(faulty.Open(path, OpenMode::kRead));
    EXPECT_EQ(ErrorOf([&] { faulty.Open(path, OpenMode::kAppend); }), kDiskFull);
    EXPECT_EQ(ErrorOf([&] { faulty.Open("C:\b.txt", OpenMode::kWrite); }), kPathNotFound);
    EXPECT_EQ(faulty.plan.Fired(), 2);
    EXPECT_EQ(faulty.plan.FirstFired().path, path);
}

TEST_F(FaultyFiles, OtherThreadsSeeADeathAsAnError) {
    const DiesOnThisThreadOnly here;
    faulty.plan.Inject({.effect = Effect::kDie});
    int number = 0;
    std::thread([&] { number = ErrorOf([&] { faulty.Find(path); }); }).join();
    EXPECT_EQ(number, kDeviceIo);
    EXPECT_TRUE(faulty.plan.Dead());
}

TEST_F(FaultyFiles, AfterTheProcessDiedNothingReachesTheDisk) {
    machine.PutFile(path, "old");
    faulty.plan.Inject({.kind = Call::kWrite, .effect = Effect::kDie});
    auto file = faulty.Open("C:\\b.txt", OpenMode::kCreateNew);
    EXPECT_THROW(file->Write("x", 1), ProcessDied);
    EXPECT_TRUE(faulty.plan.Dead());
    EXPECT_EQ(ErrorOf([&] { file->Write("x", 1); }), kDeviceIo);
    EXPECT_EQ(ErrorOf([&] { faulty.RemoveFile(path); }), kDeviceIo);
    file.reset();
    EXPECT_EQ(machine.Content(path), "old");
    EXPECT_EQ(machine.Content("C:\\b.txt"), "");
}

TEST_F(FaultyFiles, HookRunsBeforeEachCallAndMayChangeTheDisk) {
    machine.PutFile(path, "bytes");
    faulty.plan.before_call = [&](const CallRecord& call) {
        if (call.kind == Call::kOpen) {
            machine.files().RemoveFile(call.path);
        }
    };
    EXPECT_EQ(ErrorOf([&] { platform::ReadWholeFile(faulty, path); }), kFileNotFound);
}

TEST_F(FaultyFiles, LosingUnflushedWritesGoesBackToTheLastFlush) {
    machine.PutFile(path, "old");
    {
        auto file = faulty.Open(path, OpenMode::kAppend);
        file->Write(" flushed", 8);
        file->Flush();
        file->Write(" lost", 5);
        file->Close();
    }
    EXPECT_EQ(machine.Content(path), "old flushed lost");
    faulty.LoseUnflushed();
    EXPECT_EQ(machine.Content(path), "old flushed");
}

TEST_F(FaultyFiles, LosingUnflushedWritesEmptiesAFileThatWasNeverFlushed) {
    Write("bytes");
    faulty.Rename(path, "C:\\b.txt");
    faulty.LoseUnflushed();
    EXPECT_EQ(machine.Content("C:\\b.txt"), "");
}

TEST_F(FaultyFiles, LosingUnflushedWritesTakesBackATruncation) {
    machine.PutFile(path, "old bytes");
    Write("new");
    faulty.LoseUnflushed();
    EXPECT_EQ(machine.Content(path), "old bytes");
}

TEST_F(FaultyFiles, FlushedFileKeepsItsBytesWhereverItIsMoved) {
    machine.PutFile("C:\\target", "old");
    auto file = faulty.Open(path, OpenMode::kCreateNew);
    file->Write("....", 4);
    file->Seek(1);
    file->Write("ab", 2);
    file->Flush();
    file->Close();
    faulty.Replace(path, "C:\\target");
    faulty.LoseUnflushed();
    EXPECT_EQ(machine.Content("C:\\target"), ".ab.");
}

}  // namespace
}  // namespace vantrel::test
