#include "tests/support/under_wine.h"

#include <windows.h>

namespace support {

bool underWine() {
    return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

} // namespace support
