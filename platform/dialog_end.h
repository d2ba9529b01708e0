// How a file dialog of the toolkit ends without leaving anything on the disk.
#pragma once

class QFileDialog;

namespace zvonivec {

/// For smart pointers. When its dialog is deleted, the toolkit writes the folders visited into
/// settings of its own; this program writes nothing but MP3.ini.
struct DialogEnd {
    void operator()(QFileDialog* dialog) const;
};

} // namespace zvonivec
