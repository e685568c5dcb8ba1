#include "tests/faults/fault_sweep.h"

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

}  // namespace

// A file that another program holds and one that may not be touched are the same error to the
// program: once is a scanner that lets go, lasting is a file that stays locked. A drive that is
// pulled out stays away.
const std::vector<FaultKind>& AllFaultKinds() {
    static const std::vector<FaultKind> kinds = {
        {"denied or shared", {.number_of = Denied}},
        {"not found", {.only = IsByName, .number_of = Missing}},
        {"drive gone", {.number = kDeviceUnavailable}, false},
        {"disk full", {.number = kDiskFull, .only = TakesRoom}},
        {"short write", {.kind = Call::kWrite, .number = kDiskFull, .effect = Effect::kShortWrite}},
        {"short read", {.kind = Call::kRead, .effect = Effect::kShortRead}},
        {"process dies", {.effect = Effect::kDie}, true, false},
        {"power fails", {.effect = Effect::kDie}, true, false, true},
    };
    return kinds;
}

}  // namespace vantrel::test
