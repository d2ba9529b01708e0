// Keeps tests, and all that they start, out of the session of the person who runs them.
#pragma once

#include "tests/support/process.h"

#include <string>

namespace support {

/// Variables with which a process sees nothing of the user's session: no display, message bus,
/// sound server or settings. Home and run directory are in the folder given, which must exist and
/// belong to nobody else.
[[nodiscard]] Process::Environment privateSession(const std::string& folder);

/// Sets variables in the test process itself, an empty value removing the name.
void setInThisProcess(const Process::Environment& environment);

} // namespace support
