#include "platform/linux/LinuxPlatform.h"

#include "platform/base/NotificationCenter.h"
#include "platform/cloud/ProgressService.h"
#include "platform/linux/StartFolders.h"
#include "platform/linux/apps/DesktopApplications.h"
#include "platform/linux/apps/DesktopSharing.h"
#include "platform/linux/apps/RecentDocuments.h"
#include "platform/linux/cloud/CatalogStorage.h"
#include "platform/linux/cloud/DocumentStore.h"
#include "platform/linux/cloud/ExampleDrive.h"
#include "platform/linux/cloud/FileActivities.h"
#include "platform/linux/cloud/FileKeyValueStore.h"
#include "platform/linux/cloud/FileOffers.h"
#include "platform/linux/cloud/LocalCloudService.h"
#include "platform/linux/cloud/LocalQuota.h"
#include "platform/linux/coordination/LinuxFileCoordination.h"
#include "platform/linux/decoding/DecoderProgram.h"
#include "platform/linux/decoding/ProcessDecoder.h"
#include "platform/linux/files/AtomicFile.h"
#include "platform/linux/files/FileStateStore.h"
#include "platform/linux/files/FileUserDefaults.h"
#include "platform/linux/files/LinuxFolderReader.h"
#include "platform/linux/files/LinuxResourceValues.h"
#include "platform/linux/files/PosixFileManager.h"
#include "platform/linux/files/SharedMimeTypes.h"
#include "platform/linux/files/UnfinishedWork.h"
#include "platform/linux/preview/LinuxDocumentReader.h"
#include "platform/linux/text/EmbeddedStringTables.h"
#include "platform/linux/text/IcuTextServices.h"
#include "platform/linux/text/UserLocale.h"
#include "platform/log/UnifiedLog.h"
#include "platform/run/MainQueue.h"
#include "platform/ui/Device.h"

namespace tessel {

// In the order in which they need each other.
struct LinuxPlatform::Parts {
    Parts(const LinuxPlatformOptions& options, const std::string& locale, const URL& home)
        : clock(options.clock ? *options.clock : systemClock), text(locale, embeddedStringTables()),
          types(locale, SharedMimeTypes::userDataFolders()), unfinished(home.appending("unfinished")),
          documents(cloudStoreIn(home), text, types, unfinished),
          coordination({clock, mainQueue, log, text, files, documents, progress}, coordinationFolder(home)),
          defaults(home.appending("defaults.json"), log),
          keyValues(keyValueFileIn(home), mainQueue, notifications, log),
          offers(offersFileIn(home), mainQueue, notifications, log), states(home.appending("state.json"), log),
          sessions(home.appending("session.json"), log),
          apps(options.desktop ? *options.desktop : DesktopFolders::ofUser(), locale,
               {mainQueue, log, clock, text, types, coordination}),
          sharing(options.desktop ? *options.desktop : DesktopFolders::ofUser(), apps, log),
          decoder({mainQueue, log, types}, {.program = options.decoder.empty() ? decoderProgram() : options.decoder,
                                            .player = options.player.empty() ? playerProgram() : options.player})
    {
        device.sharing = sharing.sharing();
        if (isRightToLeft(locale))
            device.layoutDirection = LayoutDirection::RightToLeft;
    }

    [[nodiscard]] std::optional<Error> connect(const URL& home, const std::optional<URL>& drive)
    {
        auto opened = LocalCloudService::open(
            {home, drive, mainQueue, notifications, log, text, files, types, coordination, documents});
        if (!opened)
            return opened.error();
        cloud = std::move(opened.value());
        activities.emplace(activitiesIn(home), *cloud, log);
        quota.emplace(home, *cloud, offers, clock);
        files.beforeMove = [this](const URL& url) { cloud->documentIdentifiers().recognizeBeforeMove(url); };
        storage.emplace(*cloud, cloud->documentIdentifiers());
        resources.emplace(files, types, cloud->documentIdentifiers());
        folders.emplace(FolderServices{mainQueue, log, text, types, files, *cloud});
        openings.emplace(DocumentReaderServices{mainQueue, coordination, *resources, types});
        return std::nullopt;
    }

    void keepRecents(const DesktopFolders& desktop)
    {
        recents.emplace(desktop,
                        RecentDocumentsServices{notifications, log, text, types, *cloud, cloud->documentIdentifiers()});
        apps.documentOpened = [this](const URL& document) { recents->add(document); };
        activities->becameCurrent = [this](const ContinuationActivity& activity) { recents->add(activity); };
    }

    SystemClock systemClock;
    Clock& clock;
    MainQueue mainQueue{clock};
    NotificationCenter notifications;
    UnifiedLog log{clock};
    IcuTextServices text;
    SharedMimeTypes types;
    UnfinishedWork unfinished;
    PosixFileManager files{unfinished};
    DocumentStore documents;
    ProgressService progress{mainQueue};
    LinuxFileCoordination coordination;
    FileUserDefaults defaults;
    FileKeyValueStore keyValues;
    FileOffers offers;
    FileStateStore states;
    FileStateStore sessions;
    DesktopApplications apps;
    DesktopSharing sharing;
    ProcessDecoder decoder;
    Device device;
    std::unique_ptr<LocalCloudService> cloud;
    std::optional<RecentDocuments> recents;
    std::optional<FileActivities> activities;
    std::optional<LocalQuota> quota;
    std::optional<CatalogStorage> storage;
    std::optional<LinuxResourceValues> resources;
    std::optional<LinuxFolderReader> folders;
    std::optional<LinuxDocumentReader> openings;
};

Result<std::unique_ptr<LinuxPlatform>> LinuxPlatform::create(const LinuxPlatformOptions& options)
{
    const auto home = homeFolder(options.home);
    if (!home)
        return home.error();
    removeAbandonedTemporaryFiles(*home);
    std::optional<URL> drive;
    if (options.drive) {
        const auto folder = driveFolder(*options.drive);
        if (!folder)
            return folder.error();
        drive = *folder;
    }
    auto parts = std::make_unique<Parts>(options, options.locale.empty() ? userLocale() : options.locale, *home);
    parts->unfinished.clearUp();
    if (auto error = parts->connect(*home, drive))
        return *std::move(error);
    if (options.keepsRecents)
        parts->keepRecents(options.desktop ? *options.desktop : DesktopFolders::ofUser());
    return std::unique_ptr<LinuxPlatform>(new LinuxPlatform(std::move(parts)));
}

LinuxPlatform::LinuxPlatform(std::unique_ptr<Parts> parts) : parts_(std::move(parts))
{
}

LinuxPlatform::~LinuxPlatform()
{
    // Tasks hold controllers, and these folders that are open and documents that are followed.
    const platform::Scope scope(services());
    parts_->mainQueue.drop();
}

platform::Services LinuxPlatform::services()
{
    return {
        .clock = parts_->clock,
        .mainQueue = parts_->mainQueue,
        .notifications = parts_->notifications,
        .log = parts_->log,
        .text = parts_->text,
        .types = parts_->types,
        .files = parts_->files,
        .coordination = parts_->coordination,
        .resources = *parts_->resources,
        .folders = *parts_->folders,
        .cloud = *parts_->cloud,
        .progress = parts_->progress,
        .activities = *parts_->activities,
        .quota = *parts_->quota,
        .storage = *parts_->storage,
        .decoder = parts_->decoder,
        .documents = *parts_->openings,
        .apps = parts_->apps,
        .defaults = parts_->defaults,
        .keyValues = parts_->keyValues,
        .device = parts_->device,
    };
}

StateStore& LinuxPlatform::stateStore()
{
    return parts_->states;
}

StateStore& LinuxPlatform::sessionStore()
{
    return parts_->sessions;
}

} // namespace tessel
