#include "platform/dialog_end.h"

#include <QFileDialog>

namespace zvonivec {

// The toolkit's settings are in the registry, and nothing leads them elsewhere. So the dialog isn't
// deleted: it is the system's, of which the toolkit keeps no more than its options.
void DialogEnd::operator()(QFileDialog* dialog) const {
    dialog->setParent(nullptr); // the window would delete it
}

} // namespace zvonivec
