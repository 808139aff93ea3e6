#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"
#include "platform/base/Value.h"
#include "platform/cloud/CloudContainer.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tessel {

/// Posted on the main thread after the signed-in account changed.
inline constexpr const char* kCloudIdentityChangedNotification = "CloudIdentityChanged";

/// The cloud document service on this device: who is signed in, which containers there are, and what belongs to the
/// drive. Safe to use from any thread but for `signIn` and `signOut`, which belong to the main thread.
class CloudService {
public:
    virtual ~CloudService() = default;

    /// Equal for the same account, different for another; none while nobody is signed in.
    [[nodiscard]] virtual std::optional<Data> identityToken() const = 0;

    /// Signs in, in place of whoever was; the account is made when it is new. Posts the notification.
    [[nodiscard]] virtual std::optional<Error> signIn(const std::string& accountName) = 0;
    [[nodiscard]] virtual std::optional<Error> signOut() = 0;

    /// The container of the drive itself. Its documents folder is the drive's top folder.
    [[nodiscard]] virtual std::shared_ptr<const CloudContainer> defaultContainer() const = 0;
    /// The other containers: the app libraries shown in the drive's top folder, in no particular order.
    [[nodiscard]] virtual std::vector<std::shared_ptr<const CloudContainer>> libraries() const = 0;
    /// The container that holds a URL, or none for a URL outside the drive.
    [[nodiscard]] virtual std::shared_ptr<const CloudContainer> containerForURL(const URL&) const = 0;

    /// Whether the URL is the top folder of a library.
    [[nodiscard]] virtual bool isContainerTopFolder(const URL&) const = 0;
    /// Whether the URL lies in the drive, its links resolved; the drive's folders themselves do.
    [[nodiscard]] virtual bool isInDrive(const URL&) const = 0;
    [[nodiscard]] virtual bool isInTrash(const URL&) const = 0;

    /// The item's tag names; empty without any.
    virtual Result<std::vector<std::string>> tagNames(const URL&) const = 0;
};

} // namespace tessel
