#pragma once

#include "platform/ui/View.h"

#include <QPersistentModelIndex>

#include <utility>

namespace tessel::qt {

/// Stands for a row of a list, which has no view. It has no size: the shell knows where the row is.
class RowView final : public View {
public:
    explicit RowView(QPersistentModelIndex row) : row_(std::move(row)) {}

    /// Invalid once the row has gone.
    [[nodiscard]] const QPersistentModelIndex& row() const { return row_; }

private:
    const QPersistentModelIndex row_;
};

} // namespace tessel::qt
