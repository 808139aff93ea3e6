#include "platform/linux/files/SharedMimeTypes.h"

#include "platform/linux/files/DeclaredTypes.h"
#include "platform/linux/files/SharedMimeTypesComments.h"
#include "platform/linux/files/SharedMimeTypesLines.h"

#include <algorithm>
#include <cstdlib>
#include <unordered_map>

namespace tessel {

namespace {

constexpr std::string_view kMimePrefix = "mime:";

std::optional<std::string_view> mimeTypeOf(std::string_view identifier)
{
    if (identifier.starts_with(kMimePrefix))
        return identifier.substr(kMimePrefix.size());
    const auto* type = declaredType(identifier);
    return type && !type->mimeType.empty() ? std::optional(type->mimeType) : std::nullopt;
}

std::string identifierForMimeType(std::string_view mimeType)
{
    const auto* type = declaredTypeForMimeType(mimeType);
    return type ? std::string(type->identifier) : std::string(kMimePrefix).append(mimeType);
}

/// What every type of a medium is, whether or not the database says so.
std::vector<std::string> parentsByMedium(std::string_view mimeType)
{
    const auto medium = mimeType.substr(0, mimeType.find('/'));
    if (medium == "inode")
        return {"public.item"};
    for (const auto& [name, parent] :
         {std::pair("text", "public.plain-text"), std::pair("image", "public.image"),
          std::pair("audio", "public.audio"), std::pair("video", "public.movie"), std::pair("font", "public.font")})
        if (medium == name)
            return {parent};
    return {std::string(TypeIdentifier::kData)};
}

/// Whether a MIME type may be part of a path: "medium/name", neither of them hidden or upwards.
bool isMimeType(std::string_view text)
{
    const auto isNameCharacter = [](char character) {
        return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
               (character >= '0' && character <= '9') ||
               std::string_view("/.+-_").find(character) != std::string_view::npos;
    };
    return std::count(text.begin(), text.end(), '/') == 1 && text.front() != '.' && text.front() != '/' &&
           text.find("/.") == std::string_view::npos && text.size() < 200 &&
           std::all_of(text.begin(), text.end(), isNameCharacter);
}

std::string_view extensionOf(std::string_view name)
{
    const auto dot = name.rfind('.');
    return dot == std::string_view::npos || dot == 0 ? std::string_view() : name.substr(dot + 1);
}

std::string environmentOr(const char* variable, std::string fallback)
{
    const auto* value = std::getenv(variable);
    return value && *value ? std::string(value) : std::move(fallback);
}

} // namespace

/// The database's lists. Views point into the files' texts, which stay.
struct SharedMimeTypes::Database {
    explicit Database(const std::vector<std::string>& dataFolders)
    {
        for (const auto& folder : dataFolders) {
            globs.add(text(folder, "globs2"));
            forEachLine(text(folder, "subclasses"), [this](std::string_view line) {
                const auto type = nextField(line, ' ');
                parents[type].push_back(line);
            });
            forEachLine(text(folder, "aliases"), [this](std::string_view line) {
                const auto alias = nextField(line, ' ');
                aliases.try_emplace(alias, line);
            });
        }
    }

    [[nodiscard]] std::string_view withoutAlias(std::string_view mimeType) const
    {
        const auto found = aliases.find(mimeType);
        return found == aliases.end() ? mimeType : found->second;
    }

    SharedMimeTypesGlobs globs;
    std::unordered_map<std::string_view, std::vector<std::string_view>> parents;
    std::unordered_map<std::string_view, std::string_view> aliases;

private:
    std::string_view text(const std::string& folder, const char* name)
    {
        return texts_.emplace_back(readDatabaseFile(folder + "/mime/" + name));
    }

    std::list<std::string> texts_;
};

SharedMimeTypes::SharedMimeTypes(std::string locale, std::vector<std::string> dataFolders)
    : locale_(std::move(locale)), dataFolders_(std::move(dataFolders))
{
}

SharedMimeTypes::~SharedMimeTypes() = default;

std::vector<std::string> SharedMimeTypes::userDataFolders()
{
    std::vector<std::string> folders = {environmentOr("XDG_DATA_HOME", environmentOr("HOME", "") + "/.local/share")};
    const auto systemFolders = environmentOr("XDG_DATA_DIRS", "/usr/local/share:/usr/share");
    for (std::string_view rest = systemFolders; !rest.empty();)
        folders.emplace_back(nextField(rest, ':'));
    std::erase_if(folders, [](const std::string& folder) { return !folder.starts_with('/'); });
    return folders;
}

const SharedMimeTypes::Database& SharedMimeTypes::database() const
{
    std::call_once(opened_, [this] { database_ = std::make_unique<const Database>(dataFolders_); });
    return *database_;
}

std::optional<std::string> SharedMimeTypes::identifierForExtension(std::string_view extension) const
{
    if (extension.empty())
        return std::nullopt;
    const auto suffix = "." + std::string(extension);
    if (const auto match = database().globs.match(suffix); match && match->length == suffix.size())
        return identifierForMimeType(database().withoutAlias(match->mimeType));
    const auto* type = declaredTypeForExtension(extension);
    return type ? std::optional(std::string(type->identifier)) : std::nullopt;
}

std::string SharedMimeTypes::identifierForFileName(std::string_view name) const
{
    if (const auto match = database().globs.match(name))
        return identifierForMimeType(database().withoutAlias(match->mimeType));
    const auto extension = extensionOf(name);
    const auto* type = extension.empty() ? nullptr : declaredTypeForExtension(extension);
    return std::string(type ? type->identifier : TypeIdentifier::kData);
}

SharedMimeTypes::MimeTypes SharedMimeTypes::mimeTypes(std::string_view identifier) const
{
    MimeTypes types;
    if (const auto own = mimeTypeOf(identifier))
        types.own = canonicalMimeType(*own);
    (void)anyAncestor(identifier, [&](std::string_view ancestor) {
        if (const auto name = mimeTypeOf(ancestor))
            types.ancestors.push_back(canonicalMimeType(*name));
        return false;
    });
    return types;
}

std::string SharedMimeTypes::canonicalMimeType(std::string_view mimeType) const
{
    std::string name(mimeType);
    for (auto& character : name)
        if (character >= 'A' && character <= 'Z')
            character = static_cast<char>(character | 0x20);
    return std::string(database().withoutAlias(name));
}

bool SharedMimeTypes::conforms(std::string_view identifier, std::string_view ancestor) const
{
    return identifier == ancestor || anyAncestor(identifier, [&](std::string_view type) { return type == ancestor; });
}

/// Calls visit(type) for every type that one derives from, over any number of steps, the nearest first, until it
/// answers true.
/// @returns whether it did
bool SharedMimeTypes::anyAncestor(std::string_view identifier, const std::function<bool(std::string_view)>& visit) const
{
    std::vector<std::string> reached = {std::string(identifier)};
    for (std::size_t i = 0; i < reached.size(); ++i)
        for (auto& parent : parents(reached[i])) {
            if (std::find(reached.begin(), reached.end(), parent) != reached.end())
                continue;
            if (visit(parent))
                return true;
            reached.push_back(std::move(parent));
        }
    return false;
}

std::vector<std::string> SharedMimeTypes::parents(std::string_view identifier) const
{
    std::vector<std::string> parents;
    if (const auto* type = declaredType(identifier)) {
        anyWord(type->parents, [&](std::string_view parent) {
            parents.emplace_back(parent);
            return false;
        });
        return parents;
    }
    const auto named = mimeTypeOf(identifier);
    if (!named)
        return parents;
    const auto mimeType = database().withoutAlias(*named);
    if (declaredTypeForMimeType(mimeType))
        return {identifierForMimeType(mimeType)};
    parents = parentsByMedium(mimeType);
    if (const auto found = database().parents.find(mimeType); found != database().parents.end())
        for (const auto parent : found->second)
            parents.push_back(identifierForMimeType(database().withoutAlias(parent)));
    return parents;
}

std::optional<std::string> SharedMimeTypes::description(std::string_view identifier) const
{
    const std::lock_guard lock(mutex_);
    const auto known = descriptions_.find(identifier);
    if (known != descriptions_.end())
        return known->second;
    std::string key(identifier);
    auto found = findDescription(key);
    return descriptions_.emplace(std::move(key), std::move(found)).first->second;
}

/// English is in the declared table; other languages are in the database for the types that have a MIME type.
std::optional<std::string> SharedMimeTypes::findDescription(const std::string& identifier) const
{
    const auto* declared = declaredType(identifier);
    const bool english = locale_.starts_with("en");
    const auto mimeType = mimeTypeOf(identifier);
    if (mimeType && isMimeType(*mimeType) && identifier != TypeIdentifier::kData && !(declared && english)) {
        const auto path = "/mime/" + std::string(database().withoutAlias(*mimeType)) + ".xml";
        for (const auto& folder : dataFolders_)
            if (auto comment = bestComment(readDatabaseFile(folder + path), locale_))
                return comment;
    }
    return declared ? std::optional(std::string(declared->description)) : std::nullopt;
}

bool SharedMimeTypes::isPackageName(std::string_view name) const
{
    const auto extension = extensionOf(name);
    return !extension.empty() && isDeclaredPackageExtension(extension);
}

} // namespace tessel
