#include "platform/linux/files/AliasFile.h"

#include "platform/linux/files/AtomicFile.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string>
#include <string_view>

namespace tessel {

namespace {

constexpr std::size_t kMaximumSize = 64 * 1024;

struct DesktopEntry {
    std::string type;
    std::string url;
};

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view kBlanks = " \t\r";
    const auto first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// The two values that matter here, of the entry's main group only: actions have groups of their own.
DesktopEntry parsedDesktopEntry(std::string_view content)
{
    DesktopEntry entry;
    bool inMainGroup = false;
    while (!content.empty()) {
        const auto end = std::min(content.find('\n'), content.size());
        const auto line = trimmed(content.substr(0, end));
        content.remove_prefix(std::min(end + 1, content.size()));
        const auto equals = line.find('=');
        if (line.starts_with('['))
            inMainGroup = line == "[Desktop Entry]";
        else if (inMainGroup && equals != std::string_view::npos) {
            const auto key = trimmed(line.substr(0, equals));
            if (key == "Type")
                entry.type = trimmed(line.substr(equals + 1));
            else if (key == "URL")
                entry.url = trimmed(line.substr(equals + 1));
        }
    }
    return entry;
}

std::optional<std::string> percentDecoded(std::string_view text)
{
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            result.push_back(text[i]);
            continue;
        }
        const auto digits = text.substr(i + 1, 2);
        unsigned byte = 0;
        const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
        if (digits.size() != 2 || parsed.ptr != digits.data() + 2)
            return std::nullopt;
        result.push_back(static_cast<char>(byte));
        i += 2;
    }
    return result;
}

// The path of "file:///a%20b" or "file://localhost/a%20b". A NUL would end the path early for the kernel: refused.
std::optional<std::string> pathOfFileURL(std::string_view url)
{
    for (const std::string_view prefix : {"file://localhost/", "file:///"}) {
        if (!url.starts_with(prefix))
            continue;
        auto path = percentDecoded(url.substr(prefix.size() - 1));
        if (path && path->find('\0') == std::string::npos)
            return path;
    }
    return std::nullopt;
}

Error damagedAliasError(const URL& url)
{
    return {Domain::General, ErrorCode::kReadCorrupt,
            "“" + std::string(url.lastPathComponent()) + "” does not name a file or folder.", "The alias is damaged"};
}

Result<DesktopEntry> readAlias(const URL& url)
{
    if (url.pathExtension() != "desktop")
        return damagedAliasError(url);
    const auto content = readSmallFile(url, kMaximumSize);
    if (!content)
        return content.error();
    auto entry = parsedDesktopEntry(*content);
    if (entry.type != "Link")
        return damagedAliasError(url);
    return entry;
}

} // namespace

bool isAliasFile(const URL& url)
{
    return static_cast<bool>(readAlias(url));
}

Result<URL> targetOfAliasFile(const URL& url)
{
    const auto entry = readAlias(url);
    if (!entry)
        return entry.error();
    const auto path = pathOfFileURL(entry->url);
    if (!path)
        return damagedAliasError(url);
    return URL::file(*path);
}

} // namespace tessel
