#pragma once

#include "platform/files/TypeRegistry.h"
#include "platform/linux/files/SharedMimeTypesGlobs.h"

#include <functional>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace tessel {

/// The types of the desktop's MIME database, under the declared identifiers where there is one. The database is read
/// with the first question about a file's type; where it says nothing, or is missing, the declared table answers.
class SharedMimeTypes : public TypeRegistry {
public:
    /// @param locale of descriptions, as userLocale() names it
    /// @param dataFolders folders that may have a "mime" folder, the most important first
    SharedMimeTypes(std::string locale, std::vector<std::string> dataFolders);
    ~SharedMimeTypes() override;

    /// XDG_DATA_HOME and XDG_DATA_DIRS, with their defaults (XDG Base Directory, freedesktop).
    [[nodiscard]] static std::vector<std::string> userDataFolders();

    [[nodiscard]] std::optional<std::string> identifierForExtension(std::string_view extension) const override;
    [[nodiscard]] std::string identifierForFileName(std::string_view name) const override;
    [[nodiscard]] bool conforms(std::string_view identifier, std::string_view ancestor) const override;
    [[nodiscard]] std::optional<std::string> description(std::string_view identifier) const override;
    [[nodiscard]] bool isPackageName(std::string_view name) const override;

    /// A type of a document as other programs of the desktop name it.
    struct MimeTypes {
        std::string own;                    ///< empty when the type has no such name
        std::vector<std::string> ancestors; ///< of the types that it derives from, the nearest first
    };
    [[nodiscard]] MimeTypes mimeTypes(std::string_view identifier) const;
    /// The name by which the database knows a MIME type, which may be written in any case or be an alias.
    [[nodiscard]] std::string canonicalMimeType(std::string_view mimeType) const;

private:
    struct Database;

    [[nodiscard]] const Database& database() const;
    [[nodiscard]] std::vector<std::string> parents(std::string_view identifier) const;
    [[nodiscard]] bool anyAncestor(std::string_view identifier,
                                   const std::function<bool(std::string_view)>& visit) const;
    [[nodiscard]] std::optional<std::string> findDescription(const std::string& identifier) const;

    const std::string locale_;
    const std::vector<std::string> dataFolders_;
    mutable std::once_flag opened_;
    mutable std::unique_ptr<const Database> database_;
    mutable std::mutex mutex_;
    mutable std::map<std::string, std::optional<std::string>, std::less<>> descriptions_; ///< Found so far.
};

} // namespace tessel
