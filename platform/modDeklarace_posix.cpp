// Operations on settings files for systems without functions for them.

#include "platform/modDeklarace.h"
#include "platform/private_profile.h"
#include "platform/whole_file.h"

#include <algorithm>
#include <optional>

namespace zvonivec::modDeklarace {

namespace {

std::optional<std::string> valueIn(const whole_file::Content& file, const std::string& section,
                                   const std::string& key) {
    using private_profile::Extent;
    return private_profile::value(file.bytes, section, key,
                                  file.isCut ? Extent::beginning : Extent::wholeFile);
}

/// Returns the file with a key set to a value, or nothing when the key would lie beyond what is
/// read of a file: every further write would add it once more.
std::optional<std::string> withValue(const whole_file::Content& file, const std::string& section,
                                     const std::string& key, const std::string& value) {
    using private_profile::Extent;
    std::string bytes = private_profile::withValue(
        file.bytes, section, key, value, file.isCut ? Extent::beginning : Extent::wholeFile);
    const whole_file::Content again{.found = whole_file::Found::file,
                                    .bytes = bytes.substr(0, whole_file::MOST_READ),
                                    .isCut = file.isCut || bytes.size() > whole_file::MOST_READ};
    if (again.isCut && !valueIn(again, section, key)) {
        return std::nullopt;
    }
    return bytes;
}

} // namespace

std::string GetPrivateProfileStringA(const std::string& section, const std::string& key,
                                     const std::string& defaultText, std::size_t size,
                                     const std::string& path) {
    const whole_file::Content file = whole_file::read(path);
    std::string text = valueIn(file, section, key).value_or(defaultText);
    text.resize(std::min(text.size(), size - std::min<std::size_t>(size, 1)));
    return text;
}

void WritePrivateProfileStringA(const std::string& section, const std::string& key,
                                const std::string& value, const std::string& path) {
    // Most values haven't changed. Nothing is written for them.
    const whole_file::Content file = whole_file::read(path);
    if (file.found == whole_file::Found::unusable || valueIn(file, section, key) == value) {
        return;
    }
    whole_file::update(
        path, [&](const whole_file::Content& old) { return withValue(old, section, key, value); });
}

} // namespace zvonivec::modDeklarace
