#include "platform/linux/files/SharedMimeTypesGlobs.h"

#include "platform/linux/files/DeclaredTypes.h"
#include "platform/linux/files/SharedMimeTypesLines.h"

#include <algorithm>
#include <charconv>

#include <fnmatch.h>

namespace tessel {

namespace {

/// Matching takes exponential time in the number of stars; no honest pattern has more.
constexpr auto kMostStars = 3;

bool hasWildcards(std::string_view pattern)
{
    return pattern.find_first_of("*?[\\") != std::string_view::npos;
}

void keepBetter(std::optional<SharedMimeTypesGlobs::Match>& best, const SharedMimeTypesGlobs::Match& match)
{
    if (!best || std::pair(best->weight, best->length) < std::pair(match.weight, match.length))
        best = match;
}

bool isDeclared(const SharedMimeTypesGlobs::Match& match)
{
    return declaredTypeForMimeType(match.mimeType) != nullptr;
}

template <typename Patterns>
void keepFitter(Patterns& patterns, std::string_view pattern, const SharedMimeTypesGlobs::Match& match)
{
    const auto [place, isNew] = patterns.try_emplace(pattern, match);
    auto& known = place->second;
    if (!isNew &&
        (match.weight > known.weight || (match.weight == known.weight && !isDeclared(known) && isDeclared(match))))
        known = match;
}

template <typename Patterns>
void lookUp(const Patterns& patterns, std::string_view key, std::optional<SharedMimeTypesGlobs::Match>& best)
{
    if (const auto found = patterns.find(key); found != patterns.end())
        keepBetter(best, found->second);
}

} // namespace

void SharedMimeTypesGlobs::add(std::string_view globs)
{
    Folder folder;
    forEachLine(globs, [&](std::string_view line) { addLine(line, folder); });
    exact_.append(std::move(folder.exact));
    lowered_.append(std::move(folder.lowered));
    closed_.merge(folder.closed);
}

/// "weight:type:pattern" and perhaps ":flags"; "cs" among the flags asks for the very case.
void SharedMimeTypesGlobs::addLine(std::string_view line, Folder& folder) const
{
    const auto weightText = nextField(line, ':');
    const auto mimeType = nextField(line, ':');
    const auto pattern = nextField(line, ':');
    int weight = 0;
    const auto parsed = std::from_chars(weightText.data(), weightText.data() + weightText.size(), weight);
    if (parsed.ec != std::errc() || mimeType.empty() || pattern.empty() || closed_.contains(mimeType))
        return;
    if (pattern == "__NOGLOBS__")
        folder.closed.insert(mimeType);
    else
        (nextField(line, ':') == "cs" ? folder.exact : folder.lowered).add(pattern, {mimeType, weight, pattern.size()});
}

void SharedMimeTypesGlobs::Table::add(std::string_view pattern, Match match)
{
    if (!hasWildcards(pattern))
        keepFitter(names, pattern, match);
    else if (pattern.starts_with("*.") && !hasWildcards(pattern.substr(1)))
        keepFitter(suffixes, pattern.substr(1), Match{match.mimeType, match.weight, match.length - 1});
    else if (std::count(pattern.begin(), pattern.end(), '*') <= kMostStars)
        others.emplace_back(pattern, match);
}

void SharedMimeTypesGlobs::Table::append(Table&& less)
{
    names.merge(less.names);
    suffixes.merge(less.suffixes);
    others.insert(others.end(), less.others.begin(), less.others.end());
}

std::optional<SharedMimeTypesGlobs::Match> SharedMimeTypesGlobs::match(std::string_view name) const
{
    std::string text(name);
    std::optional<Match> best;
    exact_.match(text, best);
    for (char& character : text)
        if (character >= 'A' && character <= 'Z')
            character = static_cast<char>(character | 0x20);
    lowered_.match(text, best);
    return best;
}

void SharedMimeTypesGlobs::Table::match(const std::string& name, std::optional<Match>& best) const
{
    lookUp(names, name, best);
    for (auto dot = name.find('.'); dot != std::string::npos; dot = name.find('.', dot + 1))
        lookUp(suffixes, std::string_view(name).substr(dot), best);
    for (const auto& [pattern, match] : others)
        if (::fnmatch(pattern.c_str(), name.c_str(), 0) == 0)
            keepBetter(best, match);
}

} // namespace tessel
