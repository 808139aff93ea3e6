#pragma once

#include <string_view>

namespace tessel {

/// A type that the program knows without the desktop's database. Lists are separated by blanks; the best comes first.
struct DeclaredType {
    std::string_view identifier;
    std::string_view parents;
    std::string_view mimeType;
    std::string_view extensions;  ///< Lower case, without dots.
    std::string_view description; ///< English.
};

/// The declared type, packages included; null when there is none.
[[nodiscard]] const DeclaredType* declaredType(std::string_view identifier);
/// @param extension any case, without the dot
[[nodiscard]] const DeclaredType* declaredTypeForExtension(std::string_view extension);
[[nodiscard]] const DeclaredType* declaredTypeForMimeType(std::string_view mimeType);
/// Allocates nothing: it is asked for every folder of a list.
[[nodiscard]] bool isDeclaredPackageExtension(std::string_view extension);

/// Calls visit(word) for the words of a list that blanks separate, until it answers true.
/// @returns whether it did
template <typename Visit>
bool anyWord(std::string_view list, Visit&& visit)
{
    while (!list.empty()) {
        const auto end = list.find(' ');
        if (visit(list.substr(0, end)))
            return true;
        list.remove_prefix(end == std::string_view::npos ? list.size() : end + 1);
    }
    return false;
}

} // namespace tessel
