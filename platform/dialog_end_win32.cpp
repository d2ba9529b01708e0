#include "platform/dialog_end.h"

#include <QFileDialog>
#include <windows.h>
// Needs windows.h before it.
#include <shlwapi.h>

namespace zvonivec {

// The toolkit's settings are in the registry and can't be redirected. So the dialog isn't deleted.
// It is the system's own dialog, and the toolkit keeps only its options. It has made empty keys by
// looking for its settings; keys with settings of other programs stay.
void DialogEnd::operator()(QFileDialog* dialog) const {
    dialog->setParent(nullptr); // otherwise the window would delete it
    for (const wchar_t* key :
         {L"Software\\QtProject\\OrganizationDefaults\\FileDialog",
          L"Software\\QtProject\\OrganizationDefaults", L"Software\\QtProject"}) {
        SHDeleteEmptyKeyW(HKEY_CURRENT_USER, key);
    }
}

} // namespace zvonivec
