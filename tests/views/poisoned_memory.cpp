// Memory that is given back is filled first, so that whoever still uses it is found out at once:
// there are no sanitizers for Windows here. Windows passes over what goes wrong inside a window
// procedure; here it ends the tests.
#include <windows.h>

#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

constexpr int kPoison = 0xDD;

void GiveBack(void* memory) noexcept {
    if (memory == nullptr) {
        return;
    }
    std::memset(memory, kPoison, _msize(memory));
    std::free(memory);
}

// A filled pointer is no possible address, which the processor reports as all ones.
LONG CALLBACK EndTests(EXCEPTION_POINTERS* what) {
    const EXCEPTION_RECORD& record = *what->ExceptionRecord;
    if (record.ExceptionCode != EXCEPTION_ACCESS_VIOLATION ||
        record.ExceptionInformation[1] != ~static_cast<ULONG_PTR>(0)) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    std::fputs("something that was given back has been used\n", stderr);
    std::fflush(stderr);
    constexpr UINT kExitCode = 3;
    TerminateProcess(GetCurrentProcess(), kExitCode);
    return EXCEPTION_CONTINUE_SEARCH;
}

const PVOID g_watching = AddVectoredExceptionHandler(TRUE, EndTests);

}  // namespace

void* operator new(std::size_t size) {
    if (void* const memory = std::malloc(size == 0 ? 1 : size)) {
        return memory;
    }
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { GiveBack(memory); }
void operator delete(void* memory, std::size_t) noexcept { GiveBack(memory); }
