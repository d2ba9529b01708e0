// A table of settings files, with the results of the functions of the system from which the format
// comes, and the fixture of tests with a file.
#pragma once

#include "platform/modDeklarace.h"
#include "tests/support/process.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

namespace zvonivec {

/// The functions that are compared with the table.
struct SettingsTable {
    using Writes = std::vector<std::pair<std::string, std::string>>;

    /// Returns the value of a key in [General] of a file with these bytes, or "DEF".
    std::function<std::string(const std::string& file, const std::string& key)> read;
    /// Returns the bytes of the file after some keys were set in [General]. A missing file is
    /// empty.
    std::function<std::string(const std::string& file, const Writes& writes)> written;

    /// A case in which another result is right.
    struct Difference {
        std::string name;
        std::string key; ///< of a case of reading
        std::string result;
        std::string reason;
    };
    std::vector<Difference> differences;
};

/// Goes through the table; every difference must be one.
void expectTable(const SettingsTable& tested);

class SettingsFormat : public testing::Test {
protected:
    static constexpr std::size_t BUFFER_SIZE = 33001;

    [[nodiscard]] std::string read(const std::string& key) const {
        return modDeklarace::GetPrivateProfileStringA("General", key, "DEF", BUFFER_SIZE, path_);
    }
    void write(const std::string& key, const std::string& value) const {
        modDeklarace::WritePrivateProfileStringA("General", key, value, path_);
    }
    void put(const std::string& bytes) const { support::writeFile(path_, bytes); }
    [[nodiscard]] std::string bytes() const { return support::readFile(path_); }
    /// Writes the file of a case, or none when it is empty.
    void putOrRemove(const std::string& bytes) const;
    /// modDeklarace's functions, with this file.
    [[nodiscard]] SettingsTable ofModDeklarace() const;

    support::TemporaryFolder folder_;
    std::string path_ = folder_.file("MP3.ini");
};

} // namespace zvonivec
