#include "tests/support/fault_plan.h"

#include <algorithm>
#include <atomic>

namespace vantrel::test {

namespace {

std::atomic<std::thread::id> only_thread_to_die{};

bool Matches(const CallRecord& call, Call kind, const std::string& path_part) {
    if (kind != Call::kAny && kind != call.kind) {
        return false;
    }
    return call.path.find(path_part) != std::string::npos ||
           call.other_path.find(path_part) != std::string::npos;
}

}  // namespace

DiesOnThisThreadOnly::DiesOnThisThreadOnly() { only_thread_to_die = std::this_thread::get_id(); }
DiesOnThisThreadOnly::~DiesOnThisThreadOnly() { only_thread_to_die = std::thread::id(); }

void FaultPlan::Inject(Fault fault) {
    const std::lock_guard lock(mutex_);
    rules_.push_back({std::move(fault)});
}

void FaultPlan::Heal() {
    const std::lock_guard lock(mutex_);
    rules_.clear();
    dead_ = false;
    space_ = std::numeric_limits<std::uint64_t>::max();
    read_limit_ = std::numeric_limits<std::size_t>::max();
}

int FaultPlan::Fired() const {
    const std::lock_guard lock(mutex_);
    return fired_;
}

CallRecord FaultPlan::FirstFired() const {
    const std::lock_guard lock(mutex_);
    return first_fired_;
}

bool FaultPlan::Dead() const {
    const std::lock_guard lock(mutex_);
    return dead_;
}

void FaultPlan::LimitDisk(std::uint64_t bytes) {
    const std::lock_guard lock(mutex_);
    space_ = bytes;
}

void FaultPlan::LimitReads(std::size_t bytes) {
    const std::lock_guard lock(mutex_);
    read_limit_ = bytes;
}

std::vector<CallRecord> FaultPlan::Calls() const {
    const std::lock_guard lock(mutex_);
    return calls_;
}

int FaultPlan::Count(Call kind, const std::string& path_part) const {
    const std::lock_guard lock(mutex_);
    return static_cast<int>(
        std::count_if(calls_.begin(), calls_.end(),
                      [&](const CallRecord& call) { return Matches(call, kind, path_part); }));
}

void FaultPlan::ForgetCalls() {
    const std::lock_guard lock(mutex_);
    calls_.clear();
}

FaultPlan::Verdict FaultPlan::Enter(CallRecord call) {
    call.thread = std::this_thread::get_id();
    if (Dead()) {
        RaiseError(error_number::kDeviceIo);
    }
    if (before_call) {
        before_call(call);
    }
    const std::lock_guard lock(mutex_);
    if (dead_) {
        RaiseError(error_number::kDeviceIo);
    }
    calls_.push_back(call);
    return Judge(call);
}

// With the mutex held.
FaultPlan::Verdict FaultPlan::Judge(const CallRecord& call) {
    // Every rule counts the call, whichever of them then strikes.
    const Fault* struck = nullptr;
    for (Rule& rule : rules_) {
        const Fault& fault = rule.fault;
        if (!Matches(call, fault.kind, fault.path_part)) {
            continue;
        }
        if (fault.only && !fault.only(call)) {
            continue;
        }
        ++rule.seen;
        const bool due = fault.from_then_on ? rule.seen >= fault.at : rule.seen == fault.at;
        if (due && struck == nullptr) {
            struck = &fault;
        }
    }
    if (struck == nullptr) {
        return {};
    }
    if (++fired_ == 1) {
        first_fired_ = call;
    }
    if (struck->effect == Effect::kDie) {
        Die(call);
    }
    const int number = struck->number_of ? struck->number_of(call) : struck->number;
    const bool short_write = struck->effect == Effect::kShortWrite && call.kind == Call::kWrite;
    const bool short_read = struck->effect == Effect::kShortRead && call.kind == Call::kRead;
    if (!short_write && !short_read) {
        RaiseError(number);
    }
    return {short_write, number, short_read};
}

// With the mutex held.
void FaultPlan::Die(const CallRecord& call) {
    dead_ = true;
    const std::thread::id only = only_thread_to_die;
    if (only != std::thread::id() && only != call.thread) {
        RaiseError(error_number::kDeviceIo);
    }
    throw ProcessDied();
}

std::size_t FaultPlan::TakeSpace(std::size_t count) {
    const std::lock_guard lock(mutex_);
    const auto taken = static_cast<std::size_t>(std::min<std::uint64_t>(count, space_));
    if (space_ != std::numeric_limits<std::uint64_t>::max()) {
        space_ -= taken;
    }
    return taken;
}

std::size_t FaultPlan::ReadLimit() const {
    const std::lock_guard lock(mutex_);
    return read_limit_;
}

}  // namespace vantrel::test
