#include "platform/linux/apps/ExecLine.h"

#include <algorithm>
#include <utility>

namespace tessel {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kPathCodes = "fF";
constexpr std::string_view kAddressCodes = "uU";
constexpr std::string_view kKnownCodes = "fFuUick";
constexpr std::string_view kFormerCodes = "dDnNvm"; // expand to nothing

bool isOneOf(std::string_view letters, char letter)
{
    return letter != 0 && letters.find(letter) != std::string_view::npos;
}

bool isDocumentCode(char code)
{
    return isOneOf(kPathCodes, code) || isOneOf(kAddressCodes, code);
}

std::string expanded(char code, const ExecLine::Fields& fields)
{
    if (isOneOf(kAddressCodes, code))
        return fields.link.empty() ? fields.document.absoluteString() : fields.link;
    if (isOneOf(kPathCodes, code))
        return fields.link.empty() ? fields.document.path() : "";
    if (code == 'c')
        return fields.name;
    return code == 'k' ? fields.entry : "";
}

} // namespace

/// Takes a command apart, one character after the other.
class ExecLine::Parser {
public:
    explicit Parser(std::string_view exec) : rest_(exec) {}

    /// @returns none when a quotation has no end, or when a percent sign is the last character
    std::optional<std::vector<Word>> words()
    {
        while (!rest_.empty())
            if (!step(take()))
                return std::nullopt;
        endWord();
        return quote_ ? std::nullopt : std::optional(std::move(words_));
    }

private:
    bool step(char character)
    {
        if (character == '%')
            return takeCode();
        if (quote_ ? character == quote_ : isOneOf("\"'", character)) {
            quote_ = quote_ ? '\0' : character;
            begun_ = true;
        } else if (!quote_ && isOneOf(kBlanks, character)) {
            endWord();
        } else if (character == '\\' && isEscaping()) {
            add(take());
        } else {
            add(character);
        }
        return true;
    }

    /// In double quotes a backslash means something before four characters only, in single ones before none.
    [[nodiscard]] bool isEscaping() const
    {
        return !rest_.empty() && quote_ != '\'' && (!quote_ || isOneOf("\"`$\\", rest_.front()));
    }

    bool takeCode()
    {
        if (rest_.empty())
            return false;
        const char code = take();
        if (code == '%')
            add(code);
        else
            word_.push_back({code, {}, quote_ != 0});
        return true;
    }

    char take()
    {
        const char character = rest_.front();
        rest_.remove_prefix(1);
        return character;
    }

    void add(char character)
    {
        if (word_.empty() || word_.back().code)
            word_.emplace_back();
        word_.back().text.push_back(character);
    }

    void endWord()
    {
        if (begun_ && word_.empty())
            word_.emplace_back();
        if (!word_.empty())
            words_.push_back(std::exchange(word_, {}));
        begun_ = false;
    }

    std::string_view rest_;
    std::vector<Word> words_;
    Word word_;
    char quote_ = 0;
    bool begun_ = false; ///< the word has a quotation, so that it counts even when it is empty
};

std::optional<ExecLine> ExecLine::parse(std::string_view exec)
{
    auto words = Parser(exec).words();
    if (!words || words->empty() || !std::all_of(words->begin(), words->end(), isValid))
        return std::nullopt;
    const auto& first = words->front();
    if (first.size() != 1 || first.front().code || first.front().text.empty())
        return std::nullopt;
    ExecLine line;
    line.program_ = first.front().text;
    line.words_.assign(words->begin() + 1, words->end());
    for (const auto& word : line.words_)
        for (const auto& part : word) {
            line.takesDocument_ = line.takesDocument_ || isDocumentCode(part.code);
            line.takesAddress_ = line.takesAddress_ || isOneOf(kAddressCodes, part.code);
        }
    return line;
}

bool ExecLine::isValid(const Word& word)
{
    return std::all_of(word.begin(), word.end(), [&](const Part& part) {
        if (!part.code)
            return true;
        const bool known = isOneOf(kKnownCodes, part.code) || isOneOf(kFormerCodes, part.code);
        return known && (!part.quoted || word.size() == 1);
    });
}

std::vector<std::string> ExecLine::arguments(const Fields& fields) const
{
    std::vector<std::string> arguments;
    for (const auto& word : words_)
        expand(word, fields, arguments);
    return arguments;
}

void ExecLine::expand(const Word& word, const Fields& fields, std::vector<std::string>& into)
{
    if (word.size() == 1 && word.front().code == 'i') {
        if (!fields.icon.empty())
            into.insert(into.end(), {"--icon", fields.icon});
        return;
    }
    std::string text;
    bool onlyFormerCodes = true;
    for (const auto& part : word) {
        text += part.code ? expanded(part.code, fields) : part.text;
        onlyFormerCodes = onlyFormerCodes && isOneOf(kFormerCodes, part.code);
    }
    if (!onlyFormerCodes)
        into.push_back(std::move(text));
}

} // namespace tessel
