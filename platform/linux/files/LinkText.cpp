#include "platform/linux/files/LinkText.h"

#include <unistd.h>

#include <cstddef>

namespace tessel {

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

} // namespace tessel
