// Operations on settings files for systems without functions for them.

#include "platform/modDeklarace.h"
#include "platform/private_profile.h"
#include "platform/whole_file.h"

#include <algorithm>

namespace zvonivec::modDeklarace {

std::string GetPrivateProfileStringA(const std::string& section, const std::string& key,
                                     const std::string& defaultText, std::size_t size,
                                     const std::string& path) {
    const whole_file::Content file = whole_file::read(path);
    std::string text = private_profile::value(file.bytes, section, key).value_or(defaultText);
    text.resize(std::min(text.size(), size - std::min<std::size_t>(size, 1)));
    return text;
}

void WritePrivateProfileStringA(const std::string& section, const std::string& key,
                                const std::string& value, const std::string& path) {
    // Most values haven't changed. Nothing is written for them.
    const whole_file::Content file = whole_file::read(path);
    if (file.found == whole_file::Found::unusable ||
        private_profile::value(file.bytes, section, key) == value) {
        return;
    }
    whole_file::update(path, [&](const std::string& bytes) {
        return private_profile::withValue(bytes, section, key, value);
    });
}

} // namespace zvonivec::modDeklarace
