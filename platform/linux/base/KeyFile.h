#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessel {

/// Groups of keys and values, as desktop entries and association lists have them (freedesktop.org, Desktop Entry,
/// "Basic format of the file"). Lines that mean nothing, or hold a NUL, are passed over.
class KeyFile {
public:
    /// In the order of the file, escapes untouched.
    using Group = std::vector<std::pair<std::string_view, std::string_view>>;

    /// @param text outlives the object
    explicit KeyFile(std::string_view text);

    /// Empty for a group that the file does not have. Groups of one name are one.
    [[nodiscard]] const Group& group(std::string_view name) const;
    /// The raw value; the last of several counts.
    [[nodiscard]] std::optional<std::string_view> value(std::string_view group, std::string_view key) const;

    /// A value with its escapes resolved: \s, \n, \t, \r and \\.
    [[nodiscard]] static std::string text(std::string_view value);
    /// A value's parts, which ";" separates and "\;" does not; empty ones left out, escapes resolved.
    [[nodiscard]] static std::vector<std::string> list(std::string_view value);

private:
    std::map<std::string_view, Group> groups_;
};

} // namespace tessel
