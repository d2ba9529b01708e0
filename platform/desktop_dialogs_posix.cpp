#include "platform/desktop_dialogs.h"

#include <link.h>
#include <string_view>

namespace zvonivec {

// The toolkit shows dialogs of GNOME, KDE and the portals through plug-ins for desktops. It loads
// them at its start.
bool desktopMayHaveFileDialogs() {
    const auto isPlugIn = [](dl_phdr_info* library, std::size_t /*size*/, void* /*data*/) {
        constexpr std::string_view folder = "/platformthemes/";
        return library->dlpi_name != nullptr &&
                       std::string_view(library->dlpi_name).find(folder) != std::string_view::npos
                   ? 1
                   : 0;
    };
    return dl_iterate_phdr(isPlugIn, nullptr) != 0;
}

} // namespace zvonivec
