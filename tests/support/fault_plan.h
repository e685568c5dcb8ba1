// What a faulty file system is to do wrong, and what has been asked of it. Safe from any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "common/error.h"

namespace vantrel::test {

// The calls of the seam; those of an open file last.
enum class Call {
    kAny,  // in rules and questions only
    kOpen,
    kFind,
    kList,
    kMakeFolder,
    kRename,
    kReplace,
    kRemoveFile,
    kRemoveFolder,
    kSetAttributes,
    kSetTimes,
    kSameFile,
    kRead,
    kWrite,
    kSeek,
    kSize,
    kTruncate,
    kSetFileTimes,
    kFlush,
    kClose,
};

struct CallRecord {
    Call kind = Call::kAny;
    std::string path;
    std::string other_path;  // of calls with two
    std::thread::id thread;
    bool opens_to_write = false;  // of kOpen
};

// Thrown where the process "dies". Nothing that is asked afterwards reaches the disk: each call
// then raises error 57, so that what still unwinds may catch it as it catches any other.
struct ProcessDied {};

// Says that no thread but this one may see ProcessDied while it lives: on others, whose top knows
// errors only, the call that dies raises error 57 like all that follow it.
class DiesOnThisThreadOnly {
  public:
    DiesOnThisThreadOnly();
    ~DiesOnThisThreadOnly();
    DiesOnThisThreadOnly(const DiesOnThisThreadOnly&) = delete;
    DiesOnThisThreadOnly& operator=(const DiesOnThisThreadOnly&) = delete;
};

enum class Effect {
    kRaise,       // the call is not made; it raises
    kShortWrite,  // a write puts down half of its bytes, then raises
    kShortRead,   // a read hands over half of what was asked for; the rest comes with the next one
    kDie,         // the call is not made; ProcessDied
};

struct Fault {
    Call kind = Call::kAny;
    int at = 1;  // the n-th matching call from now on, counted from 1
    bool from_then_on = false;
    int number = error_number::kDeviceIo;
    Effect effect = Effect::kRaise;
    std::string path_part{};                            // only calls whose path contains this
    std::function<bool(const CallRecord&)> only{};      // only calls that it is true for; none: all
    std::function<int(const CallRecord&)> number_of{};  // in place of `number`, by the call
};

class FaultPlan {
  public:
    // Called before each call is made, on the caller's thread and without any lock held: it may
    // block, change the disk, or raise.
    std::function<void(const CallRecord&)> before_call;

    void Inject(Fault fault);
    // Forgets the faults, the limits and the death; the log stays.
    void Heal();
    // How many calls have failed by injection.
    int Fired() const;
    // The first of them.
    CallRecord FirstFired() const;
    bool Dead() const;

    // Writes beyond `bytes` more (of all files together) raise 61; the part that fits is written.
    void LimitDisk(std::uint64_t bytes);
    // No Read returns more than this many bytes.
    void LimitReads(std::size_t bytes);

    std::vector<CallRecord> Calls() const;
    // Number of calls of a kind whose path (either of two) contains `path_part`.
    int Count(Call kind, const std::string& path_part = "") const;
    void ForgetCalls();

    // --- for the decorator ---
    // Logs the call and runs the hook; raises, or returns a fault that the caller has to act out.
    struct Verdict {
        bool short_write = false;
        int number = 0;
        bool short_read = false;
    };
    Verdict Enter(CallRecord call);
    // How many of `count` bytes may be written; the rest does not fit.
    std::size_t TakeSpace(std::size_t count);
    std::size_t ReadLimit() const;

  private:
    struct Rule {
        Fault fault;
        int seen = 0;
    };
    Verdict Judge(const CallRecord& call);
    [[noreturn]] void Die(const CallRecord& call);

    mutable std::mutex mutex_;
    std::vector<Rule> rules_;
    std::vector<CallRecord> calls_;
    int fired_ = 0;
    CallRecord first_fired_;
    bool dead_ = false;
    std::uint64_t space_ = std::numeric_limits<std::uint64_t>::max();
    std::size_t read_limit_ = std::numeric_limits<std::size_t>::max();
};

}  // namespace vantrel::test
