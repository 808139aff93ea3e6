#include "platform/linux/files/PosixFileManager.h"

#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/files/AliasFile.h"
#include "platform/linux/files/FileStatus.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <deque>

namespace tessel {

namespace {

// As many links as the kernel follows in one path (MAXSYMLINKS).
constexpr int kMaximumLinks = 40;

// The text of a link, whatever its length; none with errno set when the path is no link.
std::optional<std::string> linkText(const std::string& path)
{
    std::string text(256, '\0');
    while (true) {
        const auto length = ::readlink(path.c_str(), text.data(), text.size());
        if (length < 0)
            return std::nullopt;
        if (static_cast<std::size_t>(length) < text.size()) {
            text.resize(static_cast<std::size_t>(length));
            return text;
        }
        text.resize(text.size() * 2);
    }
}

// Follows the links of a path one component at a time, so that what does not exist yet can stand behind them.
class LinkResolver {
public:
    explicit LinkResolver(const URL& url) { prepend(url); }

    // None when the links lead in a circle.
    std::optional<URL> resolve()
    {
        while (!pending_.empty()) {
            const auto component = std::move(pending_.front());
            pending_.pop_front();
            if (!step(component))
                return std::nullopt;
        }
        return resolved_;
    }

private:
    bool step(const std::string& component)
    {
        if (component == "..") {
            resolved_ = resolved_.deletingLastPathComponent();
            return true;
        }
        const auto next = resolved_.appending(component);
        const auto text = linkText(next.path());
        if (!text) {
            resolved_ = next;
            return true;
        }
        prepend(URL::file(*text));
        return ++linksFollowed_ <= kMaximumLinks;
    }

    void prepend(const URL& path)
    {
        auto components = path.pathComponents();
        if (path.path().starts_with('/')) {
            resolved_ = URL::file("/");
            components.erase(components.begin());
        }
        pending_.insert(pending_.begin(), components.begin(), components.end());
    }

    URL resolved_ = URL::file("/");
    std::deque<std::string> pending_;
    int linksFollowed_ = 0;
};

} // namespace

Result<FileAttributes> PosixFileManager::attributes(const std::string& path) const
{
    if (const auto attributes = fileAttributesAt(AT_FDCWD, path.c_str()))
        return *attributes;
    return errnoError(errno, URL::file(path));
}

Result<std::string> PosixFileManager::destinationOfSymbolicLink(const URL& url) const
{
    if (auto text = linkText(url.path()))
        return *std::move(text);
    return errnoError(errno, url);
}

URL PosixFileManager::resolvingSymbolicLinks(const URL& url) const
{
    if (!url.path().starts_with('/'))
        return url;
    return LinkResolver(url).resolve().value_or(url);
}

Result<URL> PosixFileManager::resolvingAliasFile(const URL& url) const
{
    const auto target = targetOfAliasFile(url);
    if (!target)
        return target.error();
    const auto found = attributes(target->path());
    if (found || attributes(placeholderURL(*target).path()))
        return *target;
    return found.error();
}

} // namespace tessel
