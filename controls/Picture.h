// Pictures of the skin, and numbered lists of them.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace zvonivec {

struct PictureData;

/// A picture, or no picture. Copies share the data.
class Picture {
public:
    Picture() = default;
    /// Loads a picture by its file name in the skin. No picture when there is no such file.
    explicit Picture(std::string_view name);

    [[nodiscard]] explicit operator bool() const { return data_ != nullptr; }
    /// Whether both are the same picture, not only equal ones.
    friend bool operator==(const Picture&, const Picture&) = default;

    /// Logical pixels, or 0 without a picture.
    [[nodiscard]] int width() const;
    [[nodiscard]] int height() const;

private:
    friend const PictureData* dataOf(const Picture& picture);
    std::shared_ptr<const PictureData> data_;
};

/// Pictures by number.
class ImageList {
public:
    /// Adds a picture with the next number.
    void add(const Picture& picture) { pictures_.push_back(picture); }

    /// Returns the picture with a number from 1 on, or no picture for any other number.
    [[nodiscard]] Picture ListImage(std::size_t number) const;

private:
    std::vector<Picture> pictures_;
};

} // namespace zvonivec
