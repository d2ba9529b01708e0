#include "settings/settings_path.h"

namespace zvonivec {

std::string SettingsPath(const std::string& programFolder, const std::string& separator) {
    return programFolder + (programFolder.ends_with(separator) ? "" : separator) + "MP3.ini";
}

} // namespace zvonivec
