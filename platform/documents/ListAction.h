#pragma once

#include <string>

namespace tessel {

/// What a list can ask to be done with one of its items; bit n of the offered actions offers code n.
enum class ListAction : int { Delete = 0, More = 1, Info = 2, Rename = 3, Share = 4, Move = 5, Pop = 6 };

/// How the action is called in menus, in the user's language.
[[nodiscard]] std::string titleOfListAction(ListAction);

/// How a list shows its items.
enum class ListMode : int { Thumbnails = 1, Rows = 2 };

} // namespace tessel
