#include "app/common/Log.h"
#include "app/common/Settings.h"
#include "app/common/TSDAdditions.h"
#include "app/common/TesselDriveApp_StrataAdditions.h"
#include "app/entry/AppDelegate.h"
#include "browser/NavController.h"
#include "platform/base/KeyedArchive.h"
#include "platform/base/PercentEncoding.h"
#include "platform/base/URLComponents.h"
#include "platform/cloud/ActivityService.h"
#include "platform/cloud/CloudService.h"
#include "platform/run/MainQueue.h"
#include "preview/PreviewItemManager.h"

#include <charconv>

namespace tessel {

namespace {

constexpr const char* kScheme = "tesseldriveapp";
constexpr std::size_t kLongestPath = 4096; // bytes, as the kernel has it

Value valueOf(const Value::Dictionary& dictionary, const char* key)
{
    const auto found = dictionary.find(key);
    return found == dictionary.end() ? Value() : found->second;
}

std::optional<std::string> textOf(const Value::Dictionary& dictionary, const char* key)
{
    const auto value = valueOf(dictionary, key);
    const auto* text = value.get<std::string>();
    return text ? std::optional(*text) : std::nullopt;
}

/// The file whose path is encoded twice; none for what no file can be called by.
std::optional<URL> fileOf(const std::string& encodedPath)
{
    const auto path = percentDecoded(encodedPath);
    const bool isPath =
        path && path->starts_with('/') && path->size() < kLongestPath && path->find('\0') == std::string::npos;
    return isPath ? std::optional(URL::file(*path)) : std::nullopt;
}

std::int32_t previewModeIn(const std::vector<URLComponents::QueryItem>& items)
{
    auto mode = PreviewItemManager::kQuickPreview;
    for (const auto& item : items) {
        if (percentDecoded(item.name) != "mode")
            continue;
        const auto value = percentDecoded(item.value.value_or(std::string()));
        if (value == "preview")
            mode = PreviewItemManager::kQuickPreview;
        else if (value == "details" || value == "info")
            mode = PreviewItemManager::kDetails;
    }
    return mode;
}

std::optional<URL> archivedURL(const Value& value)
{
    const auto* archive = value.get<Data>();
    const auto content = archive ? keyedArchive::unarchived(archive->bytes) : Result<Value>(Value());
    const auto* url = content ? content->get<URL>() : nullptr;
    return url ? std::optional(*url) : std::nullopt;
}

std::optional<URL> documentOf(const ShortcutItem& item)
{
    if (auto url = archivedURL(valueOf(item.userInfo, ShortcutItem::kAliasURLKey)))
        return url;
    const auto identifier = valueOf(item.userInfo, ShortcutItem::kDocumentIdentifierKey);
    if (const auto* number = identifier.get<std::int64_t>())
        return tsd_URLFromDocumentID(std::to_string(static_cast<std::uint64_t>(*number)));
    return archivedURL(valueOf(item.userInfo, ShortcutItem::kDocumentURLKey));
}

int integerIn(const TestOptions& options, const char* name)
{
    const auto found = options.find(name);
    int number = 0;
    if (found != options.end())
        std::from_chars(found->second.data(), found->second.data() + found->second.size(), number);
    return number;
}

/// The documents folder of a container, beside the drive's own.
URL containerFolder(const TestOptions& options)
{
    const auto found = options.find("container");
    const auto name = found == options.end() ? std::string("orvane~Lookbook") : found->second;
    const auto drive = platform::installed().cloud.defaultContainer();
    const auto root = drive ? drive->documentsURL.deletingLastPathComponent() : URL::file("/");
    return root.appending(name).appending("Documents");
}

} // namespace

bool AppDelegate::applicationOpenURL(const std::string& url, const Value::Dictionary& options)
{
    TSD_FUNCTION("-[AppDelegate application:openURL:options:]");
    TSD_USER_ACTION("AppDelegate: openURL");
    TSD_INFO("openURL: %@, options %{public}@, app %{public}@", url, Value(options), StaticText("<Application>"));
    const auto components = URLComponents::parse(url);
    if (!components || components->scheme != kScheme)
        return false;
    const auto file = fileOf(components->path);
    const auto root = navigation();
    return file && root && root->warpToNewURL(tsd_URLByResolvingBookmark(*file), previewModeIn(components->queryItems));
}

void AppDelegate::applicationPerformActionForShortcutItem(const ShortcutItem& item)
{
    TSD_FUNCTION("-[AppDelegate application:performActionForShortcutItem:completionHandler:]");
    TSD_INFO("Shortcut action: %{public}@", item.type);
    const auto root = navigation();
    if (item.type == ShortcutItem::kSearch) {
        TSD_USER_ACTION("Pressa: Search");
        if (root)
            root->startSearch("");
    } else if (item.type == ShortcutItem::kRecentDocument) {
        TSD_USER_ACTION("Pressa: Recent Document");
        const auto document = documentOf(item);
        if (!document)
            return;
        TSD_INFO("Shortcut recent document: %@", *document);
        if (root)
            static_cast<void>(root->warpToNewURL(document, PreviewItemManager::kQuickPreview));
    }
}

bool AppDelegate::applicationWillContinueUserActivityWithType(const std::string& type)
{
    TSD_FUNCTION("-[AppDelegate application:willContinueUserActivityWithType:]");
    TSD_INFO("%s: activity type is %{public}@", tsdFunction, type);
    return true;
}

bool AppDelegate::applicationContinueUserActivity(const UserActivity& activity)
{
    TSD_FUNCTION("-[AppDelegate application:continueUserActivity:restorationHandler:]");
    if (activity.type == UserActivity::kSearchQuery)
        continueSearch(activity);
    else if (activity.type == UserActivity::kSearchResult)
        openSearchResult(activity);
    else if (activity.type == Settings::relayaTesselActivityType())
        openContinuedDocument(activity);
    else {
        TSD_ERROR("Invalid user activity type %{public}@", activity.type);
        return false;
    }
    return true;
}

void AppDelegate::continueSearch(const UserActivity& activity) const
{
    TSD_FUNCTION("-[AppDelegate application:continueUserActivity:restorationHandler:]");
    TSD_USER_ACTION("Seekindex: Search Continuation");
    const auto query = textOf(activity.userInfo, UserActivity::kSearchQueryKey);
    TSD_INFO("Seekindex Search Continuation: \"%@\"", query);
    if (const auto root = navigation(); root && query)
        root->startSearch(*query);
}

void AppDelegate::openSearchResult(const UserActivity& activity) const
{
    TSD_FUNCTION("-[AppDelegate application:continueUserActivity:restorationHandler:]");
    TSD_USER_ACTION("Seekindex: Open Search Result");
    const auto identifier = textOf(activity.userInfo, UserActivity::kSearchItemIdentifierKey);
    TSD_INFO("Seekindex Search Result: open documentID \"%{public}@\"", identifier);
    const auto found = tsd_URLFromDocumentID(identifier);
    if (!found) {
        TSD_ERROR("Can't get URL for DocumentID: %{public}@", identifier);
        return;
    }
    const auto url = tsd_URLByResolvingPromise(*found);
    TSD_INFO("Seekindex documentID %{public}@ is URL: %@", identifier, url);
    DispatchQueue::main().async([weak = std::weak_ptr(navigation()), url] {
        if (const auto root = weak.lock())
            static_cast<void>(root->warpToNewURL(url, PreviewItemManager::kQuickPreview));
    });
}

void AppDelegate::openContinuedDocument(const UserActivity& activity) const
{
    TSD_FUNCTION("-[AppDelegate application:continueUserActivity:restorationHandler:]");
    TSD_USER_ACTION("Relaya: Open Document");
    const auto bookmark = textOf(activity.userInfo, ContinuationActivity::kDocumentURLKey);
    TSD_INFO("Relaya document bookmark: %{public}@", bookmark);
    platform::installed().cloud.urlOfBookmarkableString(
        bookmark.value_or(std::string()), [weak = std::weak_ptr(navigation())](const Result<URL>& url) {
            TSD_FUNCTION("-[AppDelegate application:continueUserActivity:restorationHandler:]_block_invoke");
            if (!url) {
                TSD_ERROR("Relaya failed to decode bookmark: %{public}@", url.error());
                return;
            }
            if (weak.expired())
                return;
            TSD_INFO("Relaya document URL: %@", *url);
            DispatchQueue::main().async([weak, url = *url] {
                if (const auto root = weak.lock())
                    static_cast<void>(root->warpToNewURL(url, PreviewItemManager::kQuickPreview));
            });
        });
}

void AppDelegate::applicationDidFailToContinueUserActivityWithType(const std::string& type, const Error& error)
{
    TSD_FUNCTION("-[AppDelegate application:didFailToContinueUserActivityWithType:error:]");
    TSD_ERROR("%s: activity type is %{public}@: Error %{public}@", tsdFunction, type, error);
}

bool AppDelegate::applicationRunTest(const std::string& name, const TestOptions& options)
{
    constexpr double kSecondsToSettle = 5;
    const auto mode = name.find("Thumbnails") != std::string::npos ? ListMode::Thumbnails : ListMode::Rows;
    const auto root = navigation();
    if (!name.starts_with("Scroll") || !root)
        return false;
    static_cast<void>(root->warpToNewURL(containerFolder(options), PreviewItemManager::kQuickPreview));
    const auto list = root->getTopDocumentListController();
    const ScrollTest test = {name, integerIn(options, "iterations"), integerIn(options, "delta"), mode};
    DispatchQueue::main().after(kSecondsToSettle, [list, test] {
        if (list)
            list->runScrollTest(test);
    });
    return true;
}

} // namespace tessel
