#include "app/common/Log.h"
#include "files/FileUtils.h"
#include "platform/cloud/CloudService.h"
#include "platform/files/FileCoordinator.h"
#include "platform/files/FileManager.h"
#include "platform/text/GeneralError.h"

namespace tessel {

namespace {

std::optional<Error> createFolder(const URL& folder)
{
    TSD_FUNCTION("+[FileUtils mkdir:]_block_invoke");
    auto error = platform::installed().files.createDirectory(folder, WithIntermediates::Yes);
    if (error)
        TSD_ERROR("failed to create directory:'%@': %@", folder, error);
    else
        TSD_INFO("Created directory: '%@'", folder);
    return error;
}

std::optional<Error> removeUnlessChanged(const URL& item, const Value& dateBefore)
{
    TSD_FUNCTION("+[FileUtils remove:]_block_invoke");
    const auto value = FileUtils::getResourceValue(ResourceKey::ContentModificationDate, item);
    const auto* date = value.get<Date>();
    const auto changed = generalError(ErrorCode::kUserCancelled);
    const bool isUnchanged = date && value == dateBefore;
    auto error = isUnchanged ? platform::installed().files.removeItem(item, *date) : std::optional(changed);
    if (error == changed) {
        error = changed;
        TSD_INFO("Date changed during delete (user chose Keep?) -- preserving document: '%@'", item);
    } else if (error) {
        TSD_ERROR("failed to delete item:'%@': %@", item, error);
    } else {
        TSD_INFO("Deleted item: '%@'", item);
    }
    return error;
}

std::optional<Error> moveCoordinated(FileCoordinator& coordinator, const URL& source, const URL& destination)
{
    TSD_FUNCTION("+[FileUtils move:to:]_block_invoke");
    coordinator.itemWillMove(source, destination);
    TSD_DEBUG("Moving src2:  '%@'", source);
    TSD_DEBUG("Moving dest2: '%@'", destination);
    auto error = platform::installed().files.moveItem(source, destination);
    if (error) {
        TSD_WARNING("Failed to move: %@", error);
    } else {
        TSD_INFO("Move successful");
        coordinator.itemDidMove(source, destination);
    }
    return error;
}

/// An error for a file that would take a folder's place, or a folder a file's.
std::optional<Error> mismatchOfKinds(const URL& source, const URL& destination)
{
    TSD_FUNCTION("+[FileUtils move:to:]");
    if (FileUtils::isFile(source) && FileUtils::isDir(destination)) {
        TSD_ERROR("Move: must move a file to a file (dest is a dir)");
        return generalError(ErrorCode::kUnsupported);
    }
    if (FileUtils::isDir(source) && FileUtils::isFile(destination)) {
        TSD_ERROR("Move: must move a dir to a dir (dest is a file)");
        return generalError(ErrorCode::kUnsupported);
    }
    return std::nullopt;
}

} // namespace

std::optional<Error> FileUtils::mkdir(const URL& url)
{
    TSD_FUNCTION("+[FileUtils mkdir:]");
    TSD_DEBUG("Creating directory: '%@'", url);
    std::optional<Error> accessError;
    auto error = FileCoordinator().coordinateWriting(url, WritingOptions::None,
                                                     [&](const URL& folder) { accessError = createFolder(folder); });
    if (!error)
        error = accessError;
    TSD_DEBUG("Coordinated Write returned %@", error);
    return error;
}

std::optional<Error> FileUtils::remove(const URL& url)
{
    TSD_FUNCTION("+[FileUtils remove:]");
    TSD_DEBUG("Removing item: '%@'", url);
    const auto dateBefore = getResourceValue(ResourceKey::ContentModificationDate, url);
    std::optional<Error> accessError;
    auto error = FileCoordinator().coordinateWriting(url, WritingOptions::ForDeleting, [&](const URL& item) {
        accessError = removeUnlessChanged(item, dateBefore);
    });
    if (!error)
        error = accessError;
    TSD_INFO("Coordinated Write returned %@", error);
    return error;
}

std::optional<Error> FileUtils::move(const URL& source, const URL& to)
{
    TSD_FUNCTION("+[FileUtils move:to:]");
    TSD_DEBUG("Moving src1:  '%@'", source);
    TSD_DEBUG("Moving dest1: '%@'", to);
    if (source.path() == to.path()) {
        TSD_DEBUG("Move: src and dest are the same");
        return std::nullopt;
    }
    if (!exists(source))
        TSD_INFO("Move: source filename does not exist, must be a fault.");
    if (auto refusal = mismatchOfKinds(source, to))
        return refusal;
    FileCoordinator coordinator;
    std::optional<Error> accessError;
    auto error = coordinator.coordinateWriting(source, WritingOptions::ForMoving, to, WritingOptions::ForReplacing,
                                               [&](const URL& from, const URL& destination) {
                                                   accessError = moveCoordinated(coordinator, from, destination);
                                               });
    if (!error)
        error = accessError;
    if (error)
        TSD_WARNING("Move failed: %@", error);
    return error;
}

bool FileUtils::evictDocument(const URL& url)
{
    TSD_FUNCTION("+[FileUtils evictDocument:]");
    const auto error = platform::installed().cloud.evictDocument(url);
    if (error)
        TSD_WARNING("Evict error: %@", error);
    return !error;
}

} // namespace tessel
