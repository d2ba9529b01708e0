// The values that persist between runs: read at the start, written at the end.

#include "main_window/frmPlayer.h"
#include "platform/modDeklarace.h"
#include "settings/number_text.h"
#include "settings/settings_path.h"

#include <algorithm>

namespace zvonivec {

namespace {

constexpr const char* SECTION = "General";
constexpr std::size_t BUFFER_SIZE = 33001;

/// Returns the default place: the middle of the primary screen, which begins at a place.
float centred(float begin, float screen, float window) {
    return begin + (screen / 2 - window / 2);
}

/// The program's section of its settings file.
class SettingsFile {
public:
    explicit SettingsFile(const std::string& programFolder)
        : path_(SettingsPath(programFolder, modDeklarace::folderSeparator())) {}

    [[nodiscard]] std::string read(const char* key, const std::string& defaultText) const {
        return modDeklarace::GetPrivateProfileStringA(SECTION, key, defaultText, BUFFER_SIZE,
                                                      path_);
    }
    void write(const char* key, std::string text) const {
        std::ranges::transform(text, text.begin(), [](char character) {
            return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                                        : character;
        });
        modDeklarace::WritePrivateProfileStringA(SECTION, key, text, path_);
    }

private:
    std::string path_;
};

} // namespace

void frmPlayer::LoadSettings() {
    const SettingsFile file(programFolder_);
    const char separator = Locale::decimalSeparator();

    if (const auto left = toSingle(file.read(
            "Left", numberText(centred(Screen::Left(), Screen::Width(), Width()), separator)))) {
        setLeft(*left);
    }
    if (const auto top = toSingle(file.read(
            "Top", numberText(centred(Screen::Top(), Screen::Height(), Height()), separator)))) {
        setTop(*top);
    }
    if (const auto onTop = toInteger(file.read("OnTop", "0"))) {
        Popup().chkPopup[popupOnTop].setValue(*onTop);
    }
    if (const auto repeat = toInteger(file.read("Repeat", "1"))) {
        Popup().chkPopup[popupRepeat].setValue(*repeat);
    }
    if (const auto volume = toLong(file.read("Volume", "50"))) {
        WMP->settings().setVolume(*volume);
    }
    showVolume();
    settingsLoaded_ = true;
}

void frmPlayer::SaveSettings() {
    // A message pass during LoadSettings may end the program. Values that have not been read yet
    // must not be overwritten.
    if (!settingsLoaded_) {
        return;
    }
    const SettingsFile file(programFolder_);
    const char separator = Locale::decimalSeparator();

    if (placeIsKnown() && WindowState() == WindowState::normal) {
        file.write("Left", numberText(LeftToKeep(), separator));
    }
    if (placeIsKnown() && WindowState() == WindowState::normal) {
        file.write("Top", numberText(TopToKeep(), separator));
    }
    file.write("OnTop", numberText(Popup().chkPopup[popupOnTop].Value()));
    file.write("Repeat", numberText(Popup().chkPopup[popupRepeat].Value()));
    file.write("Volume", numberText(WMP->settings().volume()));
}

} // namespace zvonivec
