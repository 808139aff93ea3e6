#include "platform/linux/apps/MimeAssociations.h"

#include "platform/linux/base/KeyFile.h"
#include "platform/linux/files/AtomicFile.h"

#include <algorithm>

namespace tessel {

namespace {

constexpr std::size_t kMaximumSize = 1024 * 1024; // bytes
constexpr std::string_view kSuffix = ".desktop";

std::string lowered(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](char character) {
        return character >= 'A' && character <= 'Z' ? static_cast<char>(character | 0x20) : character;
    });
    return text;
}

/// The identifiers of a list of entries' names; what is no entry's name is left out.
std::vector<std::string> identifiers(std::string_view value)
{
    auto names = KeyFile::list(value);
    std::erase_if(names, [](const std::string& name) { return !name.ends_with(kSuffix); });
    for (auto& name : names)
        name.resize(name.size() - kSuffix.size());
    return names;
}

template <typename ByType>
void addGroup(const KeyFile& file, std::string_view group, const MimeAssociations::CanonicalType& canonicalType,
              ByType& into)
{
    for (const auto& [type, value] : file.group(group)) {
        auto& list = into[canonicalType(type)];
        for (auto& identifier : identifiers(value))
            list.push_back(std::move(identifier));
    }
}

template <typename ByType>
bool hasEntry(const ByType& byType, const std::string& mimeType, const std::string& identifier)
{
    const auto found = byType.find(mimeType);
    return found != byType.end() &&
           std::find(found->second.begin(), found->second.end(), identifier) != found->second.end();
}

} // namespace

MimeAssociations::MimeAssociations(const DesktopFolders& folders, const CanonicalType& canonicalType,
                                   FileStamps& stamps)
{
    for (const auto& folder : folders.configuration)
        addLevel(folder, folders.desktops, canonicalType, stamps);
    firstDataLevel_ = levels_.size();
    for (const auto& folder : folders.data)
        addLevel(folder + "/applications", folders.desktops, canonicalType, stamps);
}

void MimeAssociations::addLevel(const std::string& folder, const std::vector<std::string>& desktops,
                                const CanonicalType& canonicalType, FileStamps& stamps)
{
    const auto read = [&](const std::string& name) {
        const auto path = folder + "/" + name;
        stamps.add(path);
        auto content = readSmallFile(URL::file(path), kMaximumSize);
        return content ? std::move(content.value()) : std::string();
    };
    Level level;
    for (const auto& desktop : desktops) {
        const auto text = read(lowered(desktop) + "-mimeapps.list");
        addGroup(KeyFile(text), "Default Applications", canonicalType, level.defaults);
    }
    const auto text = read("mimeapps.list");
    const KeyFile list(text);
    addGroup(list, "Default Applications", canonicalType, level.defaults);
    addGroup(list, "Added Associations", canonicalType, level.added);
    addGroup(list, "Removed Associations", canonicalType, level.removed);
    levels_.push_back(std::move(level));
}

MimeAssociations::Identifiers MimeAssociations::defaults(const std::string& mimeType) const
{
    Identifiers result;
    for (const auto& level : levels_)
        if (const auto found = level.defaults.find(mimeType); found != level.defaults.end())
            result.insert(result.end(), found->second.begin(), found->second.end());
    return result;
}

MimeAssociations::Identifiers MimeAssociations::added(const std::string& mimeType) const
{
    Identifiers result;
    for (std::size_t i = 0; i < levels_.size(); ++i)
        if (const auto found = levels_[i].added.find(mimeType); found != levels_[i].added.end())
            std::copy_if(found->second.begin(), found->second.end(), std::back_inserter(result),
                         [&](const std::string& identifier) { return !isRemovedAbove(identifier, mimeType, i); });
    return result;
}

// A list takes away what the applications of its own folder claim, and of the folders that count less.
bool MimeAssociations::isRemoved(const std::string& identifier, const std::string& mimeType,
                                 std::size_t dataFolder) const
{
    return isRemovedAbove(identifier, mimeType, firstDataLevel_ + dataFolder + 1);
}

bool MimeAssociations::isRemovedAbove(const std::string& identifier, const std::string& mimeType,
                                      std::size_t level) const
{
    const auto end = levels_.begin() + static_cast<std::ptrdiff_t>(std::min(level, levels_.size()));
    return std::any_of(levels_.begin(), end,
                       [&](const Level& above) { return hasEntry(above.removed, mimeType, identifier); });
}

} // namespace tessel
