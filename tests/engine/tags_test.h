// Files with tags, written byte by byte.
#pragma once

#include "engine/tags/tags.h"

#include "tests/support/mp3_samples.h"
#include "tests/support/process.h"
#include "tests/support/processor_time.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <string>

namespace zvonivec {

using support::id3v1;
using support::id3v2;

inline const std::string FRAMES = support::repeated(support::frameBytes({}), 20);
inline const std::string HORSE = "Příliš žluťoučký kůň";
inline const std::string HORSE1250 = "P\xF8\xEDli\x9A \x9Elu\x9Dou\xE8k\xFD k\xF9\xF2";
inline const std::string LATIN1(1, '\0');
inline const std::string LANGUAGE_ENGLISH("\0eng\0", 5);
inline const std::string UTF16("\1", 1);
inline const std::string UTF8("\3", 1);

inline std::string utf16Of(const std::u16string& text) {
    std::string bytes = "\xFF\xFE";
    for (const char16_t unit : text) {
        bytes += support::littleEndian(unit, 2);
    }
    return bytes;
}

/// Most memory that the process has had, in bytes, since the last call with reset.
inline std::size_t peakMemory(bool reset) {
    if (reset) {
        support::writeFile("/proc/self/clear_refs", "5");
    }
    const std::string status = support::readFile("/proc/self/status");
    const std::size_t at = status.find("VmHWM:");
    return at == std::string::npos ? 0 : std::stoul(status.substr(at + 6)) * 1024;
}

class Tags : public testing::Test {
protected:
    TrackTags tagsOf(const std::string& content) {
        support::writeFile(folder.file("file"), content);
        return readTags(FileReader::open(folder.file("file")));
    }
    support::TemporaryFolder folder;
};

} // namespace zvonivec
