#include "tests/faults/fault_sweep.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace vantrel::test {

namespace {

using namespace error_number;

bool IsOfFolders(const CallRecord& call) {
    return call.kind == Call::kList || call.kind == Call::kMakeFolder ||
           call.kind == Call::kRemoveFolder;
}

int Denied(const CallRecord& call) {
    return IsOfFolders(call) ? kPathFileAccess : kPermissionDenied;
}

int Missing(const CallRecord& call) {
    return IsOfFolders(call) || call.opens_to_write ? kPathNotFound : kFileNotFound;
}

// An open file does not get lost by its name.
bool IsByName(const CallRecord& call) { return call.kind < Call::kRead; }

bool TakesRoom(const CallRecord& call) {
    return call.opens_to_write || call.kind == Call::kMakeFolder || call.kind == Call::kRename ||
           call.kind == Call::kReplace || call.kind == Call::kWrite || call.kind == Call::kFlush ||
           call.kind == Call::kClose;
}

constexpr int kMaxCalls = 20000;  // more are a program that never gives up
constexpr std::size_t kPrintedLosses = 400;

// One way in which calls go wrong.
struct FaultKind {
    std::string name;
    Fault fault;               // without its place and duration
    bool once = true;          // the n-th call only
    bool lasting = true;       // the n-th call and all after it
    bool loses_power = false;  // what was not flushed is gone afterwards
};

// A file that another program holds and one that may not be touched are the same error to the
// program: once is a scanner that lets go, lasting is a file that stays locked. A drive that is
// pulled out stays away.
const FaultKind kFaultKinds[] = {
    {"denied or shared", {.number_of = Denied}},
    {"not found", {.only = IsByName, .number_of = Missing}},
    {"drive gone", {.number = kDeviceUnavailable}, false},
    {"disk full", {.number = kDiskFull, .only = TakesRoom}},
    {"short write", {.kind = Call::kWrite, .number = kDiskFull, .effect = Effect::kShortWrite}},
    {"short read", {.kind = Call::kRead, .effect = Effect::kShortRead}},
    {"process dies", {.effect = Effect::kDie}, true, false},
    {"power fails", {.effect = Effect::kDie}, true, false, true},
};

struct Try {
    bool fired = false;
    std::string lost{};
};

std::string InWords(const FaultKind& kind, const Fault& fault, const CallRecord& call) {
    return kind.name + (fault.from_then_on ? " from call " : " at call ") +
           std::to_string(fault.at) + " (" + std::to_string(static_cast<int>(call.kind)) + " " +
           call.path + ")";
}

Try TryOnce(const Scenario& scenario, const FaultKind& kind, const Fault& fault) {
    Computer computer(scenario.disk);
    scenario.arrange(computer);
    FaultPlan& plan = computer.plan();
    plan.Inject(fault);
    computer.writes_are_cut = fault.effect == Effect::kShortWrite;
    computer.Work([&] { scenario.act(computer); });
    computer.application.reset();
    const int fired = plan.Fired();
    const CallRecord first = plan.FirstFired();
    plan.Heal();
    if (kind.loses_power) {
        computer.faulty.LoseUnflushed();
    }
    computer.power_failed = kind.loses_power;
    Try result{.fired = fired > 0};
    bool reached = false;
    result.lost = scenario.judge(computer, reached);
    if (!result.lost.empty()) {
        result.lost = InWords(kind, fault, first) + ": " + result.lost;
    }
    return result;
}

// Every n-th call, until there is none.
void SweepKind(const Scenario& scenario, const FaultKind& kind, bool lasting, int start,
               Tally& tally) {
    for (int at = start; at < kMaxCalls; at += scenario.step) {
        Fault fault = kind.fault;
        fault.at = at;
        fault.from_then_on = lasting;
        const Try tried = TryOnce(scenario, kind, fault);
        if (!tried.lost.empty()) {
            tally.lost.push_back(tried.lost);
        }
        // Without the fault, the power still fails, just after the work.
        if (!tried.fired) {
            return;
        }
        ++tally.faults;
        tally.survived += tried.lost.empty();
    }
    tally.lost.push_back(kind.name + ": does not come to an end");
}

int CountCalls(const Scenario& scenario) {
    Computer computer(scenario.disk);
    scenario.arrange(computer);
    computer.plan().ForgetCalls();
    computer.Work([&] { scenario.act(computer); });
    computer.application.reset();
    bool reached = false;
    const std::string lost = scenario.judge(computer, reached);
    EXPECT_EQ(lost, "") << scenario.name << " without a fault";
    EXPECT_TRUE(reached) << scenario.name << " without a fault";
    return static_cast<int>(computer.plan().Calls().size());
}

void Print(const std::string& name, const Tally& tally) {
    std::printf("[ faults   ] %-44s %5d calls %6d faults %6d survived %3zu lost\n", name.c_str(),
                tally.calls, tally.faults, tally.survived, tally.lost.size());
    std::fflush(stdout);
}

Tally total;

class PrintsTotal : public ::testing::Environment {
  public:
    void TearDown() override {
        if (total.faults > 0) {
            Print("All sweeps", total);
        }
    }
};

const auto* const prints_total = ::testing::AddGlobalTestEnvironment(new PrintsTotal);

}  // namespace

Tally Sweep(const Scenario& scenario) {
    Tally tally;
    tally.calls = CountCalls(scenario);
    int kinds_so_far = 0;
    for (const FaultKind& kind : kFaultKinds) {
        for (const bool lasting : {false, true}) {
            if (lasting ? !kind.lasting : !kind.once) {
                continue;
            }
            SweepKind(scenario, kind, lasting, 1 + kinds_so_far++ % scenario.step, tally);
        }
    }
    return tally;
}

void ExpectNothingLost(const Scenario& scenario) {
    const Tally tally = Sweep(scenario);
    Print(scenario.name, tally);
    total.calls += tally.calls;
    total.faults += tally.faults;
    total.survived += tally.survived;
    total.lost.insert(total.lost.end(), tally.lost.begin(), tally.lost.end());
    EXPECT_GT(tally.faults, 0);
    EXPECT_EQ(tally.faults, tally.survived);
    for (std::size_t i = 0; i < std::min(tally.lost.size(), kPrintedLosses); ++i) {
        ADD_FAILURE() << "lost: " << tally.lost[i];
    }
    EXPECT_EQ(tally.lost.size(), 0u);
}

}  // namespace vantrel::test
