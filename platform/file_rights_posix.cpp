#include "platform/file_rights_posix.h"

#include <algorithm>
#include <cstdint>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace zvonivec::file_rights {

namespace {

// The kernel's numbers. Its header knows only those of the kernel that it came with, and the C
// library has no functions for these calls.
constexpr std::uint64_t EXECUTE = 1U << 0U;
constexpr std::uint64_t WRITE_FILE = 1U << 1U;
constexpr std::uint64_t REMOVE_FOLDER = 1U << 4U;
constexpr std::uint64_t REMOVE_FILE = 1U << 5U;
constexpr std::uint64_t MAKE_REGULAR = 1U << 8U;
constexpr std::uint64_t MAKE_SOCKET = 1U << 9U;
constexpr std::uint64_t MAKE_ALL = 0x1FC0U; // devices, folders, files, sockets, pipes, links
constexpr std::uint64_t REFER = 1U << 13U;
constexpr std::uint64_t TRUNCATE = 1U << 14U;
constexpr std::uint64_t SCOPE_SIGNAL = 1U << 1U;
constexpr int VERSION_WITH_REFER = 2;
constexpr int VERSION_WITH_TRUNCATE = 3;
constexpr int VERSION_WITH_SCOPES = 6;
constexpr unsigned ASK_VERSION = 1;
constexpr int BENEATH = 1;

struct Rules {
    std::uint64_t files;
    std::uint64_t network;
    std::uint64_t scopes;
};

struct [[gnu::packed]] RuleBeneath {
    std::uint64_t allowed;
    std::int32_t folder;
};

/// Returns the rights that a kernel of this version can take away.
Rules rulesOf(int version) {
    Rules rules{.files = EXECUTE | WRITE_FILE | REMOVE_FOLDER | REMOVE_FILE | MAKE_ALL,
                .network = 0,
                .scopes = 0};
    if (version >= VERSION_WITH_REFER) {
        rules.files |= REFER;
    }
    if (version >= VERSION_WITH_TRUNCATE) {
        rules.files |= TRUNCATE;
    }
    if (version >= VERSION_WITH_SCOPES) {
        rules.scopes = SCOPE_SIGNAL; // none to processes beyond this one and its own
    }
    return rules;
}

/// Returns how much of the structure a kernel of this version knows.
std::size_t sizeOfRules(int version) {
    return version >= VERSION_WITH_SCOPES ? sizeof(Rules) : sizeof(Rules::files);
}

std::uint64_t allowedIn(Right right, bool isFolder) {
    switch (right) {
    case Right::write:
        return WRITE_FILE | TRUNCATE;
    case Right::writeAndRename:
        // The last two are rights in a folder; the kernel accepts no others for a file.
        return WRITE_FILE | TRUNCATE | (isFolder ? MAKE_REGULAR | REMOVE_FILE : 0);
    case Right::makeSockets:
        return isFolder ? MAKE_SOCKET | REMOVE_FILE : 0;
    }
    return 0;
}

bool allow(int rules, std::uint64_t known, const Place& place) {
    const int descriptor = open(place.path.c_str(), O_PATH | O_CLOEXEC);
    if (descriptor < 0) {
        return true;
    }
    struct stat status {};
    const bool isFolder = fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode);
    const RuleBeneath rule{.allowed = allowedIn(place.right, isFolder) & known,
                           .folder = descriptor};
    const bool added = syscall(SYS_landlock_add_rule, rules, BENEATH, &rule, 0) == 0;
    close(descriptor);
    return added;
}

} // namespace

bool giveUpAllBut(const std::vector<Place>& places) {
    const long version = syscall(SYS_landlock_create_ruleset, nullptr, 0, ASK_VERSION);
    if (version < 1) {
        return false;
    }
    const Rules known = rulesOf(static_cast<int>(version));
    const long made =
        syscall(SYS_landlock_create_ruleset, &known, sizeOfRules(static_cast<int>(version)), 0);
    if (made < 0) {
        return false;
    }
    const int rules = static_cast<int>(made);
    const bool done =
        std::all_of(places.begin(), places.end(),
                    [&](const Place& place) { return allow(rules, known.files, place); }) &&
        syscall(SYS_landlock_restrict_self, rules, 0) == 0;
    close(rules);
    return done;
}

} // namespace zvonivec::file_rights
