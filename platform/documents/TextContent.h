#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tessel {

/// A text that is shown row by row and may be larger than memory. A row is a line or, of a very long one, a part of it,
/// in UTF-8 and harmless: on one line, tabs as blanks, what cannot be seen as pictures, and nothing in it can turn
/// around what is beside it. Main thread only.
///
/// The file may change, shrink or vanish meanwhile: what cannot be read any more has no rows.
class TextContent {
public:
    using Rows = std::vector<std::string>;
    using RowsHandler = std::function<void(const Rows&)>;

    /// How many rows are read together.
    static constexpr std::size_t kBlockRows = 256;

    virtual ~TextContent() = default;

    /// The rows that have been found so far: it only grows.
    [[nodiscard]] virtual std::size_t rowCount() const = 0;
    /// Whether all rows have been found that can be shown.
    [[nodiscard]] virtual bool isComplete() const = 0;
    /// The lines of the whole text; none as long as they are not all found.
    [[nodiscard]] virtual std::optional<std::uint64_t> lineCount() const = 0;
    /// At most kBlockRows, known from the beginning.
    [[nodiscard]] virtual const Rows& firstRows() const = 0;

    /// Reads the rows from `block` * kBlockRows on, on a worker. The handler is called once with what there is of them,
    /// unless the content is gone by then.
    virtual void readBlock(std::size_t block, RowsHandler) = 0;

    /// Called when more rows have been found, or all.
    std::function<void()> grew;
};

} // namespace tessel
