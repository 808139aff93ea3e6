#include "files/LaunchUtils.h"

#include "app/common/Log.h"
#include "app/common/TSDAdditions.h"
#include "files/FileUtils.h"
#include "platform/cloud/CloudService.h"
#include "platform/documents/DocumentInteractionController.h"
#include "platform/documents/OSAlertPresenter.h"

#include <algorithm>

namespace tessel {

namespace {

using Applications = ApplicationRegistry::Applications;
using ApplicationPointer = std::shared_ptr<const ApplicationRecord>;

bool containsApplication(const Applications& applications, const ApplicationRecord& application)
{
    return std::any_of(applications.begin(), applications.end(),
                       [&](const auto& other) { return *other == application; });
}

ApplicationPointer firstThatOpensInPlace(const Applications& applications)
{
    const auto found = std::find_if(applications.begin(), applications.end(),
                                    [](const auto& application) { return application->supportsOpenInPlace; });
    return found == applications.end() ? nullptr : *found;
}

void logChoice(const URL& document, const ApplicationRecord& application)
{
    TSD_FUNCTION("+[LaunchUtils defaultAppForDocument:requireOpenIn:]");
    TSD_DEBUG("App for %@: %@, %@, %@, %@, %@, %@, %@, %@, %@, %@, %@", document, application.itemName,
              application.localizedName, application.localizedShortName, application.shortVersionString,
              application.vendorName, application.bundleIdentifier, application.bundleExecutable,
              application.bundleContainerURL, application.isInstalled ? 1 : 0, application.itemIdentifier, application);
}

ApplicationPointer chooseInDefaultContainer(const URL& document, RequireOpenIn requireOpenIn)
{
    TSD_FUNCTION("+[LaunchUtils defaultAppForDocument:requireOpenIn:]");
    if (FileUtils::isAudioVideoImageFile(document)) {
        TSD_DEBUG("Preferring GL due to file type, over default app to open %@", document);
        return nullptr;
    }
    const auto applications = LaunchUtils::availableAppsForDoc(DocumentRecord(document));
    if (applications.empty()) {
        TSD_DEBUG("No default app to open %@", document);
        return nullptr;
    }
    const auto& application = applications.front();
    logChoice(document, *application);
    if (requireOpenIn == RequireOpenIn::Yes && !application->supportsOpenInPlace) {
        TSD_DEBUG("App %@ does not support open in place. Ignoring", application);
        return nullptr;
    }
    if (application->bundleIdentifier == kOwnBundleIdentifier) {
        TSD_DEBUG("Ignoring %@ as default app", application);
        return nullptr;
    }
    return application;
}

/// One of the library's applications, if it will do: itself, or else another one that owns the document.
ApplicationPointer chooseForLibrary(const CloudContainer& library, const std::string& owner,
                                    const Applications& perfect)
{
    TSD_FUNCTION("+[LaunchUtils defaultAppForDocument:requireOpenIn:]");
    const auto application = platform::installed().apps.application(owner);
    if (!application || !application->supportsOpenInPlace) {
        const bool installed = application && application->isInstalled;
        TSD_DEBUG("Container %@: Default app (%@) %@", library.localizedName, owner,
                  installed ? "doesn't support open in place" : "not installed");
        return nullptr;
    }
    TSD_DEBUG("Container %@: Default app (%@) supports open in place", library.localizedName, owner);
    if (containsApplication(perfect, *application))
        return application;
    TSD_DEBUG("Container %@: Default app does NOT support/own this document type.", library.localizedName);
    if (auto fallback = firstThatOpensInPlace(perfect)) {
        TSD_DEBUG("Falling back to default open-in-place app instead: %@", fallback);
        return fallback;
    }
    TSD_DEBUG("No fallback app, using Glancia");
    return nullptr;
}

ApplicationPointer chooseInLibrary(const CloudContainer& library, const URL& document)
{
    const auto perfect = LaunchUtils::availableAppsForDoc(DocumentRecord(document));
    for (const auto& owner : library.owners)
        if (auto application = chooseForLibrary(library, owner, perfect))
            return application;
    return nullptr;
}

} // namespace

bool LaunchUtils::openInDefaultApp(const URL& url, const std::shared_ptr<ViewController>& viewController,
                                   RequireOpenIn requireOpenIn)
{
    TSD_FUNCTION("+[LaunchUtils openInDefaultApp:viewController:requireOpenIn:]");
    TSD_INFO("Opening document %@ in default app", url);
    // Whoever asks the user may go on long after this call.
    const auto opened = std::make_shared<bool>(false);
    const auto application = defaultAppForDocument(url, requireOpenIn);
    const auto document = application ? tsd_URLByResolvingBookmark(url) : std::nullopt;
    if (!document)
        return false;
    OSAlertPresenter::presentBeforeLeaving(*document, viewController, [document, application, opened] {
        DocumentInteractionController(*document).openInPlace(*application);
        *opened = true;
    });
    return *opened;
}

std::shared_ptr<const ApplicationRecord> LaunchUtils::defaultAppForDocument(const URL& url, RequireOpenIn requireOpenIn)
{
    TSD_FUNCTION("+[LaunchUtils defaultAppForDocument:requireOpenIn:]");
    if (!FileUtils::exists(url))
        TSD_DEBUG("Assuming apps can open a promised document...");
    const bool inDefaultContainer = isUrlInDefaultContainer(url);
    const auto container = inDefaultContainer ? nullptr : platform::installed().cloud.containerForURL(url);
    if (!inDefaultContainer && !container)
        return nullptr;
    const auto document = tsd_URLByResolvingBookmark(url);
    if (!document)
        return nullptr;
    return container ? chooseInLibrary(*container, *document) : chooseInDefaultContainer(*document, requireOpenIn);
}

std::optional<std::string> LaunchUtils::defaultAppNameForDocument(const URL& url, RequireOpenIn requireOpenIn)
{
    const auto application = defaultAppForDocument(url, requireOpenIn);
    return application ? std::optional(application->localizedName) : std::nullopt;
}

ApplicationRegistry::Applications LaunchUtils::availableAppsForDoc(const DocumentRecord& document)
{
    TSD_FUNCTION("+[LaunchUtils availableAppsForDoc:]");
    Applications perfect;
    perfect.reserve(8);
    const auto type = FileUtils::fileUTI(document.url());
    for (const auto& [rank, applications] : document.applicationsAvailableForOpening())
        for (const auto& application : applications) {
            if (rank != HandlerRank::kOwner) {
                TSD_DEBUG("UTI %{public}@: Found non-Owner '%{public}@' app %{public}@", type, rank, application);
            } else if (!application->supportsOpenInPlace) {
                TSD_DEBUG("UTI %{public}@: Found non-OpenInPlace app %{public}@", type, application);
            } else {
                TSD_DEBUG("UTI %{public}@: Found *perfect* app: %{public}@", type, application);
                perfect.push_back(application);
            }
        }
    return perfect;
}

bool LaunchUtils::isUrlInDefaultContainer(const URL& url)
{
    const auto& cloud = platform::installed().cloud;
    const auto container = cloud.containerForURL(url);
    return container && container->identifier == cloud.defaultContainer()->identifier;
}

} // namespace tessel
