#include "platform/win32/retry.h"

namespace vantrel::platform {

namespace {

constexpr DWORD kPauses[] = {10, 20, 40, 80, 160};  // milliseconds

bool MayPass(DWORD code) {
    return code == ERROR_SHARING_VIOLATION || code == ERROR_LOCK_VIOLATION ||
           code == ERROR_ACCESS_DENIED || code == ERROR_DELETE_PENDING ||
           code == ERROR_USER_MAPPED_FILE;
}

}  // namespace

DWORD RunPatiently(const std::function<bool()>& call, const Pause& pause) {
    if (call()) return ERROR_SUCCESS;
    DWORD code = GetLastError();
    for (const DWORD milliseconds : kPauses) {
        if (!MayPass(code)) break;
        pause(milliseconds);
        if (call()) return ERROR_SUCCESS;
        code = GetLastError();
    }
    return code;
}

}  // namespace vantrel::platform
