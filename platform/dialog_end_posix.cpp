#include "platform/dialog_end.h"

#include <QFileDialog>
#include <QSettings>

namespace zvonivec {

// The toolkit's settings are files in a folder that the program can choose. No file can be created
// in this folder.
void DialogEnd::operator()(QFileDialog* dialog) const {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/dev/null"));
    delete dialog;
}

} // namespace zvonivec
