#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tessel {

/// Identifiers that the program names itself.
namespace TypeIdentifier {
inline constexpr std::string_view kData = "public.data";
inline constexpr std::string_view kFolder = "public.folder";
inline constexpr std::string_view kSymbolicLink = "public.symlink";
inline constexpr std::string_view kPackage = "public.package";
inline constexpr std::string_view kAliasFile = "public.alias-file";
} // namespace TypeIdentifier

/// What kinds of documents there are. A type identifier is a declared reverse-domain name ("public.image"), or
/// "mime:" and a MIME type for a type that only the desktop's MIME database knows. Safe to use from any thread.
class TypeRegistry {
public:
    virtual ~TypeRegistry() = default;

    /// The preferred identifier for a file-name extension (without the dot, any case), if any type has it.
    [[nodiscard]] virtual std::optional<std::string> identifierForExtension(std::string_view extension) const = 0;

    /// The identifier for a whole file name: longest known suffix, exact names such as "Makefile" included; kData when
    /// nothing matches.
    [[nodiscard]] virtual std::string identifierForFileName(std::string_view name) const = 0;

    /// Whether a type is `ancestor` or derives from it, over any number of steps.
    [[nodiscard]] virtual bool conforms(std::string_view identifier, std::string_view ancestor) const = 0;

    /// The type's description in the user's language ("PDF document").
    [[nodiscard]] virtual std::optional<std::string> description(std::string_view identifier) const = 0;

    /// Whether a folder of this name is shown as one document. Cheap: no database is read for names without extension.
    [[nodiscard]] virtual bool isPackageName(std::string_view name) const = 0;
};

} // namespace tessel
