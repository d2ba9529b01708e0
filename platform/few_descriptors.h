// Processes that may open only a few files.
#pragma once

namespace zvonivec {

/// Keeps the display's library from waiting forever for a descriptor where the process may have
/// only a few. Called before the toolkit starts and before other threads read the environment.
///
/// Under X11 pictures go to the server through shared memory, for which it sends descriptors. A
/// descriptor that the process has no room for never comes, and the library waits for it. With few
/// of them the pictures go through the connection instead.
void spareDescriptors();

} // namespace zvonivec
