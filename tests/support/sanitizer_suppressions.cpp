// What the sanitizers report of libraries that aren't built with them and isn't ours to mend: they
// can't see PulseAudio's own locking, and it keeps some memory to the end of the process.

// The names are the sanitizers'.
// NOLINTBEGIN(bugprone-reserved-identifier)
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
    return "leak:libpulse\n";
}
}
// NOLINTEND(bugprone-reserved-identifier)
