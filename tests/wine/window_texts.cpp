// window_texts              prints the title of each visible window and the texts in it, as UTF-8
// window_texts TITLE TEXT   writes a text into the edit field of the window with this title
#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <string>
#include <windows.h>
// Needs windows.h before it.
#include <shellapi.h>

namespace {

/// Asks the window for its text. Works for windows of other programs too.
std::string textOf(HWND window) {
    std::wstring text(4096, L'\0');
    DWORD_PTR length = 0;
    if (SendMessageTimeoutW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()),
                            SMTO_ABORTIFHUNG, 2000, &length) == 0) {
        return {};
    }
    const int size = static_cast<int>(length);
    std::string bytes(static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(), size,
                                                                   nullptr, 0, nullptr, nullptr)),
                      '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), size, bytes.data(), static_cast<int>(bytes.size()),
                        nullptr, nullptr);
    return bytes;
}

BOOL CALLBACK write(HWND window, LPARAM /*data*/) {
    const std::string text = IsWindowVisible(window) != FALSE ? textOf(window) : std::string();
    if (!text.empty()) {
        std::printf("%s\n", text.c_str());
    }
    return TRUE;
}

BOOL CALLBACK writeAll(HWND window, LPARAM data) {
    if (IsWindowVisible(window) != FALSE) {
        write(window, data);
        EnumChildWindows(window, write, data);
    }
    return TRUE;
}

/// Finds the first visible edit field.
BOOL CALLBACK find(HWND window, LPARAM result) {
    std::wstring name(16, L'\0');
    name.resize(static_cast<std::size_t>(
        GetClassNameW(window, name.data(), static_cast<int>(name.size()))));
    if (name != L"Edit" || IsWindowVisible(window) == FALSE) {
        return TRUE;
    }
    *reinterpret_cast<HWND*>(result) = window;
    return FALSE;
}

bool put(const wchar_t* title, const wchar_t* text) {
    HWND line = nullptr;
    EnumChildWindows(FindWindowW(nullptr, title), find, reinterpret_cast<LPARAM>(&line));
    return line != nullptr &&
           SendMessageTimeoutW(line, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text),
                               SMTO_ABORTIFHUNG, 2000, nullptr) != 0;
}

} // namespace

int main() {
    int count = 0;
    wchar_t** arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    if (count == 3) {
        return put(arguments[1], arguments[2]) ? 0 : 1;
    }
    _setmode(_fileno(stdout), _O_BINARY);
    return EnumWindows(writeAll, 0) != FALSE ? 0 : 1;
}
