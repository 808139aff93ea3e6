#include "platform/linux/files/TreeEnumeration.h"

#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/files/FileStatus.h"

#include <dirent.h>
#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <string_view>
#include <vector>

namespace tessel {

namespace {

constexpr int kOpenFolder = O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC;

struct CloseFolder {
    void operator()(DIR* stream) const { ::closedir(stream); }
};
using FolderStream = std::unique_ptr<DIR, CloseFolder>;

FolderStream streamOf(FileDescriptor folder)
{
    FolderStream stream(folder.isOpen() ? ::fdopendir(folder.get()) : nullptr);
    if (stream)
        static_cast<void>(folder.release());
    return stream;
}

class DeepEnumeration {
public:
    DeepEnumeration(const URL& root, const EntryVisitor& visit, const EntryErrorHandler& onError,
                    const std::stop_token& stop)
        : root_(root), visit_(visit), onError_(onError), stop_(stop)
    {
    }

    void run()
    {
        const FileDescriptor root(::open(root_.path().c_str(), kOpenFolder));
        if (!root.isOpen()) {
            report(root_, errno);
            return;
        }
        while (!isStopped() && !pending_.empty()) {
            const auto folder = std::move(pending_.back());
            pending_.pop_back();
            readFolder(folder, streamOf(openBelow(root.get(), folder)));
        }
    }

private:
    void readFolder(const std::string& folder, const FolderStream& stream)
    {
        const auto url = folder.empty() ? root_ : root_.appending(folder);
        if (!stream)
            return reportUnlessGone(url);
        while (!isStopped()) {
            errno = 0;
            const auto* entry = ::readdir(stream.get());
            if (!entry)
                return errno == 0 ? void() : report(url, errno);
            const std::string_view name = entry->d_name;
            if (name != "." && name != "..")
                describe(folder, url.appending(name), fileAttributesAt(::dirfd(stream.get()), entry->d_name));
        }
    }

    [[nodiscard]] bool isStopped() const { return stopped_ || stop_.stop_requested(); }

    void describe(const std::string& folder, const URL& url, const std::optional<FileAttributes>& attributes)
    {
        if (!attributes)
            return reportUnlessGone(url);
        if (attributes->kind == FileKind::Directory)
            pending_.push_back((folder.empty() ? folder : folder + '/') + std::string(url.lastPathComponent()));
        visit_(url, *attributes);
    }

    void reportUnlessGone(const URL& url)
    {
        if (errno != ENOENT)
            report(url, errno);
    }

    void report(const URL& url, int errorNumber)
    {
        if (onError_(url, errnoError(errorNumber, url)) == OnEnumerationError::Stop)
            stopped_ = true;
    }

    const URL root_;
    const EntryVisitor& visit_;
    const EntryErrorHandler& onError_;
    const std::stop_token& stop_;
    // Paths below the root of folders that are still to be read; the empty one is the root's own.
    std::vector<std::string> pending_ = {std::string()};
    bool stopped_ = false;
};

} // namespace

FileDescriptor openBelow(int root, std::string_view path)
{
    constexpr std::size_t kMaximumPart = 4000;
    FileDescriptor folder;
    int start = root;
    do {
        auto part = path.substr(0, kMaximumPart);
        if (part.size() < path.size())
            part = part.substr(0, part.rfind('/'));
        const auto name = part.empty() ? std::string(".") : std::string(part);
        folder = FileDescriptor(::openat(start, name.c_str(), kOpenFolder | O_NOFOLLOW));
        start = folder.get();
        path.remove_prefix(std::min(part.size() + 1, path.size()));
    } while (folder.isOpen() && !path.empty());
    return folder;
}

std::optional<Error> enumerateEntries(const URL& folder,
                                      const std::function<bool(const URL&, const FileAttributes&)>& visit)
{
    const auto stream = streamOf(FileDescriptor(::open(folder.path().c_str(), kOpenFolder)));
    if (!stream)
        return errnoError(errno, folder);
    std::optional<Error> failure;
    for (;;) {
        errno = 0;
        const auto* entry = ::readdir(stream.get());
        if (!entry)
            return errno == 0 ? failure : errnoError(errno, folder);
        if (entry->d_name[0] == '.')
            continue;
        const auto url = folder.appending(entry->d_name);
        const auto attributes = fileAttributesAt(::dirfd(stream.get()), entry->d_name);
        if (!attributes && errno != ENOENT)
            failure = errnoError(errno, url);
        if (attributes && !visit(url, *attributes))
            return failure;
    }
}

void enumerateTree(const URL& folder, const EntryVisitor& visit, const EntryErrorHandler& onError,
                   const std::stop_token& stop)
{
    DeepEnumeration(folder, visit, onError, stop).run();
}

} // namespace tessel
