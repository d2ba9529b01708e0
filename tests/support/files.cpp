// Files and waiting, for tests on every system. Paths are UTF-8.
#include "tests/support/process.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <thread>

namespace support {

using namespace std::chrono_literals;

namespace {

std::filesystem::path pathOf(const std::string& utf8) {
    return std::u8string(utf8.begin(), utf8.end());
}

} // namespace

bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(3ms);
    }
    return true;
}

TemporaryFolder::TemporaryFolder() {
    std::error_code error;
    const std::filesystem::path parent = std::filesystem::temp_directory_path(error);
    std::random_device random;
    for (int attempt = 0; attempt < 100 && path_.empty(); ++attempt) {
        const auto folder = parent / ("zvonivec-test-" + std::to_string(random()));
        if (std::filesystem::create_directory(folder, error)) {
            // Some servers refuse a folder that other users may read.
            std::filesystem::permissions(folder, std::filesystem::perms::owner_all, error);
            const std::u8string name = folder.u8string();
            path_.assign(name.begin(), name.end());
        }
    }
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    if (!path_.empty()) {
        std::filesystem::remove_all(pathOf(path_), ignored);
    }
}

std::string readFile(const std::string& path) {
    std::ifstream stream(pathOf(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void writeFile(const std::string& path, const std::string& bytes) {
    std::ofstream(pathOf(path), std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

} // namespace support
