// What the sanitizers report of libraries that aren't built with them.

// The names are the sanitizers'.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {

const char* __tsan_default_suppressions();
const char* __lsan_default_suppressions();

const char* __tsan_default_suppressions() {
    // PulseAudio's client passes data between its threads by atomic operations of its own, which
    // can't be seen in a library that isn't built with the sanitizer. With version 16 the reports
    // begin in dozens of its functions, so its two libraries are named. Their locks are seen.
    return "race:libpulsecommon\n"
           "race:libpulse.so\n"
           "race:pa_mutex_lock\n";
}

const char* __lsan_default_suppressions() {
    // The toolkit asks the desktop something at its start, and keeps the question where no bus
    // answers it.
    return "leak:QGenericUnixServices::QGenericUnixServices\n"
           // PulseAudio's client keeps some of what it allocates to the end of the process.
           "leak:pa_xmalloc\n"
           "leak:pa_xstrdup\n";
}
}
// NOLINTEND(bugprone-reserved-identifier)
