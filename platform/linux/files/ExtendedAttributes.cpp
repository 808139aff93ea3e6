#include "platform/linux/files/ExtendedAttributes.h"

#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/files/Uninterrupted.h"

#include <sys/xattr.h>

#include <array>
#include <cerrno>

namespace tessel {

namespace {

// The kernel's own limit (XATTR_SIZE_MAX).
constexpr std::size_t kMaximumSize = 64 * 1024;

} // namespace

Result<std::optional<std::string>> extendedAttribute(const URL& url, const char* name)
{
    std::array<char, 512> usual;
    auto size = uninterrupted([&] { return ::lgetxattr(url.path().c_str(), name, usual.data(), usual.size()); });
    if (size >= 0)
        return std::optional(std::string(usual.data(), static_cast<std::size_t>(size)));
    if (errno == ENODATA || errno == ENOTSUP)
        return std::optional<std::string>();
    if (errno != ERANGE)
        return errnoError(errno, url);
    std::string large(kMaximumSize, '\0');
    size = uninterrupted([&] { return ::lgetxattr(url.path().c_str(), name, large.data(), large.size()); });
    if (size < 0)
        return errnoError(errno, url);
    large.resize(static_cast<std::size_t>(size));
    return std::optional(std::move(large));
}

std::optional<Error> setExtendedAttribute(const URL& url, const char* name, std::string_view value)
{
    if (uninterrupted([&] { return ::lsetxattr(url.path().c_str(), name, value.data(), value.size(), 0); }) == 0)
        return std::nullopt;
    return errnoError(errno, url);
}

} // namespace tessel
