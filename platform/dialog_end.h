// The end of a file dialog of the toolkit.
#pragma once

class QFileDialog;

namespace zvonivec {

/// A deleter for smart pointers that leaves nothing on the disk. When a dialog is deleted, the
/// toolkit writes the visited folders into settings of its own, but this program writes nothing but
/// MP3.ini.
struct DialogEnd {
    void operator()(QFileDialog* dialog) const;
};

} // namespace zvonivec
