// Whether the system gives the process threads.
#pragma once

namespace zvonivec {

/// Threads without which the toolkit hangs: one reads what the display server sends, one talks to
/// the message bus, and two help to draw large areas. It reports none of them as missing.
constexpr int TOOLKIT_THREADS = 4;

/// Whether so many threads can be had at once. Makes them and ends them again.
[[nodiscard]] bool canHaveThreads(int count);

} // namespace zvonivec
