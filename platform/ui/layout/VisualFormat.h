#pragma once

#include "platform/base/Error.h"
#include "platform/ui/layout/LayoutConstraint.h"

#include <map>
#include <string>
#include <string_view>

namespace tessel {

using NamedViews = std::map<std::string, View*, std::less<>>;

/// The constraints of a row or a column that is written as it looks: "H:|[name]-10-[value(>=20@750)]|". They are not
/// active yet, and in the order in which they are written.
///
///     format   = [("H" | "V") ":"] ["|" gap] view {gap view} [gap "|"]      without a letter: a row, from its leading
///     edge gap      = [] | "-" number "-" | "-(" relation ")-"                   nothing: no gap view     = "[" name
///     ["(" relation {"," relation} ")"] "]"             its length relation = ["==" | "<=" | ">="] (number | name of a
///     view) ["@" priority]
///
/// A bar is the edge of the first view's superview.
/// @returns error 2048, which tells what is wrong and where, for a format that is none of these
[[nodiscard]] Result<LayoutConstraint::List> constraintsWithVisualFormat(std::string_view format, const NamedViews&);

} // namespace tessel
