#include "platform/linux/files/AliasFile.h"

#include "platform/base/PercentEncoding.h"
#include "platform/linux/base/KeyFile.h"
#include "platform/linux/base/UserText.h"
#include "platform/linux/files/AtomicFile.h"

#include <optional>
#include <string>
#include <string_view>

namespace tessel {

namespace {

constexpr std::size_t kMaximumSize = 64 * 1024;

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
            userText("“%1$@” does not name a file or folder.", {userTextName(url.lastPathComponent())}),
            userText("The alias is damaged")};
}

/// The URL in an alias file, escapes resolved.
Result<std::string> readAlias(const URL& url)
{
    if (url.pathExtension() != "desktop")
        return damagedAliasError(url);
    const auto content = readSmallFile(url, kMaximumSize);
    if (!content)
        return content.error();
    const KeyFile entry(*content);
    if (entry.value("Desktop Entry", "Type") != "Link")
        return damagedAliasError(url);
    return KeyFile::text(entry.value("Desktop Entry", "URL").value_or(""));
}

} // namespace

bool isAliasFile(const URL& url)
{
    return static_cast<bool>(readAlias(url));
}

Result<URL> targetOfAliasFile(const URL& url)
{
    const auto address = readAlias(url);
    if (!address)
        return address.error();
    const auto path = pathOfFileURL(*address);
    if (!path)
        return damagedAliasError(url);
    return URL::file(*path);
}

} // namespace tessel
