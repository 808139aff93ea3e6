#include "tests/stress/Content.h"

#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/files/FileDescriptor.h"
#include "platform/linux/files/Uninterrupted.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <cinttypes>
#include <cstdint>
#include <cstdio>

namespace tessel {

namespace {

constexpr std::string_view kTitle = "stress";

std::uint64_t hashOf(std::string_view text)
{
    std::uint64_t hash = 0xcbf29ce484222325U; // FNV-1a (Fowler, Noll and Vo)
    for (const char character : text)
        hash = (hash ^ static_cast<unsigned char>(character)) * 0x100000001b3U;
    return hash;
}

std::string bodyOf(const std::string& identifier, std::size_t length)
{
    std::string body(length, '\0');
    auto state = hashOf(identifier) | 1U;
    for (auto& character : body) {
        state ^= state << 13U; // xorshift (Marsaglia 2003)
        state ^= state >> 7U;
        state ^= state << 17U;
        character = static_cast<char>('a' + state % 26U);
    }
    return body;
}

std::string headOf(std::string_view identifier, std::string_view body)
{
    std::array<char, 64> numbers{};
    std::snprintf(numbers.data(), numbers.size(), " %zu %016" PRIx64 "\n", body.size(), hashOf(body));
    return std::string(kTitle) + ' ' + std::string(identifier) + numbers.data();
}

} // namespace

std::string makeContent(const std::string& identifier, std::size_t length)
{
    const auto body = bodyOf(identifier, length);
    return headOf(identifier, body) + body;
}

std::optional<std::string> contentIdentifier(std::string_view bytes)
{
    const auto head = bytes.substr(0, bytes.find('\n') + 1);
    const auto first = head.find(' ');
    const auto second = first == std::string_view::npos ? first : head.find(' ', first + 1);
    if (second == std::string_view::npos)
        return std::nullopt;
    const auto identifier = head.substr(first + 1, second - first - 1);
    if (headOf(identifier, bytes.substr(head.size())) != head)
        return std::nullopt;
    return std::string(identifier);
}

Reading readContent(const URL& file)
{
    const FileDescriptor descriptor(
        uninterrupted([&] { return ::open(file.path().c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC); }));
    if (!descriptor.isOpen())
        return {};
    std::string bytes;
    std::array<char, 65536> block{};
    while (true) {
        const auto length = uninterrupted([&] { return ::read(descriptor.get(), block.data(), block.size()); });
        if (length < 0)
            return {};
        if (length == 0)
            return {true, contentIdentifier(bytes)};
        bytes.append(block.data(), static_cast<std::size_t>(length));
    }
}

Reading readDocument(const URL& document, const URL& store)
{
    if (auto reading = readContent(document); reading.isThere)
        return reading;
    const auto record = readPlaceholder(placeholderURL(document));
    return record ? readContent(store.appending(record->identifier)) : Reading{};
}

} // namespace tessel
