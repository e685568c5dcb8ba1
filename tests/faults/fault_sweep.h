// Tries everything that can go wrong at every call that a piece of work makes of the machine, and
// asks after each try what is left.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tests/faults/computer.h"

namespace vantrel::test {

// One way in which calls go wrong.
struct FaultKind {
    std::string name;
    Fault fault;               // without its place and duration
    bool once = true;          // the n-th call only
    bool lasting = true;       // the n-th call and all after it
    bool loses_power = false;  // what was not flushed is gone afterwards
};

// Denied or shared, missing, drive gone, disk full, short write, short read, death, power failure.
const std::vector<FaultKind>& AllFaultKinds();

struct Scenario {
    std::string name;
    std::function<void(Computer&)> arrange;
    std::function<void(Computer&)> act;
    // What is lost, "" for nothing. `reached` is to become true when the work was done.
    std::function<std::string(Computer&, bool& reached)> judge;
    Computer::Disk disk = Computer::Disk::kMemory;
    // Only every so many calls, another one for each kind: for long work. 1 is every call.
    int step = 1;
    const std::vector<FaultKind>* kinds = &AllFaultKinds();
};

struct Tally {
    int calls = 0;  // of the work without a fault
    int faults = 0;
    int survived = 0;
    int done_nevertheless = 0;  // of those that survived: the work was done all the same
    std::vector<std::string> lost;

    void Add(const Tally& other);
};

// Without a fault first: the work must be done and nothing lost, or the sweep fails. Prints a
// line; the totals of all sweeps are printed at the end of the program.
Tally Sweep(const Scenario& scenario);
// The same, for tests of the checks: prints nothing and counts for no total.
Tally SweepQuietly(const Scenario& scenario);
// Fails the test for each fault that has lost something (the first ten in words).
void ExpectNothingLost(const Tally& tally);

}  // namespace vantrel::test
