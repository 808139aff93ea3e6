#pragma once

#include "platform/console/ScreenElement.h"

#include <cstddef>
#include <string>

namespace tessel {

/// Draws a screen for a person at a terminal.
struct ScreenPainter {
    bool usesEscapes = false; ///< clears the terminal and highlights with ECMA-48 sequences
    std::size_t columns = 80; ///< the terminal's width, in characters

    /// Whole lines: a title bar, the rows, numbered from 1 and in columns, and what else there is.
    [[nodiscard]] std::string paint(const Screen&) const;

private:
    [[nodiscard]] std::string titleBar(const Screen&) const;
};

} // namespace tessel
