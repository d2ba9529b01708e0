// A file in memory.
#pragma once

#include "engine/reading/file_reader.h"

#include <algorithm>
#include <memory>
#include <span>

namespace zvonivec::fuzz {

class MemoryFile final : public FileReader {
public:
    explicit MemoryFile(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    [[nodiscard]] std::uint64_t size() const override { return bytes_.size(); }
    [[nodiscard]] std::optional<std::size_t> readAt(std::uint64_t offset,
                                                    std::span<std::uint8_t> target) const override {
        if (offset >= bytes_.size()) {
            return 0;
        }
        const auto rest = bytes_.subspan(static_cast<std::size_t>(offset));
        const std::size_t count = std::min(rest.size(), target.size());
        std::copy_n(rest.begin(), count, target.begin());
        return count;
    }

private:
    std::span<const std::uint8_t> bytes_;
};

inline std::shared_ptr<const FileReader> fileOf(const std::uint8_t* data, std::size_t size) {
    return std::make_shared<const MemoryFile>(std::span(data, size));
}

} // namespace zvonivec::fuzz
