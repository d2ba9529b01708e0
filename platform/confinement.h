// The rights that the program doesn't need.
#pragma once

namespace zvonivec {

/// Which rights a process has given up.
struct Confinement {
    bool files = false; ///< It writes, makes and removes files only where the program has to.
    bool calls = false; ///< The system refuses it the calls that a player never makes.
};

/// Gives up the rights that a player doesn't need, for the whole process and for good, so that a
/// hostile file that gets hold of it can do little. Called before the process has a second thread.
/// Returns what was reached: a system that can't take the rights away leaves them, and the program
/// works as it did. docs/security.md lists them.
Confinement confine();

} // namespace zvonivec
