#include "skin/drawing/ico_writer.h"

#include "skin/drawing/png_writer.h"

#include <cstdint>

namespace zvonivec::skin {

namespace {

void append(std::string& out, std::uint32_t value, unsigned bytes) {
    for (unsigned i = 0; i < bytes; ++i) {
        out += static_cast<char>(static_cast<unsigned char>((value >> (8U * i)) & 255U));
    }
}

} // namespace

std::optional<std::string> icoBytes(const std::vector<Picture>& pictures) {
    constexpr std::uint32_t icon = 1;
    constexpr std::size_t headSize = 6;
    constexpr std::size_t entrySize = 16;
    std::string head;
    append(head, 0, 2);
    append(head, icon, 2);
    append(head, static_cast<std::uint32_t>(pictures.size()), 2);
    std::string body;
    for (const Picture& picture : pictures) {
        const std::optional<std::string> png = pngBytes(picture);
        if (!png) {
            return std::nullopt;
        }
        append(head, static_cast<std::uint32_t>(picture.width()) & 255U, 1); // 0 stands for 256
        append(head, static_cast<std::uint32_t>(picture.height()) & 255U, 1);
        append(head, 0, 2);  // colours of a palette: none
        append(head, 1, 2);  // planes
        append(head, 32, 2); // bits of a pixel
        append(head, static_cast<std::uint32_t>(png->size()), 4);
        append(head,
               static_cast<std::uint32_t>(headSize + entrySize * pictures.size() + body.size()), 4);
        body += *png;
    }
    return head + body;
}

} // namespace zvonivec::skin
