// A settings file in a folder of its own.
#pragma once

#include "platform/modDeklarace.h"
#include "tests/support/process.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace zvonivec {

namespace fs = std::filesystem;

class SettingsFile : public testing::Test {
protected:
    [[nodiscard]] std::string read(const std::string& key) const {
        return modDeklarace::GetPrivateProfileStringA("General", key, "DEF", 33001, path_);
    }
    void write(const std::string& key, const std::string& value) const {
        modDeklarace::WritePrivateProfileStringA("General", key, value, path_);
    }
    /// Returns the names of everything in the folder, sorted.
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (const auto& entry : fs::directory_iterator(folder_.path())) {
            all.push_back(entry.path().filename().string());
        }
        std::ranges::sort(all);
        return all;
    }
    using Names = std::vector<std::string>;

    support::TemporaryFolder folder_;
    std::string path_ = folder_.file("MP3.ini");
};

/// Runs a function in a child process and returns its result.
inline int inChild(const std::function<int()>& function) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(function());
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

} // namespace zvonivec
