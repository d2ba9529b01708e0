// Pictures among the program's resources, and lists of them.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace zvonivec {

struct PictureData;

/// A picture, or none. Copies share it.
class Picture {
public:
    Picture() = default;
    /// Name of a file in the skin; no picture when there is none of that name.
    explicit Picture(std::string_view name);

    [[nodiscard]] explicit operator bool() const { return data_ != nullptr; }
    /// The very same picture.
    friend bool operator==(const Picture&, const Picture&) = default;

    /// Logical pixels, 0 without a picture.
    [[nodiscard]] int width() const;
    [[nodiscard]] int height() const;

private:
    friend const PictureData* dataOf(const Picture& picture);
    std::shared_ptr<const PictureData> data_;
};

/// Pictures that the program knows by number.
class ImageList {
public:
    /// Gives the picture the next number.
    void add(const Picture& picture) { pictures_.push_back(picture); }

    /// The picture of a number from 1 on; no picture for any other number.
    [[nodiscard]] Picture ListImage(std::size_t number) const;

private:
    std::vector<Picture> pictures_;
};

} // namespace zvonivec
