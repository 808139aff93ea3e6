#include "platform/base/NotificationCenter.h"
#include "platform/cloud/LibraryChanges.h"
#include "platform/files/FileCoordinationService.h"
#include "platform/files/FileManager.h"
#include "platform/linux/cloud/DocumentStore.h"
#include "platform/linux/cloud/LocalCloudService.h"
#include "platform/run/MainQueue.h"
#include "platform/text/FilledText.h"
#include "platform/text/TextServices.h"

namespace tessel {

std::optional<Error> LocalCloudService::evictDocument(const URL& url)
{
    if (options_.drive || !isInDrive(url)) {
        const auto text = filledText(options_.text.localized("“%1$@” cannot be kept in the cloud only."),
                                     {options_.text.displayName(url.lastPathComponent())});
        return Error{Domain::General, ErrorCode::kUnsupported, text, text};
    }
    std::optional<Error> failure;
    const WriteIntent intents[] = {{url, WritingOptions::None}};
    auto error = options_.coordination.write(intents, nullptr, [&] { failure = options_.documents.evict(url); });
    return error ? error : failure;
}

std::optional<Error> LocalCloudService::deleteAllContents(const CloudContainer& container)
{
    const auto& folder = container.documentsURL;
    if (!isContainerTopFolder(folder)) {
        const auto text = filledText(options_.text.localized("“%1$@” cannot be deleted."),
                                     {options_.text.displayName(container.localizedName)});
        return Error{Domain::General, ErrorCode::kUnsupported, text, text};
    }
    std::optional<Error> failure;
    const WriteIntent intents[] = {{folder, WritingOptions::ForDeleting}};
    auto error = options_.coordination.write(intents, nullptr,
                                             [&] { failure = options_.files.removeItem(folder, std::nullopt); });
    options_.mainQueue.async(
        [&notifications = options_.notifications] { notifications.post(kLibrariesChangedNotification); });
    return error ? error : failure;
}

} // namespace tessel
