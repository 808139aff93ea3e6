#pragma once

#include <string>
#include <string_view>

namespace tessel {

/// The content of a regular file of the MIME database; empty when it is missing, unreadable or larger than 16 MiB.
[[nodiscard]] std::string readDatabaseFile(const std::string& path);

/// Takes the part before the next separator off the front of `text`; all of it when there is none.
inline std::string_view nextField(std::string_view& text, char separator)
{
    const auto end = text.find(separator);
    const auto field = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return field;
}

/// Calls visit(line) for each line that says something; lines above 4 KiB are no database's.
template <typename Visit>
void forEachLine(std::string_view text, Visit&& visit)
{
    constexpr std::size_t kLongestLine = 4096;
    while (!text.empty())
        if (const auto line = nextField(text, '\n');
            !line.empty() && line.front() != '#' && line.size() <= kLongestLine)
            visit(line);
}

} // namespace tessel
