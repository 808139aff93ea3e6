#pragma once

#include "platform/base/URL.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

/// The command of a desktop entry (freedesktop.org, Desktop Entry, "The Exec key"). No shell ever sees it: each
/// argument reaches the program as it is, so that no file name means anything else than itself.
class ExecLine {
public:
    /// What field codes stand for.
    struct Fields {
        URL document;
        std::string name;      ///< the entry's, in the user's language
        std::string icon;      ///< empty for none
        std::string entry;     ///< the entry's path
        std::string link = {}; ///< what is opened in place of a document; empty for none
    };

    /// @param exec the value with its escapes resolved
    /// @returns none for a command that must not be run: without a program, with an open quotation, with a field code
    ///          that there is not, or with one inside a longer quotation, where a file's name could become a script
    [[nodiscard]] static std::optional<ExecLine> parse(std::string_view exec);

    /// The first word: a program's name or path.
    [[nodiscard]] const std::string& program() const { return program_; }
    /// Whether the command has a place for a document.
    [[nodiscard]] bool takesDocument() const { return takesDocument_; }
    /// Whether it has one for the address of a document, or of what is no file.
    [[nodiscard]] bool takesAddress() const { return takesAddress_; }
    /// The words behind the program.
    [[nodiscard]] std::vector<std::string> arguments(const Fields&) const;

private:
    class Parser;

    struct Part {
        char code = 0;       ///< the letter of a field code; 0 for text
        std::string text;    ///< without a code
        bool quoted = false; ///< the code stood in a quotation
    };
    using Word = std::vector<Part>;

    ExecLine() = default;
    static bool isValid(const Word&);
    static void expand(const Word&, const Fields&, std::vector<std::string>& into);

    std::string program_;
    std::vector<Word> words_;
    bool takesDocument_ = false;
    bool takesAddress_ = false;
};

} // namespace tessel
