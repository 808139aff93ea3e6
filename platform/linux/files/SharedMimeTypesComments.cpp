#include "platform/linux/files/SharedMimeTypesComments.h"

#include <array>
#include <utility>

namespace tessel {

namespace {

/// The text between two marks, searched from `position`, which moves behind the second one.
std::optional<std::string_view> between(std::string_view text, std::string_view begin, std::string_view end,
                                        std::size_t& position)
{
    const auto start = text.find(begin, position);
    if (start == std::string_view::npos)
        return std::nullopt;
    const auto stop = text.find(end, start + begin.size());
    if (stop == std::string_view::npos)
        return std::nullopt;
    position = stop + end.size();
    return text.substr(start + begin.size(), stop - start - begin.size());
}

/// The database's writer leaves these five only.
std::string unescaped(std::string_view xml)
{
    constexpr std::array<std::pair<std::string_view, char>, 5> kEntities = {
        {{"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}}};
    std::string text;
    while (!xml.empty()) {
        char character = xml.front();
        std::size_t length = 1;
        for (const auto& [entity, meaning] : kEntities)
            if (xml.starts_with(entity)) {
                character = meaning;
                length = entity.size();
            }
        text += character;
        xml.remove_prefix(length);
    }
    return text;
}

/// How well a comment's language fits; higher is better, 0 not at all.
int fitness(std::string_view language, std::string_view locale)
{
    if (language.empty())
        return 1;
    if (language == locale)
        return 3;
    return language == locale.substr(0, locale.find('_')) ? 2 : 0;
}

} // namespace

std::optional<std::string> bestComment(std::string_view xml, std::string_view locale)
{
    std::optional<std::string_view> best;
    int bestFitness = 0;
    std::size_t position = 0;
    while (const auto comment = between(xml, "<comment", "</comment>", position)) {
        const auto body = comment->find('>');
        if (body == std::string_view::npos)
            continue;
        std::size_t start = 0;
        const auto language = between(comment->substr(0, body), "xml:lang=\"", "\"", start).value_or("");
        if (const auto fits = fitness(language, locale); fits > bestFitness) {
            bestFitness = fits;
            best = comment->substr(body + 1);
        }
    }
    return best && !best->empty() ? std::optional(unescaped(*best)) : std::nullopt;
}

} // namespace tessel
