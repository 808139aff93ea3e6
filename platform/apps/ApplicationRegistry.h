#pragma once

#include "platform/apps/ApplicationRecord.h"
#include "platform/base/Error.h"
#include "platform/base/URL.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

/// What an application is to a document.
namespace HandlerRank {
inline constexpr const char* kOwner = "Owner";         ///< what the user expects to open it
inline constexpr const char* kDefault = "Default";     ///< the user's choice for a more general type
inline constexpr const char* kAlternate = "Alternate"; ///< claims a more general type
} // namespace HandlerRank

/// The applications on this device, and handing documents to them. Main thread only.
class ApplicationRegistry {
public:
    using Applications = std::vector<std::shared_ptr<const ApplicationRecord>>;
    struct Rank {
        std::string name; ///< one of HandlerRank
        Applications applications;
    };
    /// Without empty ranks and without repeats, in an order that stays while nothing changes on the device.
    using RankedApplications = std::vector<Rank>;

    virtual ~ApplicationRegistry() = default;

    /// Null for an identifier that no application has. An application that is known, but cannot be run, is not
    /// installed.
    [[nodiscard]] virtual std::shared_ptr<const ApplicationRecord> application(
        std::string_view bundleIdentifier) const = 0;

    /// The installed applications that can open a document, the best first; by its name, so the document need not be
    /// there.
    [[nodiscard]] virtual RankedApplications applicationsForDocument(const URL&) const = 0;

    /// Has an application open the document itself, not a copy. Returns when the application has been started; what
    /// becomes of it then is its own affair, and it outlives this program.
    /// @returns why it cannot be started; nothing is left of the attempt
    [[nodiscard]] virtual std::optional<Error> openDocument(const URL&, const ApplicationRecord&) = 0;

    /// Has the user's application for it open a page on the web.
    /// @param link UTF-8, with the scheme http or https; others are refused, and have no application started
    /// @returns why no application was started
    [[nodiscard]] virtual std::optional<Error> openLink(const std::string& link) = 0;

    /// Whether an application is still to be started, once a document is on the device.
    [[nodiscard]] virtual bool isAwaitingDocuments() const = 0;

    /// Asked before an application is started: a token by which the desktop lets its window come to the front, or an
    /// empty text.
    std::function<std::string()> activationToken;
};

} // namespace tessel
