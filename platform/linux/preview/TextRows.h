#pragma once

#include "platform/linux/preview/TextEncoding.h"

#include <memory>
#include <string>
#include <string_view>

#include <unicode/ucnv.h>

namespace tessel {

/// Cuts the bytes of a text into rows, and makes rows of them that can be shown. One thread at a time.
class TextRows {
public:
    /// No row has more bytes than this, its newline aside.
    static constexpr std::size_t kLongestRow = 1000;
    /// So many bytes are always enough for a row and its newline.
    static constexpr std::size_t kEnough = kLongestRow + 8;

    explicit TextRows(const TextEncoding&);

    /// One row at the beginning of some bytes.
    struct Row {
        std::size_t length = 0; ///< bytes of what is shown
        std::size_t whole = 0;  ///< its newline included; 0 for no row: the bytes end before it does
        bool endsLine = false;
    };

    /// @param isEnd whether the text ends with the bytes
    [[nodiscard]] Row next(std::string_view bytes, bool isEnd) const;

    /// What is shown of a row.
    [[nodiscard]] std::string shown(std::string_view bytes) const;

private:
    [[nodiscard]] Row nextOfBytes(std::string_view bytes, bool isEnd) const;
    [[nodiscard]] Row nextOfUnits(std::string_view bytes, bool isEnd) const;
    [[nodiscard]] char32_t unitAt(std::string_view bytes, std::size_t offset) const;
    [[nodiscard]] std::size_t placeToCut(std::string_view bytes) const;
    [[nodiscard]] std::size_t characterEnd(std::string_view bytes) const;

    const TextEncoding encoding_;
    std::unique_ptr<UConverter, decltype(&ucnv_close)> converter_;
};

} // namespace tessel
