// Keeps tests, and all processes that they start, out of the session of the person who runs them.
#pragma once

#include "tests/support/process.h"

#include <string>

namespace support {

/// Returns variables with which a process sees nothing of the user's session: no display, message
/// bus, sound server or settings. The folder contains the home and the run directory. It must exist
/// and belong to this user only.
[[nodiscard]] Process::Environment privateSession(const std::string& folder);

/// Sets variables in the test process. An empty value removes the variable.
void setInThisProcess(const Process::Environment& environment);

} // namespace support
