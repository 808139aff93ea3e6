#include "app/common/Log.h"
#include "app/common/Settings.h"
#include "app/common/TSDAdditions.h"
#include "files/DRItem.h"
#include "platform/base/Platform.h"
#include "platform/cloud/CloudService.h"
#include "platform/documents/PeekController.h"
#include "platform/files/FileCoordinator.h"
#include "platform/files/FileManager.h"
#include "platform/run/MainQueue.h"
#include "platform/text/TextServices.h"
#include "platform/ui/NavigationController.h"
#include "preview/GlanciaItemController.h"
#include "preview/PreviewDetailsViewController.h"
#include "preview/PreviewItemManager.h"

#include <utility>

namespace tessel {

namespace {

constexpr double kRefreshDelay = 1; // seconds

} // namespace

std::optional<URL> PreviewItemManager::itemURL() const
{
    const std::lock_guard lock(mutex_);
    return itemURL_;
}

bool PreviewItemManager::isRegistered() const
{
    const std::lock_guard lock(mutex_);
    return filePresenterRegistered_;
}

void PreviewItemManager::registerAsFilePresenter()
{
    setRegistered(true);
    registerRelayaActivity();
}

void PreviewItemManager::unregisterAsFilePresenter()
{
    setRegistered(false);
    unregisterRelayaActivity();
}

// Whoever finds another thread at it leaves the rest to that one, which looks once more at its end. Nobody waits:
// removing a presenter waits for what it is just being told, and that may come here.
void PreviewItemManager::setRegistered(bool registered)
{
    {
        const std::lock_guard lock(mutex_);
        filePresenterRegistered_ = registered;
    }
    bool isDone = false;
    while (!isDone) {
        std::unique_lock lock(registrationMutex_, std::try_to_lock);
        if (!lock)
            return;
        const bool wanted = isRegistered();
        if (wanted && !std::exchange(isPresenter_, true))
            FileCoordinator::addFilePresenter(*this);
        else if (!wanted && std::exchange(isPresenter_, false))
            FileCoordinator::removeFilePresenter(*this);
        lock.unlock();
        isDone = isRegistered() == wanted;
    }
}

void PreviewItemManager::didBecomeActiveNotification()
{
    TSD_FUNCTION("-[PreviewItemManager didBecomeActiveNotification:]");
    TSD_DEBUG("Becoming active for %@", itemURL());
    registerAsFilePresenter();
    if (std::exchange(hasResigned_, false))
        catchUp();
}

// Nobody has told of what happened while the program was away.
void PreviewItemManager::catchUp()
{
    const auto url = itemURL();
    if (url && DRItem::initWithURL(url))
        refreshItem(*url);
    else if (url)
        leavePreview();
}

void PreviewItemManager::willResignActiveNotification()
{
    TSD_FUNCTION("-[PreviewItemManager willResignActiveNotification:]");
    TSD_DEBUG("Resigning active for %@", itemURL());
    hasResigned_ = true;
    unregisterAsFilePresenter();
}

void PreviewItemManager::registerRelayaActivity()
{
    const auto url = itemURL();
    if (!url)
        return;
    platform::installed().cloud.bookmarkableString(
        tsd_URLByResolvingAlias(*url), [weak = weak_from_this(), url](const Result<std::string>& bookmark) {
            TSD_FUNCTION("-[PreviewItemManager registerRelayaActivity]_block_invoke");
            if (!bookmark && bookmark.error() == Error{Domain::Cloud, CloudErrorCode::kNotInDrive, {}, {}})
                TSD_INFO("Requesting a bookmarkable string returned %@", bookmark.error());
            else if (!bookmark)
                TSD_ERROR("Requesting a bookmarkable string returned %@", bookmark.error());
            else if (bookmark->empty())
                TSD_ERROR("Requesting a bookmarkable string returned an empty bookmark");
            const auto self = bookmark ? weak.lock() : nullptr;
            if (self && self->isRegistered() && self->itemURL() == url)
                self->registerRelayaActivityForBookmark(*bookmark);
        });
}

void PreviewItemManager::registerRelayaActivityForBookmark(const std::string& bookmark)
{
    if (bookmark.empty())
        return;
    const auto activity = std::make_shared<const ContinuationActivity>(
        ContinuationActivity{.type = Settings::relayaTesselActivityType(),
                             .isEligibleForContinuation = true,
                             .userInfo = {{ContinuationActivity::kDocumentURLKey, bookmark}}});
    {
        const std::lock_guard lock(mutex_);
        relayaActivity_ = activity;
    }
    platform::installed().activities.becomeCurrent(activity);
}

void PreviewItemManager::unregisterRelayaActivity()
{
    std::shared_ptr<const ContinuationActivity> activity;
    {
        const std::lock_guard lock(mutex_);
        activity = std::exchange(relayaActivity_, nullptr);
    }
    if (activity)
        platform::installed().activities.resignCurrent(*activity);
}

std::shared_ptr<const ContinuationActivity> PreviewItemManager::relayaActivity() const
{
    const std::lock_guard lock(mutex_);
    return relayaActivity_;
}

std::optional<URL> PreviewItemManager::presentedItemURL() const
{
    TSD_FUNCTION("-[PreviewItemManager presentedItemURL]");
    const auto url = itemURL();
    TSD_DEBUG("presentedItemURL %@", url);
    return url;
}

void PreviewItemManager::presentedItemDidChange()
{
    TSD_FUNCTION("-[PreviewItemManager presentedItemDidChange]");
    TSD_INFO("presentedItemDidChange: %@", itemURL());
    {
        const std::lock_guard lock(mutex_);
        if (std::exchange(refreshPending_, true))
            return;
    }
    DispatchQueue::main().after(kRefreshDelay, [weak = weak_from_this()] {
        if (const auto self = weak.lock())
            self->refreshAfterChange();
    });
}

// At what happened between the reading of the item and the moment from which on it is told.
void PreviewItemManager::lookOnceMore(const URL& url)
{
    if (itemURL() != url || !isRegistered())
        return;
    const auto item = DRItem::initWithURL(url);
    const auto date = item ? item->contentModificationDate() : std::nullopt;
    if (!item)
        leavePreview();
    else if (modifiedDate && date && *modifiedDate < *date)
        refreshItem(url);
}

void PreviewItemManager::refreshAfterChange()
{
    {
        const std::lock_guard lock(mutex_);
        refreshPending_ = false; // what changes from now on is another change
    }
    if (const auto url = itemURL())
        refreshItem(*url);
}

void PreviewItemManager::refreshItem(const URL& url)
{
    TSD_FUNCTION("-[PreviewItemManager refreshItem:]");
    const auto item = DRItem::initWithURL(url);
    if (!item)
        return;
    const auto before = itemURL();
    const bool isElsewhere = !before || before->path() != item->url()->path();
    if (isElsewhere)
        TSD_ERROR("UNEXPECTED: path changed but we only got a presentedItemDidChange: %@ to %@",
                  before ? std::optional(before->path()) : std::nullopt, item->url()->path());
    const auto date = item->contentModificationDate();
    TSD_DEBUG("%@: modDate %{public}@ vs %{public}@", item->url(), modifiedDate, date);
    const bool isNewer = modifiedDate && date && *modifiedDate < *date;
    modifiedDate = date;
    setItem(item, isElsewhere);
    TSD_INFO("Refreshing %@", itemURL());
    currentGlanciaController()->setTitle(platform::installed().text.displayName(item->localizedName().value_or("")));
    refreshViews(isNewer, isElsewhere);
}

void PreviewItemManager::refreshViews(bool isNewer, bool isElsewhere)
{
    TSD_FUNCTION("-[PreviewItemManager refreshItem:]");
    const auto preview = currentGlanciaController();
    if (preview->isVisible() && isNewer) {
        TSD_DEBUG("Refreshing the current preview item");
        preview->refreshCurrentPreviewItem();
    }
    if (detailsViewController && (isElsewhere || isNewer))
        detailsViewController->refreshItem();
}

void PreviewItemManager::presentedItemDidMoveToURL(const URL& movedTo)
{
    TSD_FUNCTION("-[PreviewItemManager presentedItemDidMoveToURL:]");
    // A link that is presented stays the item, wherever it leads.
    const auto folder = platform::installed().files.resolvingSymbolicLinks(movedTo.deletingLastPathComponent());
    const auto url = folder.appending(movedTo.lastPathComponent());
    const auto before = itemURL();
    TSD_INFO("presentedItemDidMoveToURL: %@ changed to %@", before, url);
    const auto& cloud = platform::installed().cloud;
    if (cloud.isInTrash(url) || !cloud.isInDrive(folder))
        return accommodatePresentedItemDeletionWithCompletionHandler([](const std::optional<Error>&) {});
    if (before && before->path() == url.path()) {
        TSD_WARNING("UNEXPECTED: duplicate calls to presentedItemDidMoveToURL: %@", url.path());
        return;
    }
    DispatchQueue::main().async([weak = weak_from_this(), url] {
        if (const auto self = weak.lock())
            self->itemMoved(url);
    });
}

void PreviewItemManager::itemMoved(const URL& url)
{
    TSD_FUNCTION("-[PreviewItemManager presentedItemDidMoveToURL:]_block_invoke");
    const auto before = itemURL();
    if (before && before->path() == url.path()) {
        TSD_WARNING("UNEXPECTED: duplicate calls to presentedItemDidMoveToURL: %@", url.path());
        return;
    }
    const auto item = DRItem::initWithURL(url);
    if (!item)
        return; // it has moved on, or is gone, which will be told
    if (isOnTop())
        setItem(item);
    else
        static_cast<void>(prepareToPreviewItem(item));
    if (detailsViewController)
        detailsViewController->refreshItem();
}

void PreviewItemManager::accommodatePresentedItemDeletionWithCompletionHandler(const Completion& completion)
{
    TSD_FUNCTION("-[PreviewItemManager accommodatePresentedItemDeletionWithCompletionHandler:]");
    TSD_INFO("Accommodate deletion: %@", itemURL());
    isLeaving_ = true; // who deletes goes on, and perhaps fails, as soon as it has its answer
    completion(std::nullopt);
    unregisterAsFilePresenter();
    // No copy stays behind on this thread: its queue cannot end on it.
    if (auto self = weak_from_this().lock())
        DispatchQueue::main().async([self = std::move(self)] { self->leavePreview(); });
}

void PreviewItemManager::leavePreview()
{
    const auto navigation = navigationController.lock();
    isLeaving_ = false;
    if (std::exchange(deletionFailed_, false)) {
        if (!hasResigned_)
            registerAsFilePresenter();
        return;
    }
    if (!navigation)
        return;
    const auto peek = std::dynamic_pointer_cast<PeekController>(navigation->visibleViewController());
    if (peek && shows(peek->topViewController()))
        peek->release();
    else if (isOnTop())
        navigation->popViewController(Animated::Yes);
}

void PreviewItemManager::accommodatePresentedSubitemDeletionAtURL(const URL& url, const Completion& completion)
{
    TSD_FUNCTION("-[PreviewItemManager accommodatePresentedSubitemDeletionAtURL:completionHandler:]");
    TSD_INFO("%@ accommodate subitem deletion at %@", itemURL(), url);
    completion(std::nullopt);
    unregisterAsFilePresenter();
    DispatchQueue::main().after(kRefreshDelay, [weak = weak_from_this()] {
        if (const auto self = weak.lock())
            self->afterSubitemDeletion();
    });
}

void PreviewItemManager::afterSubitemDeletion()
{
    TSD_FUNCTION("-[PreviewItemManager accommodatePresentedSubitemDeletionAtURL:completionHandler:]_block_invoke");
    TSD_INFO("Refreshing %@", itemURL());
    if (currentGlanciaController()->isVisible())
        currentGlanciaController()->refreshCurrentPreviewItem();
    if (!hasResigned_)
        registerAsFilePresenter(); // what else happens to the package counts as well
    const std::lock_guard lock(mutex_);
    refreshPending_ = false;
}

} // namespace tessel
