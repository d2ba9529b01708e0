// What the functions of the system that the format comes from make of settings files: a table, and
// the fixture of tests with a file.
#pragma once

#include "platform/modDeklarace.h"
#include "tests/support/process.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

namespace zvonivec {

/// What is held against the table.
struct SettingsTable {
    using Writes = std::vector<std::pair<std::string, std::string>>;

    /// The value of a key in [General] of a file of these bytes, "DEF" where there is none.
    std::function<std::string(const std::string& file, const std::string& key)> read;
    /// The file's bytes after some keys were set in [General]. A file that isn't there is empty.
    std::function<std::string(const std::string& file, const Writes& writes)> written;

    /// A case in which something else is right.
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

    std::string read(const std::string& key) const {
        return modDeklarace::GetPrivateProfileStringA("General", key, "DEF", BUFFER_SIZE, path_);
    }
    void write(const std::string& key, const std::string& value) const {
        modDeklarace::WritePrivateProfileStringA("General", key, value, path_);
    }
    void put(const std::string& bytes) const { support::writeFile(path_, bytes); }
    std::string bytes() const { return support::readFile(path_); }
    /// Puts the file there for the table; none when it is empty.
    void putOrRemove(const std::string& bytes) const;
    /// modDeklarace's functions, with this file.
    [[nodiscard]] SettingsTable ofModDeklarace() const;

    support::TemporaryFolder folder_;
    std::string path_ = folder_.file("MP3.ini");
};

} // namespace zvonivec
