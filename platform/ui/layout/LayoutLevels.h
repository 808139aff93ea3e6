#pragma once

namespace tessel::LayoutLevel {

// Priorities of the layout's own constraints, beneath what the program requires and above all else that it asks for.
inline constexpr double kPositive = 999.9;  ///< no side is below zero
inline constexpr double kAlignment = 999.5; ///< how a stack aligns its views
inline constexpr double kContent = 999.4;   ///< contents that are not to be pressed or stretched

inline constexpr double kRounding = 1e-3; ///< pixels; less is no room at all

} // namespace tessel::LayoutLevel
