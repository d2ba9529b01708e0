// Settings files where the system has functions for them.

#include "tests/support/under_wine.h"
#include "tests/unit/settings_cases.h"

#include <algorithm>
#include <windows.h>

namespace zvonivec {
namespace {

/// Cases in which the functions of Wine differ from those of Windows, from which the table comes.
std::vector<SettingsTable::Difference> differencesOfWine() {
    if (!support::underWine()) {
        return {};
    }
    const std::string reason = "Wine leaves out empty lines when it writes a file";
    const std::string lines =
        "[General]\r\nLeft=4807.5\r\nTop=3240\r\nOnTop=0\r\nRepeat=1\r\nVolume=50\r\n";
    return {{"w_blank_tail", {}, lines, reason},
            {"w_blank_tail_next", {}, lines + "[Next]\r\nq=1\r\n", reason}};
}

/// Returns bytes of the system's code page as UTF-8.
std::string fromCodePage(const std::string& bytes) {
    std::wstring wide(bytes.size(), L'\0');
    wide.resize(static_cast<std::size_t>(
        MultiByteToWideChar(CP_ACP, 0, bytes.data(), static_cast<int>(bytes.size()), wide.data(),
                            static_cast<int>(wide.size()))));
    std::string text(wide.size() * 3, '\0');
    text.resize(static_cast<std::size_t>(
        WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()), text.data(),
                            static_cast<int>(text.size()), nullptr, nullptr)));
    return text;
}

TEST_F(SettingsFormat, TheSystemsOwnFunctionsKeepToTheTable) {
    expectTable({.read =
                     [this](const std::string& file, const std::string& key) {
                         putOrRemove(file);
                         std::string value(BUFFER_SIZE, '\0');
                         value.resize(::GetPrivateProfileStringA("General", key.c_str(), "DEF",
                                                                 value.data(), BUFFER_SIZE,
                                                                 path_.c_str()));
                         return value;
                     },
                 .written =
                     [this](const std::string& file, const SettingsTable::Writes& writes) {
                         putOrRemove(file);
                         for (const auto& [key, value] : writes) {
                             ::WritePrivateProfileStringA("General", key.c_str(), value.c_str(),
                                                          path_.c_str());
                         }
                         return bytes();
                     },
                 .differences = differencesOfWine()});
}

TEST_F(SettingsFormat, OursGiveTheSameAsUtf8) {
    SettingsTable tested = ofModDeklarace();
    tested.differences = differencesOfWine();
    const std::string reason = "our texts are UTF-8, the file is one of the code page";
    for (const auto& [key, value] :
         {std::pair{"Left", "\x9Elu\x9Dou\xE8k\xFD"}, std::pair{"Top", "k\xF9\xF2"}}) {
        tested.differences.push_back({"ansi", key, fromCodePage(value), reason});
    }
    expectTable(tested);
}

} // namespace
} // namespace zvonivec
