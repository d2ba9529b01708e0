// The texts of numbers. Digits that are written are read as the same number.
#include "settings/number_text.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    static_cast<void>(zvonivec::toInteger(text));
    static_cast<void>(zvonivec::toLong(text));
    const auto number = zvonivec::toSingle(text);
    if (number && zvonivec::toSingle(zvonivec::numberText(*number, ',')) != number) {
        std::abort();
    }
    return 0;
}
