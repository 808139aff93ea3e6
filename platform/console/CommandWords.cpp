#include "platform/console/CommandWords.h"

#include <algorithm>

namespace tessel {

namespace {

constexpr std::string_view kBlanks = " \t\r";

/// Takes the rest of a quoted part, its closing quote included, from the front of `rest`.
/// @returns whether there was a closing quote.
bool takeQuoted(std::string_view& rest, std::string& word)
{
    while (!rest.empty()) {
        char next = rest.front();
        rest.remove_prefix(1);
        if (next == '"')
            return true;
        if (next == '\\' && (rest.starts_with('"') || rest.starts_with('\\'))) {
            next = rest.front();
            rest.remove_prefix(1);
        }
        word += next;
    }
    return false;
}

/// Takes one word from the front of `rest`, which begins with it.
bool takeWord(std::string_view& rest, std::string& word)
{
    while (!rest.empty() && kBlanks.find(rest.front()) == std::string_view::npos) {
        const char next = rest.front();
        rest.remove_prefix(1);
        if (next != '"')
            word += next;
        else if (!takeQuoted(rest, word))
            return false;
    }
    return true;
}

void skipBlanks(std::string_view& rest)
{
    rest.remove_prefix(std::min(rest.find_first_not_of(kBlanks), rest.size()));
}

} // namespace

CommandWords CommandWords::parse(std::string_view line)
{
    CommandWords result;
    for (skipBlanks(line); !line.empty() && line.front() != '#'; skipBlanks(line))
        if (!takeWord(line, result.words.emplace_back()))
            return {{}, "a double quote is not closed"};
    return result;
}

} // namespace tessel
