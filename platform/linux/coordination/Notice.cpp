#include "platform/linux/coordination/Notice.h"

namespace tessel {

namespace {

constexpr char kFirstKind = 'a';

} // namespace

std::string encoded(const Notice& notice)
{
    std::string text(1, static_cast<char>(kFirstKind + static_cast<int>(notice.kind)));
    text.append(notice.path).push_back('\0'); // no path holds one
    return text.append(notice.to);
}

std::optional<Notice> decodedNotice(std::string_view text)
{
    const auto end = text.find('\0');
    if (text.size() < 2 || end == std::string_view::npos || text[1] != '/')
        return std::nullopt;
    const int kind = text[0] - kFirstKind;
    if (kind < 0 || kind > static_cast<int>(Notice::Kind::Changed))
        return std::nullopt;
    return Notice{static_cast<Notice::Kind>(kind), std::string(text.substr(1, end - 1)),
                  std::string(text.substr(end + 1))};
}

} // namespace tessel
