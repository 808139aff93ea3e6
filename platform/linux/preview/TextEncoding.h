#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tessel {

/// How the characters of a text are written as bytes.
struct TextEncoding {
    enum class Form {
        SingleByte, ///< each character is one byte
        MultiByte,  ///< one or several bytes, in which no byte of a newline is part of anything else
        UTF8,
        UTF16,
        UTF32,
    };

    std::string converter; ///< as ICU names it
    Form form = Form::UTF8;
    bool isBigEndian = false;
    std::size_t markLength = 0; ///< bytes of the mark at the beginning of the text

    /// The bytes that every character has at least.
    [[nodiscard]] std::size_t unit() const;
};

/// Finds out how a text is written from its beginning: by its mark, by its form, or else by statistics.
/// @param isWhole whether the bytes are the whole text; else the last character may be cut
/// @returns none for what is no text
[[nodiscard]] std::optional<TextEncoding> encodingOfText(std::string_view beginning, bool isWhole);

} // namespace tessel
