#include "platform/linux/files/AtomicFile.h"

#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/files/FileDescriptor.h"
#include "platform/linux/files/WriteAll.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace tessel {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kTemporaryPrefix = ".tsd-temporary-";
constexpr auto kLongestWrite = std::chrono::minutes(1);

// A file under a name of its own, removed again unless it was renamed into place.
class TemporarySibling {
public:
    explicit TemporarySibling(const URL& url)
        : path_(url.deletingLastPathComponent().appending(std::string(kTemporaryPrefix) + "XXXXXX").path()),
          descriptor_(::mkostemp(path_.data(), O_CLOEXEC)), exists_(descriptor_.isOpen())
    {
    }
    TemporarySibling(const TemporarySibling&) = delete;
    TemporarySibling& operator=(const TemporarySibling&) = delete;
    ~TemporarySibling()
    {
        if (exists_)
            ::unlink(path_.c_str());
    }

    [[nodiscard]] bool fill(std::string_view bytes, bool syncs)
    {
        return exists_ && writeAll(descriptor_.get(), bytes) && (!syncs || ::fsync(descriptor_.get()) == 0) &&
               ::close(descriptor_.release()) == 0;
    }

    [[nodiscard]] bool renameTo(const std::string& path)
    {
        exists_ = std::rename(path_.c_str(), path.c_str()) != 0;
        return !exists_;
    }

private:
    std::string path_;
    FileDescriptor descriptor_;
    bool exists_;
};

// Fills the buffer from a place on, up to the end of the file; none after an error.
std::optional<std::size_t> readAll(int descriptor, std::string& buffer, std::size_t length)
{
    while (length < buffer.size()) {
        const auto count = ::read(descriptor, buffer.data() + length, buffer.size() - length);
        if (count == 0)
            break;
        if (count > 0)
            length += static_cast<std::size_t>(count);
        else if (errno != EINTR)
            return std::nullopt;
    }
    return length;
}

bool syncFolder(const URL& folder)
{
    const FileDescriptor descriptor(::open(folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return descriptor.isOpen() && ::fsync(descriptor.get()) == 0;
}

std::optional<Error> writeAtomically(const URL& url, std::string_view bytes, bool syncs)
{
    int errorNumber = 0;
    {
        TemporarySibling sibling(url);
        if (!sibling.fill(bytes, syncs) || !sibling.renameTo(url.path()) ||
            (syncs && !syncFolder(url.deletingLastPathComponent())))
            errorNumber = errno;
    }
    return errorNumber == 0 ? std::nullopt : std::optional(errnoError(errorNumber, url));
}

} // namespace

std::optional<Error> writeFileAtomically(const URL& url, std::string_view bytes)
{
    return writeAtomically(url, bytes, true);
}

std::optional<Error> writeFileAtomicallyWithoutSync(const URL& url, std::string_view bytes)
{
    return writeAtomically(url, bytes, false);
}

void removeAbandonedTemporaryFiles(const URL& folder)
{
    std::error_code ended;
    for (fs::directory_iterator entry(folder.path(), ended); !ended && entry != fs::directory_iterator();
         entry.increment(ended)) {
        if (!entry->path().filename().native().starts_with(kTemporaryPrefix))
            continue;
        std::error_code ignored;
        const auto written = entry->last_write_time(ignored);
        if (!ignored && written < fs::file_time_type::clock::now() - kLongestWrite)
            ::unlink(entry->path().c_str());
    }
}

Result<std::string> readSmallFile(const URL& url, std::size_t limit)
{
    const FileDescriptor descriptor(::open(url.path().c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat status = {};
    if (!descriptor.isOpen() && errno == ENXIO) // a socket
        return errnoError(EINVAL, url);
    if (!descriptor.isOpen() || ::fstat(descriptor.get(), &status) != 0)
        return errnoError(errno, url);
    if (!S_ISREG(status.st_mode))
        return errnoError(EINVAL, url);
    // One byte more shows that the file has grown since; one more than allowed, that it is too long.
    std::string content(std::min(static_cast<std::size_t>(status.st_size), limit) + 1, '\0');
    auto length = readAll(descriptor.get(), content, 0);
    if (length == content.size() && *length <= limit) {
        content.resize(limit + 1);
        length = readAll(descriptor.get(), content, *length);
    }
    if (!length)
        return errnoError(errno, url);
    if (*length > limit)
        return errnoError(EFBIG, url);
    content.resize(*length);
    return content;
}

} // namespace tessel
