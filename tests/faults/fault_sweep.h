// Tries everything that can go wrong at every call that a piece of work makes of the machine, and
// asks after each try what is left.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tests/faults/computer.h"

namespace vantrel::test {

struct Scenario {
    std::string name;
    std::function<void(Computer&)> arrange;
    std::function<void(Computer&)> act;
    // What is lost, "" for nothing. `reached` is to become true when the work was done.
    std::function<std::string(Computer&, bool& reached)> judge;
    Computer::Disk disk = Computer::Disk::kMemory;
    // Only every so many calls, another one for each kind: for long work. 1 is every call.
    int step = 1;
};

struct Tally {
    int calls = 0;  // of the work without a fault
    int faults = 0;
    int survived = 0;
    std::vector<std::string> lost;
};

// Without a fault first: the work must be done and nothing lost, or the test fails.
Tally Sweep(const Scenario& scenario);
// Sweeps, and fails the test for each fault that has lost something. Prints a line; the totals of
// all these sweeps are printed at the end of the program.
void ExpectNothingLost(const Scenario& scenario);

}  // namespace vantrel::test
