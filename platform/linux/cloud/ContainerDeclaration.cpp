#include "platform/linux/cloud/ContainerDeclaration.h"

#include "platform/base/KeyedArchive.h"
#include "platform/linux/files/AtomicFile.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace tessel {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMaximumSize = 64 * 1024; // bytes
constexpr const char* kFileName = ".container.json";
constexpr const char* kLocalizedName = "localizedName";
constexpr const char* kDepthOption = "depthOption";
constexpr const char* kDocumentTypes = "documentTypes";
constexpr const char* kOwners = "owners";

Value::Dictionary declarationIn(const URL& containerFolder)
{
    const auto text = readSmallFile(containerFolder.appending(kFileName), kMaximumSize);
    const auto value = text ? keyedArchive::unarchived(*text) : text.error();
    const auto* dictionary = value ? value->get<Value::Dictionary>() : nullptr;
    return dictionary ? *dictionary : Value::Dictionary();
}

Value entry(const Value::Dictionary& dictionary, const char* key)
{
    const auto found = dictionary.find(key);
    return found == dictionary.end() ? Value() : found->second;
}

std::optional<std::string> text(const Value& value)
{
    const auto* content = value.get<std::string>();
    return content ? std::optional(*content) : std::nullopt;
}

std::shared_ptr<const CloudContainer> libraryIn(const URL& containerFolder)
{
    const auto declaration = declarationIn(containerFolder);
    std::string identifier(containerFolder.lastPathComponent());
    std::replace(identifier.begin(), identifier.end(), '~', '.');
    CloudContainer library{identifier,
                           containerFolder.appending("Documents"),
                           text(entry(declaration, kLocalizedName)).value_or(identifier),
                           text(entry(declaration, kDepthOption)),
                           textList(entry(declaration, kDocumentTypes)),
                           textList(entry(declaration, kOwners))};
    return std::make_shared<const CloudContainer>(std::move(library));
}

bool isLibraryFolder(const URL& folder)
{
    std::error_code ignored;
    const auto name = folder.lastPathComponent();
    return !name.starts_with('.') && name != containerFolderName(kDefaultContainerIdentifier) &&
           fs::is_directory(folder.appending("Documents").path(), ignored);
}

} // namespace

CloudContainer defaultContainerIn(const URL& syncedRoot)
{
    const std::string identifier = kDefaultContainerIdentifier;
    return {identifier, syncedRoot.appending(containerFolderName(identifier)), identifier, std::nullopt, {}, {}};
}

std::string containerFolderName(std::string_view identifier)
{
    std::string name(identifier);
    std::replace(name.begin(), name.end(), '.', '~');
    return name;
}

std::optional<Error> writeContainerDeclaration(const CloudContainer& container, const URL& containerFolder)
{
    Value::Dictionary declaration = {{kLocalizedName, container.localizedName},
                                     {kDocumentTypes, listValue(container.documentTypes)},
                                     {kOwners, listValue(container.owners)}};
    if (container.depthOption)
        declaration.emplace(kDepthOption, *container.depthOption);
    return writeFileAtomically(containerFolder.appending(kFileName), keyedArchive::archived(declaration));
}

std::vector<std::shared_ptr<const CloudContainer>> librariesInFolder(const URL& syncedRoot)
{
    std::vector<std::shared_ptr<const CloudContainer>> libraries;
    std::error_code ended;
    for (fs::directory_iterator entry(syncedRoot.path(), ended); !ended && entry != fs::directory_iterator();
         entry.increment(ended)) {
        const auto folder = URL::file(entry->path().native());
        if (isLibraryFolder(folder))
            libraries.push_back(libraryIn(folder));
    }
    std::sort(libraries.begin(), libraries.end(),
              [](const auto& left, const auto& right) { return left->identifier < right->identifier; });
    return libraries;
}

Value listValue(const std::vector<std::string>& texts)
{
    return Value::Array(texts.begin(), texts.end());
}

std::vector<std::string> textList(const Value& value)
{
    std::vector<std::string> texts;
    if (const auto* array = value.get<Value::Array>())
        for (const auto& element : *array)
            if (const auto* text = element.get<std::string>())
                texts.push_back(*text);
    return texts;
}

} // namespace tessel
