// Suppresses reports about libraries that aren't built with sanitizers and that this program can't
// fix. The sanitizers don't see PulseAudio's own locks, and PulseAudio keeps some memory until the
// process ends.

// The sanitizers define these names.
extern "C" {

const char* __tsan_default_suppressions();
const char* __lsan_default_suppressions();

const char* __tsan_default_suppressions() {
    return "called_from_lib:libpulsecommon\n"
           "called_from_lib:libpulse.so\n"
           "race:libpulsecommon\n"
           "race:libpulse.so\n";
}

const char* __lsan_default_suppressions() {
    // Asks the desktop something when the toolkit starts, and keeps the question where no bus
    // answers it.
    return "leak:QGenericUnixServices::QGenericUnixServices\n"
           "leak:libpulse\n";
}
}
// NOLINTEND(bugprone-reserved-identifier)
