// Stands for the user's web browser: recording_browser LIST PAGE adds a line with the page to the
// list. It has no window, so that the keyboard stays where it is.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

std::string Utf8(const wchar_t* text) {
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, bytes.data(), size, nullptr, nullptr);
    bytes.pop_back();
    return bytes;
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int) {
    if (__argc != 3) {
        return EXIT_FAILURE;
    }
    std::FILE* const list = _wfopen(__wargv[1], L"ab");
    if (!list) {
        return EXIT_FAILURE;
    }
    const std::string line = Utf8(__wargv[2]) + "\n";
    const bool written = std::fwrite(line.data(), 1, line.size(), list) == line.size();
    return std::fclose(list) == 0 && written ? EXIT_SUCCESS : EXIT_FAILURE;
}
