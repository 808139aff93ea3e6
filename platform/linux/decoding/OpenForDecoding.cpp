#include "platform/linux/decoding/OpenForDecoding.h"

#include "platform/linux/files/Uninterrupted.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string_view>

namespace tessel {

OpenedFile openForDecoding(const URL& url)
{
    FileDescriptor file(
        uninterrupted([&] { return ::open(url.path().c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
    if (!file.isOpen())
        return {{}, errno == ENOENT || errno == ENOTDIR ? ContentProblem::Gone : ContentProblem::NotReadable};
    struct stat status = {};
    if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return {{}, ContentProblem::NotReadable};
    if (status.st_size == 0)
        return {{}, ContentProblem::Empty};
    return {std::move(file), std::nullopt};
}

bool beginsLikeText(const FileDescriptor& file)
{
    std::array<char, 8192> bytes;
    const auto count = uninterrupted([&] { return ::pread(file.get(), bytes.data(), bytes.size(), 0); });
    if (count < 0)
        return false;
    const std::string_view head(bytes.data(), static_cast<std::size_t>(count));
    return head.find('\0') == std::string_view::npos && !head.starts_with("%PDF-");
}

} // namespace tessel
