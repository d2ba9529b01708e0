// The results of the comparison: medians, as a table for people and as JSON for programs.
#pragma once

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

/// Returns the middle value, or the mean of the middle two. Returns nothing when there are no
/// values.
std::optional<double> median(std::vector<double> values);

/// A kind of figure: its key in the JSON file and its row in the table.
struct Column {
    std::string_view key;
    std::string_view title;
    double scale; ///< from the stored unit to the unit of the table
    int digits;   ///< after the decimal point
};

/// Figures are stored in seconds and bytes, whatever unit the table shows.
std::span<const Column> columns();

class Report {
public:
    void add(std::string_view subject, std::string_view key, double value);
    void add(std::string_view subject, std::string_view key, std::optional<double> value);

    /// The keys that a player has figures for.
    [[nodiscard]] std::vector<std::string> keys(std::string_view subject) const;
    [[nodiscard]] std::optional<double> of(std::string_view subject, std::string_view key) const;
    /// The smallest median of these players; nothing when none has the figure.
    [[nodiscard]] std::optional<double> smallest(std::span<const std::string_view> subjects,
                                                 std::string_view key) const;

    /// Markdown, a row for each player in the order in which they first came.
    [[nodiscard]] std::string table() const;
    /// {"machine": ..., "players": {"name": {"key": {"median": ..., "all": [...]}}}}
    [[nodiscard]] std::string json(const std::string& machine) const;

private:
    std::vector<std::string> order_;
    std::map<std::string, std::map<std::string, std::vector<double>, std::less<>>, std::less<>>
        values_;
};

/// Processor, cores, memory and system, in one line.
std::string machine();

} // namespace bench
