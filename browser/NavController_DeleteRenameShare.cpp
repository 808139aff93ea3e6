#include "app/common/Log.h"
#include "app/common/TSDAdditions.h"
#include "browser/NavController.h"
#include "files/DRItem.h"
#include "files/FileUtils.h"
#include "files/RenamePrompt.h"
#include "files/UIUtils.h"
#include "platform/cloud/CloudService.h"
#include "platform/text/TextServices.h"

#include <algorithm>

namespace tessel {

namespace {

/// What could not be deleted.
struct Failures {
    std::int64_t count = 0;
    std::optional<Error> last = {};
};

Failures deleteItems(const std::vector<URL>& urls)
{
    TSD_FUNCTION("-[NavController showWarningAndDeleteURLs:usingView:withDocumentListController:finishedCompletion:]"
                 "_block_invoke");
    Failures failures;
    for (const auto& url : urls) {
        TSD_INFO("Deleting item %@", url);
        const auto error = FileUtils::remove(url);
        if (!error)
            continue;
        ++failures.count;
        failures.last = error;
        TSD_WARNING("Failed to delete URL %@: %{public}@", url, error->description);
    }
    return failures;
}

void showFailures(const Failures& failures, const std::shared_ptr<ViewController>& parent)
{
    if (failures.count == 1)
        UIUtils::showError(failures.last, parent);
    else if (failures.count > 1)
        UIUtils::showAlert(platform::installed().text.localizedCount(".DICT.CANNOT_DELETE_ITEMS.%d", failures.count),
                           "", parent);
}

bool isContainer(const URL& url)
{
    return platform::installed().cloud.isContainerTopFolder(url);
}

} // namespace

void NavController::showWarningAndDeleteURLs(const std::vector<URL>& urls, const std::shared_ptr<View>& usingView,
                                             const std::function<void()>& finishedCompletion)
{
    TSD_FUNCTION("-[NavController showWarningAndDeleteURLs:usingView:withDocumentListController:finishedCompletion:]");
    const auto finished = finishedCompletion ? finishedCompletion : [] {};
    const bool hasContainer = std::ranges::any_of(urls, isContainer);
    if (hasContainer && !std::ranges::all_of(urls, isContainer)) {
        TSD_ERROR("Not Deleting: mix of containers and items: %@", urls);
        finished();
        return;
    }
    if (std::ranges::any_of(urls, tsd_isDesktopOrDocumentsFolder)) {
        TSD_WARNING("Not deleting special folder: %@", urls);
        finished();
        UIUtils::showUnsupportedError(visibleViewController());
        return;
    }
    if (hasContainer) {
        finished();
        UIUtils::showUnsupportedError(visibleViewController());
        return;
    }
    UIUtils::showDeleteWarningAlert(urls, hasContainer, visibleViewController(), usingView, nullptr,
                                    [self = std::static_pointer_cast<NavController>(shared_from_this()), urls,
                                     finished](const std::shared_ptr<AlertAction>&, bool cancelled) {
                                        self->deleteWasAnswered(urls, cancelled, finished);
                                    });
}

void NavController::deleteWasAnswered(const std::vector<URL>& urls, bool cancelled,
                                      const std::function<void()>& finished)
{
    TSD_FUNCTION("-[NavController showWarningAndDeleteURLs:usingView:withDocumentListController:finishedCompletion:]"
                 "_block_invoke");
    Failures failures;
    if (cancelled) {
        TSD_USER_ACTION("Delete was Cancelled (nav)");
    } else {
        TSD_USER_ACTION("Delete was Confirmed (nav)");
        failures = deleteItems(urls);
    }
    finished();
    showFailures(failures, visibleViewController());
}

void NavController::showRenamePrompt(const URL& url)
{
    TSD_FUNCTION("-[NavController showRenamePrompt:]");
    const auto item = DRItem::initWithURL(url);
    if (!item)
        return;
    if (tsd_isDesktopOrDocumentsFolder(url)) {
        TSD_WARNING("Not renaming special folder: %@", url);
        UIUtils::showUnsupportedError(visibleViewController());
        return;
    }
    if (!item->renameable()) {
        TSD_WARNING("Not renaming an item whose name is not the user's: %@", url);
        UIUtils::showUnsupportedError(visibleViewController());
        return;
    }
    folderPromptAlert =
        RenamePrompt::newWithFilename(item->localizedName(), [url](const std::string& name, bool& done) {
            TSD_FUNCTION("-[NavController showRenamePrompt:]_block_invoke");
            done = false;
            if (name.empty())
                return FilenamePrompt::Text();
            TSD_USER_ACTION("Rename entry confirmed (nav)");
            const auto error = UIUtils::renameItemAtURL(url, name);
            done = !error;
            return FilenamePrompt::Text(UIUtils::bestMessage(error));
        });
    visibleViewController()->present(folderPromptAlert->alert, Animated::Yes);
}

} // namespace tessel
