// Signals that would end the program although it can go on.
#pragma once

namespace zvonivec {

/// Lets a write that can't be carried out fail instead of ending the process. Called first of all,
/// before a library writes anything.
///
/// Under Linux SIGPIPE ends a process that writes a message to a terminal or a launcher that has
/// gone, and SIGXFSZ ends one that writes beyond the largest file size it may write. Both are
/// ignored. Windows has no such signals.
void ignoreSignalsOfFailedWrites();

} // namespace zvonivec
