#include "platform/linux/apps/RecentDocuments.h"

#include "platform/apps/ApplicationRecord.h"
#include "platform/cloud/ActivityService.h"
#include "platform/cloud/CloudService.h"
#include "platform/files/TypeRegistry.h"
#include "platform/linux/cloud/DocumentIdentifiers.h"
#include "platform/linux/files/AtomicFile.h"
#include "platform/log/UnifiedLog.h"
#include "platform/text/TextServices.h"
#include "platform/ui/Application.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <future>
#include <memory>

namespace tessel {

namespace {

constexpr std::size_t kMostDocuments = 5;
constexpr auto kEndPatience = std::chrono::seconds(2);
constexpr std::size_t kLongestEntry = std::size_t{256} << 10; // bytes

URL entryIn(const std::string& dataFolder)
{
    return URL::file(dataFolder).appending("applications").appending(std::string(kOwnBundleIdentifier) + ".desktop");
}

std::vector<URL> entriesBehindFirst(const std::vector<std::string>& dataFolders)
{
    std::vector<URL> entries;
    for (std::size_t i = 1; i < dataFolders.size(); ++i)
        entries.push_back(entryIn(dataFolders[i]));
    return entries;
}

} // namespace

RecentDocuments::RecentDocuments(const DesktopFolders& folders, const RecentDocumentsServices& services)
    : services_(services), entry_(entryIn(folders.data.empty() ? "/" : folders.data.front())),
      installed_(entriesBehindFirst(folders.data))
{
    for (const auto* const moment : {kDidBecomeActiveNotification, kWillResignActiveNotification})
        observations_.push_back(
            services_.notifications.observe(moment, [this] { queue_.addOperation([this] { update(std::nullopt); }); }));
    observations_.push_back(services_.notifications.observe(kCloudIdentityChangedNotification,
                                                            [this] { queue_.addOperation([this] { forget(); }); }));
}

RecentDocuments::~RecentDocuments()
{
    observations_.clear();
    const auto done = std::make_shared<std::promise<void>>();
    queue_.addOperation([done] { done->set_value(); });
    done->get_future().wait_for(kEndPatience);
}

void RecentDocuments::add(const URL& document)
{
    queue_.addOperation([this, document] { update(document); });
}

void RecentDocuments::add(const ContinuationActivity& activity)
{
    const auto found = activity.userInfo.find(ContinuationActivity::kDocumentURLKey);
    const auto* const bookmark = found == activity.userInfo.end() ? nullptr : found->second.get<std::string>();
    if (bookmark)
        services_.cloud.urlOfBookmarkableString(*bookmark, [this](const Result<URL>& document) {
            if (document)
                add(*document);
        });
}

void RecentDocuments::update(const std::optional<URL>& added)
{
    const auto installed = mayWrite() ? installedEntry() : std::nullopt;
    if (!installed || !services_.cloud.identityToken())
        return forget();
    const auto old = currentEntry();
    const auto known = documents(added, old);
    if (known.empty())
        return forget();
    const auto entry = shortcutEntry(*installed, known);
    if (entry && *entry != old)
        write(*entry);
}

/// Only what this program wrote itself.
void RecentDocuments::forget() const
{
    if (mayWrite())
        ::unlink(entry_.path().c_str());
}

std::optional<std::string> RecentDocuments::installedEntry() const
{
    for (const auto& place : installed_)
        if (auto entry = readSmallFile(place, kLongestEntry))
            return std::move(entry.value());
    return std::nullopt;
}

/// Whether nothing is there, or what this program wrote.
bool RecentDocuments::mayWrite() const
{
    struct stat status = {};
    if (::lstat(entry_.path().c_str(), &status) != 0)
        return errno == ENOENT;
    return S_ISREG(status.st_mode) && documentsOfShortcutEntry(currentEntry());
}

std::string RecentDocuments::currentEntry() const
{
    auto entry = readSmallFile(entry_, kLongestEntry);
    return entry ? std::move(entry.value()) : std::string();
}

/// @param entry the last one
std::vector<RecentDocument> RecentDocuments::documents(const std::optional<URL>& added, std::string_view entry) const
{
    auto identifiers = documentsOfShortcutEntry(entry).value_or(std::vector<std::uint32_t>());
    if (added && isDocument(*added))
        if (const auto identifier = services_.identifiers.identifierOf(*added)) {
            std::erase(identifiers, *identifier);
            identifiers.insert(identifiers.begin(), *identifier);
        }
    std::vector<RecentDocument> found;
    for (const auto identifier : identifiers)
        if (auto document = found.size() < kMostDocuments ? find(identifier) : std::nullopt)
            found.push_back(std::move(*document));
    return found;
}

/// None for one that is gone, or on its way there.
std::optional<RecentDocument> RecentDocuments::find(std::uint32_t identifier) const
{
    const auto located = services_.identifiers.locate(identifier);
    if (!located || !*located || !(*located)->isTheDocument || services_.cloud.isInTrash((*located)->url))
        return std::nullopt;
    return RecentDocument{identifier, services_.text.displayName((*located)->url.lastPathComponent())};
}

bool RecentDocuments::isDocument(const URL& url) const
{
    std::error_code ignored;
    return services_.types.isPackageName(url.lastPathComponent()) ||
           !std::filesystem::is_directory(url.path(), ignored);
}

/// An entry that is not whole would hide the installed one: this waits for the disk.
void RecentDocuments::write(const std::string& entry) const
{
    const auto folder = entry_.deletingLastPathComponent();
    std::error_code failure;
    std::filesystem::create_directories(folder.path(), failure);
    removeAbandonedTemporaryFiles(folder);
    if (const auto error = writeFileAtomically(entry_, entry))
        services_.log.write(LogLevel::Error, "Cannot write %@: %@", entry_, *error);
}

} // namespace tessel
