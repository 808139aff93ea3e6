#include "app/common/Log.h"
#include "app/common/TSDAdditions.h"
#include "browser/ItemWork.h"
#include "browser/MenuEnableChecks.h"
#include "browser/NavController.h"
#include "files/DRItem.h"
#include "files/FileUtils.h"
#include "files/RenamePrompt.h"
#include "files/UIUtils.h"
#include "platform/cloud/CloudService.h"
#include "platform/documents/DocumentInteractionController.h"
#include "platform/text/TextServices.h"

#include <algorithm>

namespace tessel {

namespace {

/// What could not be deleted.
struct Failures {
    std::int64_t count = 0;
    std::optional<Error> last = {}; ///< none for what was refused

    void add(const std::optional<Error>& error)
    {
        ++count;
        if (error)
            last = error;
    }
};

std::shared_ptr<const CloudContainer> driveContainer()
{
    return platform::installed().cloud.defaultContainer();
}

/// Whether it is the top folder of an app library, or of the drive itself.
bool isContainer(const URL& url)
{
    const auto drive = driveContainer();
    return platform::installed().cloud.isContainerTopFolder(url) || (drive && drive->documentsURL == url);
}

void deleteItem(const URL& url, Failures& failures)
{
    TSD_FUNCTION("-[NavController showWarningAndDeleteURLs:usingView:withDocumentListController:finishedCompletion:]"
                 "_block_invoke");
    TSD_INFO("Deleting item %@", url);
    const auto error = FileUtils::remove(url);
    if (!error)
        return;
    failures.add(error);
    TSD_WARNING("Failed to delete URL %@: %{public}@", url, error->description);
}

void deleteContainer(const URL& url, Failures& failures)
{
    TSD_FUNCTION("-[NavController showWarningAndDeleteURLs:usingView:withDocumentListController:finishedCompletion:]"
                 "_block_invoke");
    auto& cloud = platform::installed().cloud;
    const auto drive = driveContainer();
    std::shared_ptr<const CloudContainer> container;
    const auto lookUpError = FileUtils::containerAndRelativePathforURL(url, &container, nullptr);
    if (lookUpError || !container || container->identifier.empty()) {
        failures.add(std::nullopt);
        TSD_WARNING("No container for URL %@: %{public}@", url, lookUpError);
        return;
    }
    if (drive && container->identifier == drive->identifier) {
        failures.add(std::nullopt);
        TSD_ERROR("NOT Deleting root container %{public}@", *container);
        return;
    }
    TSD_INFO("Deleting container %{public}@", *container);
    if (const auto error = cloud.deleteAllContents(*container)) {
        failures.add(error);
        TSD_WARNING("Failed to delete container %{public}@: %{public}@", *container, error->description);
    }
}

void showFailures(const Failures& failures, const std::shared_ptr<ViewController>& parent)
{
    if (failures.count == 1)
        UIUtils::showError(failures.last, parent);
    else if (failures.count > 1)
        UIUtils::showAlert(platform::installed().text.localizedCount(".DICT.CANNOT_DELETE_ITEMS.%d", failures.count),
                           "", parent);
}

/// A line across the middle of the view.
Rect middleOf(const View& view)
{
    const auto bounds = view.bounds();
    return {bounds.x, bounds.y + bounds.height / 2, bounds.width, 0};
}

} // namespace

void NavController::showWarningAndDeleteDocument()
{
    TSD_FUNCTION("-[NavController showWarningAndDeleteDocument:]");
    TSD_USER_ACTION("Pressed Delete (nav)");
    const auto list = getTopDocumentListController();
    if (!list)
        return;
    const auto selected = list->selectedItemURLs();
    TSD_INFO("Pressed Delete after selecting %{public}@ items: %@", selected.size(), selected);
    showWarningAndDeleteURLs(selected, nullptr, list, {});
}

void NavController::showWarningAndDeleteURLs(const std::vector<URL>& urls, const std::shared_ptr<View>& usingView,
                                             const std::shared_ptr<DocumentListController>& list,
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
    if (MenuEnableChecks::isDesktopOrDocumentsInURLArray(urls)) {
        TSD_WARNING("Not deleting special folder: %@", urls);
        finished();
        UIUtils::showUnsupportedError(visibleViewController());
        return;
    }
    UIUtils::showDeleteWarningAlert(urls, hasContainer, visibleViewController(), usingView, barButtonDeleteItem,
                                    [self = std::static_pointer_cast<NavController>(shared_from_this()), urls, list,
                                     finished](const std::shared_ptr<AlertAction>&, bool cancelled) {
                                        self->deleteWasAnswered(urls, cancelled, list, finished);
                                    });
}

void NavController::deleteWasAnswered(const std::vector<URL>& urls, bool cancelled,
                                      const std::shared_ptr<DocumentListController>& list,
                                      const std::function<void()>& finished)
{
    TSD_FUNCTION("-[NavController showWarningAndDeleteURLs:usingView:withDocumentListController:finishedCompletion:]"
                 "_block_invoke");
    if (cancelled) {
        TSD_USER_ACTION("Delete was Cancelled (nav)");
        finished();
        return;
    }
    TSD_USER_ACTION("Delete was Confirmed (nav)");
    if (list)
        setEditModeAndUpdateUI(false, list);
    const auto self = std::static_pointer_cast<NavController>(shared_from_this());
    const auto failures = std::make_shared<Failures>();
    ItemWork::run({.title = platform::installed().text.localizedCount(".DICT.DELETING_ITEMS.%d",
                                                                      static_cast<std::int64_t>(urls.size())),
                   .count = urls.size(),
                   .step =
                       [urls, failures](std::size_t index) {
                           if (isContainer(urls[index]))
                               deleteContainer(urls[index], *failures);
                           else
                               deleteItem(urls[index], *failures);
                       },
                   .finished =
                       [self, failures, finished] {
                           finished();
                           showFailures(*failures, self->visibleViewController());
                       }},
                  self);
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

void NavController::showDIC(const std::shared_ptr<View>& originatingView, const std::optional<URL>& url,
                            const std::function<void()>& completion)
{
    TSD_FUNCTION("-[NavController showDIC:url:completion:]");
    TSD_USER_ACTION("Show Share Sheet (nav)");
    TSD_INFO("showDIC: %@", url);
    if (!url) {
        TSD_WARNING("showDIC: url is wrong class: %@", StaticText("(null)"));
        return;
    }
    auto document = *url;
    if (const auto resolved = tsd_URLByResolvingBookmark(*url); resolved && *resolved != *url) {
        TSD_INFO("URL resolved to %@", resolved);
        document = *resolved;
    }
    performActionCompletionBlock = completion;
    const auto sheet = std::make_shared<DocumentInteractionController>(document);
    if (isContainer(document))
        if (const auto container = platform::installed().cloud.containerForURL(document))
            sheet->name = container->localizedName;
    documentInteractionController = sheet;
    sheet->presentOptionsMenu(originatingView ? middleOf(*originatingView) : Rect(),
                              originatingView ? originatingView : view().shared_from_this(), Animated::Yes);
}

} // namespace tessel
