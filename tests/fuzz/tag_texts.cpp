// The texts of tags: alphabets, genres and tidying.
#include "engine/tags/alphabet.h"
#include "engine/tags/genres.h"
#include "engine/tags/tag_text.h"

#include <array>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::array texts{bytes.substr(0, size / 2), bytes.substr(size / 2)};
    for (const std::string_view text : texts) {
        const std::string utf8 = zvonivec::decode(text, zvonivec::alphabetOf(texts));
        static_cast<void>(zvonivec::tidyText(utf8));
        std::vector<std::string> names;
        zvonivec::addGenres(names, utf8);
    }
    return 0;
}
