#include "platform/linux/files/PosixFileManager.h"

#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/files/AliasFile.h"
#include "platform/linux/files/FileStatus.h"
#include "platform/linux/files/LinkText.h"
#include "platform/linux/files/TreeEnumeration.h"

#include <fcntl.h>

#include <cerrno>
#include <deque>

namespace tessel {

namespace {

// As many links as the kernel follows in one path (MAXSYMLINKS).
constexpr int kMaximumLinks = 40;

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

std::optional<Error> PosixFileManager::enumerateShallow(
    const URL& folder, const std::function<bool(const URL&, const FileAttributes&)>& visit) const
{
    return enumerateEntries(folder, visit);
}

void PosixFileManager::enumerateDeep(const URL& folder, const EntryVisitor& visit,
                                     const EntryErrorHandler& onError) const
{
    enumerateTree(folder, visit, onError);
}

} // namespace tessel
