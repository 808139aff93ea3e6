#include "platform/linux/text/NameOrder.h"

#include "platform/linux/text/KeyedNames.h"

#include <algorithm>
#include <numeric>

namespace tessel {

namespace {

icu::StringPiece piece(std::string_view text)
{
    return {text.data(), static_cast<std::int32_t>(text.size())};
}

std::size_t bytesOf(std::span<const std::string_view> names)
{
    return std::accumulate(names.begin(), names.end(), std::size_t{0},
                           [](std::size_t sum, std::string_view name) { return sum + name.size(); });
}

} // namespace

void NameOrder::open() const
{
    std::call_once(opened_, [this] {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(icu::Locale(locale_.c_str()), status));
        if (U_SUCCESS(status))
            collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
        if (U_FAILURE(status))
            return;
        asciiKeys_ = AsciiNameKeys::copiedFrom(*collator);
        collator_ = std::move(collator);
    });
}

std::strong_ordering NameOrder::compare(std::string_view left, std::string_view right) const
{
    open();
    UErrorCode status = U_ZERO_ERROR;
    const auto order = collator_ ? collator_->compareUTF8(piece(left), piece(right), status) : UCOL_EQUAL;
    if (U_FAILURE(status) || order == UCOL_EQUAL)
        return left <=> right;
    return order == UCOL_LESS ? std::strong_ordering::less : std::strong_ordering::greater;
}

std::vector<std::uint32_t> NameOrder::firstOf(std::span<const std::string_view> names, std::size_t count) const
{
    open();
    count = std::min(count, names.size());
    KeyedNames ascii(names), others(names);
    // A key is a little longer than its name: its digits' counts, its cases. Pages that stay untouched cost nothing.
    ascii.reserve(names.size(), bytesOf(names) * 5 / 4 + 2 * names.size());
    for (std::uint32_t i = 0; i < names.size(); ++i) {
        if (asciiKeys_ && isAscii(names[i]))
            ascii.add(i, [&](std::string& keys) { asciiKeys_->append(names[i], keys); });
        else
            others.add(i, [&](std::string& keys) { appendKey(names[i], keys); });
    }
    return merged(names, std::move(ascii).takeFirst(count), std::move(others).takeFirst(count), count);
}

void NameOrder::appendKey(std::string_view name, std::string& keys) const
{
    if (!collator_)
        return;
    const auto text = icu::UnicodeString::fromUTF8(piece(name));
    std::array<std::uint8_t, 512> buffer;
    const auto size = static_cast<std::int32_t>(buffer.size());
    const auto length = collator_->getSortKey(text, buffer.data(), size);
    const auto offset = keys.size();
    keys.resize(offset + static_cast<std::size_t>(length));
    auto* const key = reinterpret_cast<std::uint8_t*>(keys.data() + offset);
    if (length <= size)
        std::copy_n(buffer.begin(), length, key);
    else
        collator_->getSortKey(text, key, length);
}

std::vector<std::uint32_t> NameOrder::merged(std::span<const std::string_view> names, std::vector<std::uint32_t> many,
                                             const std::vector<std::uint32_t>& few, std::size_t count) const
{
    if (few.empty())
        return many;
    std::vector<std::uint32_t> result;
    result.reserve(many.size() + few.size());
    auto rest = many.cbegin();
    for (const auto name : few) {
        const auto precedes = [&](std::uint32_t other) { return compare(names[other], names[name]) < 0; };
        std::ptrdiff_t step = 1;
        while (step < many.cend() - rest && precedes(rest[step]))
            step *= 2;
        const auto end = std::partition_point(rest + step / 2, rest + std::min(step, many.cend() - rest), precedes);
        result.insert(result.end(), rest, end);
        result.push_back(name);
        rest = end;
        if (result.size() >= count)
            break;
    }
    result.insert(result.end(), rest, many.cend());
    result.resize(count);
    return result;
}

} // namespace tessel
