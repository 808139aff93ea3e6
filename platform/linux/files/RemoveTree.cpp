#include "platform/linux/files/RemoveTree.h"

#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/files/TreeEnumeration.h"
#include "platform/linux/files/Uninterrupted.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

namespace {

constexpr int kRounds = 3;
constexpr std::size_t kLongestPath = 4000; // a little less than the kernel's PATH_MAX

class TreeRemoval {
public:
    TreeRemoval(const URL& root, Protection protection, const URL& named)
        : root_(root), protection_(protection), named_(named)
    {
    }

    std::optional<Error> run()
    {
        if (removedRoot())
            return std::nullopt;
        if (errno != ENOTEMPTY && errno != EEXIST)
            return errnoError(errno, named_);
        for (int round = 0; round < kRounds; ++round) {
            failure_.reset();
            findContent();
            if (failure_ && round == 0)
                return failure_;
            removeContent();
            if (removedRoot())
                return std::nullopt;
            if (!failure_)
                fail();
        }
        return failure_;
    }

    std::optional<Error> check()
    {
        findContent();
        return failure_;
    }

private:
    struct Entry {
        std::string path; ///< below the root
        bool isFolder = false;
    };

    bool removedRoot()
    {
        return removed(AT_FDCWD, root_.path(), false) || (errno == EISDIR && removed(AT_FDCWD, root_.path(), true));
    }

    void findContent()
    {
        entries_.clear();
        checkFolder(root_);
        const auto prefix = root_.path().size() + 1;
        enumerateTree(
            root_,
            [&](const URL& url, const FileAttributes& attributes) {
                const bool isFolder = attributes.kind == FileKind::Directory;
                entries_.push_back({url.path().substr(prefix), isFolder});
                if (isFolder)
                    checkFolder(url);
            },
            [&](const URL&, const Error& error) {
                failure_ = errorNaming(named_, error);
                return OnEnumerationError::Continue;
            });
    }

    // Whether items can be taken out of it.
    void checkFolder(const URL& folder)
    {
        const auto* path = folder.path().c_str();
        if (folder.path().size() > kLongestPath || ::faccessat(AT_FDCWD, path, R_OK | W_OK | X_OK, AT_EACCESS) == 0)
            return;
        if (protection_ == Protection::Respect || ::chmod(path, 0700) != 0)
            fail();
    }

    // In the order opposite to the enumeration's, in which folders come before what is in them.
    void removeContent()
    {
        const FileDescriptor root(::open(root_.path().c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        for (auto entry = entries_.rbegin(); entry != entries_.rend(); ++entry)
            if (!removedBelow(root.get(), *entry))
                fail();
    }

    static bool removedBelow(int root, const Entry& entry)
    {
        if (entry.path.size() < kLongestPath)
            return removed(root, entry.path, entry.isFolder);
        const auto slash = entry.path.rfind('/');
        const auto folder = openBelow(root, std::string_view(entry.path).substr(0, slash));
        return folder.isOpen() && removed(folder.get(), entry.path.substr(slash + 1), entry.isFolder);
    }

    static bool removed(int folder, const std::string& path, bool isFolder)
    {
        return uninterrupted([&] { return ::unlinkat(folder, path.c_str(), isFolder ? AT_REMOVEDIR : 0); }) == 0 ||
               errno == ENOENT;
    }

    void fail() { failure_ = errnoError(errno, named_); }

    const URL root_;
    const Protection protection_;
    const URL named_;
    std::vector<Entry> entries_;
    std::optional<Error> failure_;
};

} // namespace

std::optional<Error> removeTree(const URL& url, Protection protection, const URL& named)
{
    return TreeRemoval(url, protection, named).run();
}

std::optional<Error> checkFolderCanBeRemoved(const URL& folder, const URL& named)
{
    return TreeRemoval(folder, Protection::Respect, named).check();
}

} // namespace tessel
