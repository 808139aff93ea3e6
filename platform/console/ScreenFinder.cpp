#include "platform/console/ScreenFinder.h"

#include <vector>

namespace tessel {

namespace {

using Matches = std::vector<const ScreenElement*>;

enum class Wanted { Rows, Controls };

Matches matches(const Screen& screen, std::string_view name, Wanted wanted)
{
    Matches result;
    for (const auto& element : screen)
        if (!name.empty() && element.name == name && element.isRow() == (wanted == Wanted::Rows))
            result.push_back(&element);
    return result;
}

std::string quoted(std::string_view name)
{
    return '"' + std::string(name) + '"';
}

Found theOnly(const Matches& matches, std::string_view name)
{
    if (matches.empty())
        return {nullptr, "nothing called " + quoted(name) + " on the screen"};
    if (matches.size() > 1)
        return {nullptr, std::to_string(matches.size()) + " things are called " + quoted(name)};
    return {matches.front(), std::nullopt};
}

} // namespace

Found findNamed(const Screen& screen, std::string_view name)
{
    const auto rows = matches(screen, name, Wanted::Rows);
    return theOnly(rows.empty() ? matches(screen, name, Wanted::Controls) : rows, name);
}

Found findRow(const Screen& screen, std::string_view name)
{
    return theOnly(matches(screen, name, Wanted::Rows), name);
}

Refusal press(const Found& found)
{
    if (!found.element)
        return found.refusal;
    if (!found.element->press)
        return quoted(found.element->name) + " is disabled";
    found.element->press();
    return std::nullopt;
}

} // namespace tessel
