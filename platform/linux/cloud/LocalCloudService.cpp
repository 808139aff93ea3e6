#include "platform/linux/cloud/LocalCloudService.h"

#include "platform/base/NotificationCenter.h"
#include "platform/files/FileManager.h"
#include "platform/linux/base/UTF8.h"
#include "platform/linux/cloud/ContainerDeclaration.h"
#include "platform/linux/cloud/DrivePreparation.h"
#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/cloud/TagAttribute.h"
#include "platform/log/UnifiedLog.h"
#include "platform/run/MainQueue.h"
#include "platform/text/TextServices.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace tessel {

namespace {

constexpr int kFormattingError = 2048;
constexpr std::size_t kMaximumNameLength = 255; // bytes

// C0, DEL, and C1 as UTF-8 writes it (C2 80 to C2 9F).
bool hasControlCharacters(std::string_view text)
{
    unsigned char before = 0;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x20 || byte == 0x7f || (before == 0xc2 && byte < 0xa0))
            return true;
        before = byte;
    }
    return false;
}

bool isFolder(const URL& url)
{
    std::error_code ignored;
    return std::filesystem::is_directory(url.path(), ignored);
}

} // namespace

Result<std::unique_ptr<LocalCloudService>> LocalCloudService::open(const CloudOptions& options)
{
    auto prepared = prepareDrive(options);
    if (!prepared)
        return prepared.error();
    auto& drive = prepared.value();
    return std::unique_ptr<LocalCloudService>(
        new LocalCloudService(options, std::move(drive.catalog), drive.containers));
}

LocalCloudService::LocalCloudService(const CloudOptions& options, std::unique_ptr<Catalog> catalog,
                                     const Catalog::Containers& containers)
    : options_(options), catalog_(std::move(catalog)), places_(options.files),
      identifiers_(std::make_unique<DocumentIdentifiers>(
          catalogIn(options.home), options.drive ? options.drive->path() : std::string(), places_))
{
    const auto root = syncedRootIn(options.home);
    auto defaultContainer = defaultContainerIn(root);
    defaultContainer.localizedName = options.text.localized("Tessel Drive");
    if (options.drive)
        defaultContainer.documentsURL = *options.drive;
    places_.add(std::move(defaultContainer), containerFolderName(kDefaultContainerIdentifier));
    (void)identityToken();
    if (options.drive)
        return;
    for (const auto& container : containers)
        if (container->identifier != kDefaultContainerIdentifier)
            places_.add(*container, container->documentsURL.path().substr(root.path().size() + 1));
}

std::optional<Data> LocalCloudService::identityToken() const
{
    const std::lock_guard lock(mutex_);
    const auto token = catalog_->identityToken();
    if (token)
        lastToken_ = *token;
    else if (isReadable_)
        options_.log.write(LogLevel::Error, "Cannot read who is signed in: %@", token.error());
    isReadable_ = static_cast<bool>(token);
    return lastToken_;
}

std::optional<Error> LocalCloudService::signIn(const std::string& accountName)
{
    auto error = refusalOfName(accountName);
    if (!error)
        error = catalog_->signIn(accountName);
    if (!error) {
        forgetToken();
        announceIdentityChange();
    }
    return error;
}

std::optional<Error> LocalCloudService::signOut()
{
    auto error = catalog_->signOut();
    if (!error) {
        forgetToken();
        announceIdentityChange();
    }
    return error;
}

// Of an account that is no longer the one signed in.
void LocalCloudService::forgetToken()
{
    const std::lock_guard lock(mutex_);
    lastToken_.reset();
}

std::optional<Error> LocalCloudService::refusalOfName(const std::string& accountName) const
{
    const auto refusal = [this](const char* reason) {
        const auto text = options_.text.localized(reason);
        return Error{Domain::General, kFormattingError, text, text};
    };
    if (accountName.empty())
        return refusal("An account needs a name.");
    if (accountName.size() > kMaximumNameLength)
        return refusal("The name of the account is too long.");
    if (!isValidUTF8(accountName) || hasControlCharacters(accountName))
        return refusal("The name of the account has characters that cannot be used.");
    return std::nullopt;
}

void LocalCloudService::announceIdentityChange()
{
    options_.mainQueue.async(
        [&notifications = options_.notifications] { notifications.post(kCloudIdentityChangedNotification); });
}

std::shared_ptr<const CloudContainer> LocalCloudService::defaultContainer() const
{
    return places_.all().front().container;
}

std::vector<std::shared_ptr<const CloudContainer>> LocalCloudService::libraries() const
{
    std::vector<std::shared_ptr<const CloudContainer>> libraries;
    for (std::size_t i = 1; i < places_.all().size(); ++i)
        if (const auto& container = places_.all()[i].container; isFolder(container->documentsURL))
            libraries.push_back(container);
    return libraries;
}

std::shared_ptr<const CloudContainer> LocalCloudService::containerForURL(const URL& url) const
{
    const auto* place = places_.holding(places_.withFolderResolved(url));
    return place ? place->container : nullptr;
}

bool LocalCloudService::isContainerTopFolder(const URL& url) const
{
    // Of thousands of items most need no look at the file system.
    const bool isCalledSo = std::any_of(places_.all().begin() + 1, places_.all().end(), [&](const auto& place) {
        return place.realDocumentsURL.lastPathComponent() == url.lastPathComponent();
    });
    if (!isCalledSo)
        return false;
    const auto location = places_.withFolderResolved(url);
    return std::any_of(places_.all().begin() + 1, places_.all().end(),
                       [&](const auto& place) { return place.realDocumentsURL == location; });
}

bool LocalCloudService::isInDrive(const URL& url) const
{
    return places_.holding(options_.files.resolvingSymbolicLinks(url)) != nullptr;
}

bool LocalCloudService::isInTrash(const URL& url) const
{
    const auto trash = places_.all().front().realDocumentsURL.appending(".Trash");
    return trash.contains(places_.withFolderResolved(url)) ||
           trash.contains(options_.files.resolvingSymbolicLinks(url));
}

Result<std::vector<std::string>> LocalCloudService::tagNames(const URL& url) const
{
    auto tags = readTagNames(url);
    if (!tags && tags.error() == Error{Domain::General, ErrorCode::kNoSuchFile, {}, {}})
        return readTagNames(placeholderURL(url));
    return tags;
}

} // namespace tessel
