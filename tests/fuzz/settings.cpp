// The settings file, whole and cut: a value that is written is read again, and the other stays.
#include "platform/private_profile.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using zvonivec::private_profile::Extent;
    const std::string_view file(reinterpret_cast<const char*>(data), size);
    for (const Extent extent : {Extent::wholeFile, Extent::beginning}) {
        const auto read = [extent](std::string_view bytes, const char* key) {
            return zvonivec::private_profile::value(bytes, "General", key, extent);
        };
        std::string written =
            zvonivec::private_profile::withValue(file, "General", "Left", "4807.5", extent);
        if (extent == Extent::beginning) {
            written += "x\r\n"; // what follows; a line end at the very end may be cut in two
        }
        const auto before = read(file, "Top");
        const auto after = read(written, "Top");
        // In a beginning without any section, a new section takes in the lines that are there.
        const bool mayAppear = extent == Extent::beginning && !before;
        if (read(written, "Left") != "4807.5" || (after != before && !mayAppear)) {
            std::abort();
        }
    }
    return 0;
}
