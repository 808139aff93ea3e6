#include "platform/linux/cloud/DrivePreparation.h"

#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/cloud/ContainerDeclaration.h"
#include "platform/linux/cloud/ExampleDrive.h"
#include "platform/linux/cloud/LocalCloudService.h"
#include "platform/linux/files/FolderLock.h"
#include "platform/linux/files/SetAside.h"
#include "platform/log/UnifiedLog.h"

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <system_error>

namespace tessel {

namespace {

constexpr std::chrono::seconds kLockLimit(30); // the example drive on a slow disk

// A link counts itself: what it leads to may be not mounted.
bool exists(const URL& url)
{
    std::error_code ignored;
    return std::filesystem::exists(std::filesystem::symlink_status(url.path(), ignored));
}

std::string userName()
{
    const auto* user = ::getpwuid(::geteuid());
    return user && user->pw_name[0] != '\0' ? user->pw_name : "me";
}

bool failedWith(int generalCode, const Result<PreparedDrive>& drive)
{
    return !drive && drive.error() == Error{Domain::General, generalCode, {}, {}};
}

// The default container's row in the catalogue says that the synced root has been made. Without the row a missing root
// means a first start; with it the root is elsewhere, not mounted, and is never made anew.
class Preparation {
public:
    explicit Preparation(const CloudOptions& options)
        : options_(options), root_(syncedRootIn(options.home)), file_(catalogIn(options.home))
    {
    }

    [[nodiscard]] Result<PreparedDrive> run() const
    {
        auto drive = opened();
        if (drive && isComplete(*drive))
            return drive;
        const FolderLock lock(options_.home, kLockLimit);
        return lock.isHeldElsewhere() ? heldElsewhere() : made();
    }

private:
    // Reads all that the catalogue holds, so that damage shows now and not in the middle of the user's work.
    [[nodiscard]] Result<PreparedDrive> opened() const { return read(Catalog::open(file_, root_)); }

    [[nodiscard]] static Result<PreparedDrive> read(Result<std::unique_ptr<Catalog>> catalog)
    {
        if (!catalog)
            return catalog.error();
        if (const auto token = (*catalog)->identityToken(); !token)
            return token.error();
        auto containers = (*catalog)->containers();
        if (!containers)
            return containers.error();
        return PreparedDrive{std::move(catalog.value()), std::move(containers.value())};
    }

    // A catalogue that was made while the root was not mounted has yet to learn of the libraries.
    [[nodiscard]] bool isComplete(const PreparedDrive& drive) const
    {
        return options_.drive || drive.containers.size() > 1 ||
               (drive.containers.size() == 1 && librariesInFolder(root_).empty());
    }

    [[nodiscard]] Error heldElsewhere() const
    {
        auto error = errnoError(EBUSY, options_.home);
        error.description = "Another instance is still preparing the folder: " + options_.home.path();
        return error;
    }

    // Under the lock; another instance may have made everything meanwhile.
    [[nodiscard]] Result<PreparedDrive> made() const
    {
        auto drive = opened();
        if (failedWith(ErrorCode::kReadCorrupt, drive))
            drive = withCatalogInPlaceOfDamagedOne();
        else if (failedWith(ErrorCode::kNoSuchFile, drive))
            drive = read(Catalog::make(file_, root_, userName()));
        if (!drive || isComplete(*drive))
            return drive;
        return completed(std::move(drive.value()));
    }

    [[nodiscard]] Result<PreparedDrive> withCatalogInPlaceOfDamagedOne() const
    {
        options_.log.write(LogLevel::Error, "The catalogue %@ is damaged: setting it aside and making a new one",
                           file_);
        for (const auto* suffix : {"", "-wal", "-shm"})
            if (auto error = setAside(URL::file(file_.path() + suffix)))
                return *std::move(error);
        auto drive = read(Catalog::make(file_, root_, userName()));
        const bool rootWasMade = exists(root_) || exists(cloudStoreIn(options_.home));
        if (drive && rootWasMade)
            return extended(std::move(drive.value()));
        return drive;
    }

    [[nodiscard]] Result<PreparedDrive> completed(PreparedDrive drive) const
    {
        if (drive.containers.empty() && !exists(root_))
            if (auto error = makeExampleDrive(options_.home, root_, options_.types))
                return *std::move(error);
        return extended(std::move(drive));
    }

    [[nodiscard]] Result<PreparedDrive> extended(PreparedDrive drive) const
    {
        auto containers = librariesInFolder(root_);
        containers.push_back(std::make_shared<const CloudContainer>(defaultContainerIn(root_)));
        if (auto error = drive.catalog->addContainers(containers))
            return *std::move(error);
        return read(std::move(drive.catalog));
    }

    const CloudOptions& options_;
    const URL root_;
    const URL file_;
};

} // namespace

URL syncedRootIn(const URL& home)
{
    return home.appending("Mobile Documents");
}

URL catalogIn(const URL& home)
{
    return home.appending("catalog.sqlite");
}

Result<PreparedDrive> prepareDrive(const CloudOptions& options)
{
    return Preparation(options).run();
}

} // namespace tessel
