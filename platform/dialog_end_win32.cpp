#include "platform/dialog_end.h"

#include <QFileDialog>

namespace zvonivec {

// The toolkit's settings are in the registry and can't be redirected. So the dialog isn't deleted.
// It is the system's own dialog, and the toolkit keeps only its options.
void DialogEnd::operator()(QFileDialog* dialog) const {
    dialog->setParent(nullptr); // otherwise the window would delete it
}

} // namespace zvonivec
