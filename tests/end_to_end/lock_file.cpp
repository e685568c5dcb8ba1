// Holds a file open so that nobody else may read it, as many desktop programs do with their data:
//   lock_file FILE
// Prints "locked" when it holds the file, and lets go when its standard input ends.
#include <windows.h>

#include <cstdio>

int wmain(int count, wchar_t** arguments) {
    if (count != 2) {
        return 2;
    }
    const HANDLE file = CreateFileW(arguments[1], GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return 1;
    }
    std::puts("locked");
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    CloseHandle(file);
    return 0;
}
