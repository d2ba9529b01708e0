// Whether Wine takes the place of Windows.
#pragma once

#include <windows.h>

namespace support {

inline bool underWine() {
    return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

} // namespace support
