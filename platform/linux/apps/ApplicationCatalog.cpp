#include "platform/linux/apps/ApplicationCatalog.h"

#include "platform/linux/files/AtomicFile.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace tessel {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMaximumSize = 1024 * 1024; // bytes, of one entry
constexpr std::size_t kMaximumEntries = 20'000;
constexpr std::string_view kSuffix = ".desktop";

} // namespace

ApplicationCatalog::ApplicationCatalog(DesktopFolders folders, DesktopEntryOptions options,
                                       MimeAssociations::CanonicalType canonicalType)
    : folders_(std::move(folders)), options_(std::move(options)), canonicalType_(std::move(canonicalType))
{
}

void ApplicationCatalog::refresh()
{
    if (!associations_ || !stamps_.areCurrent())
        read();
}

void ApplicationCatalog::read()
{
    stamps_.clear();
    byType_.clear();
    entries_.clear();
    foldersRead_.clear();
    for (std::size_t i = 0; i < folders_.data.size(); ++i)
        readFolder(folders_.data[i] + "/applications", "", i);
    for (const auto& [identifier, entry] : entries_)
        if (entry.entry)
            for (const auto& mimeType : entry.entry->mimeTypes)
                byType_[canonicalType_(mimeType)].push_back(&entry);
    associations_.emplace(folders_, canonicalType_, stamps_);
}

/// @param prefix the names of the folders above, each with a dash behind it: they are part of the identifiers
void ApplicationCatalog::readFolder(const std::string& path, const std::string& prefix, std::size_t dataFolder)
{
    stamps_.add(path);
    std::error_code ended;
    if (const auto real = fs::canonical(path, ended).native(); ended || !foldersRead_.insert(real).second)
        return; // links may lead in circles
    std::vector<fs::directory_entry> folders;
    for (fs::directory_iterator entry(path, ended); !ended && entry != fs::directory_iterator();
         entry.increment(ended)) {
        const auto name = entry->path().filename().native();
        std::error_code ignored;
        if (name.ends_with(kSuffix) && entries_.size() < kMaximumEntries)
            readEntry(entry->path().native(), prefix + name.substr(0, name.size() - kSuffix.size()), dataFolder);
        else if (entry->is_directory(ignored))
            folders.push_back(*entry);
    }
    // The folders themselves before links to them, which would give their entries other identifiers.
    std::stable_partition(folders.begin(), folders.end(), [](const auto& folder) { return !folder.is_symlink(); });
    for (const auto& folder : folders)
        readFolder(folder.path().native(), prefix + folder.path().filename().native() + "-", dataFolder);
}

void ApplicationCatalog::readEntry(const std::string& path, std::string identifier, std::size_t dataFolder)
{
    stamps_.add(path);
    const auto file = URL::file(path);
    const auto content = readSmallFile(file, kMaximumSize);
    if (!content || entries_.contains(identifier))
        return;
    auto parsed = parsedDesktopEntry(*content, file, identifier, options_);
    entries_.emplace(std::move(identifier), Entry{std::move(parsed), dataFolder});
}

const DesktopEntry* ApplicationCatalog::entry(const std::string& identifier) const
{
    const auto found = entries_.find(identifier);
    return found == entries_.end() || !found->second.entry ? nullptr : &*found->second.entry;
}

std::vector<const DesktopEntry*> ApplicationCatalog::claimants(const std::string& mimeType) const
{
    std::vector<const DesktopEntry*> result;
    const auto found = byType_.find(mimeType);
    if (found == byType_.end())
        return result;
    for (const auto* claim : found->second)
        if (claim->entry->isShownHere && !isRemoved(*claim->entry, mimeType))
            result.push_back(&*claim->entry);
    return result;
}

bool ApplicationCatalog::isRemoved(const DesktopEntry& entry, const std::string& mimeType) const
{
    const auto found = entries_.find(entry.identifier);
    return found != entries_.end() && associations_->isRemoved(entry.identifier, mimeType, found->second.dataFolder);
}

} // namespace tessel
