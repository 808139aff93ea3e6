#pragma once

#include "platform/apps/ApplicationRegistry.h"
#include "platform/base/Platform.h"
#include "platform/cloud/ActivityService.h"
#include "platform/documents/DocumentDecoder.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/log/UnifiedLog.h"
#include "tests/support/LogCapture.h"
#include "tests/support/ManualClock.h"
#include "tests/support/TemporaryDrive.h"

#include <condition_variable>
#include <functional>
#include <initializer_list>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

namespace tessel {

/// The whole platform over folders of the test's own, installed for the test's length, with a clock that the test turns
/// and a log that it reads.
class InstalledPlatform {
public:
    struct Library {
        std::string identifier; ///< "orvane.Lookbook"
        std::string localizedName;
        std::vector<std::string> owners = {};        ///< identifiers of its applications
        std::vector<std::string> documentTypes = {}; ///< type identifiers
        std::optional<std::string> depthOption = {};
    };

    /// Binds `drive`, which is empty.
    InstalledPlatform();
    /// Has a home of its own: `drive` is its synced root, with the folder of the default container,
    /// "orvane~Quillbox/", and one for each library, such as "orvane~Lookbook/Documents/".
    InstalledPlatform(std::initializer_list<Library>);
    ~InstalledPlatform();

    [[nodiscard]] platform::Services services() { return platform_->services(); }
    [[nodiscard]] StateStore& stateStore() { return platform_->stateStore(); }

    /// Runs the main queue until nothing is ready or expected, and the list on screen is complete. Throws after 30
    /// seconds.
    void settle();
    /// Runs the main queue, waiting for what other threads add to it, until the condition holds.
    /// @returns false after 30 seconds
    bool runUntil(const std::function<bool()>& condition);
    /// Lets `seconds` pass in no time: goes from one due task to the next, and each runs at its own moment.
    void turn(double seconds);

    TemporaryDrive drive;
    /// The user's desktop, which knows no application: "config/mimeapps.list", "data/applications/", "bin/".
    TemporaryDrive desktop;
    ManualClock clock;
    std::shared_ptr<LogCapture> log = std::make_shared<LogCapture>();

private:
    void install(const URL& home, std::optional<std::string> boundDrive);

    std::mutex mutex_;
    std::condition_variable woken_;
    bool isWoken_ = false;
    std::unique_ptr<LinuxPlatform> platform_;
    std::unique_ptr<platform::Scope> scope_;
};

/// The installed services with one of them wrapped, for a test to install in their place:
///
///     platform::Scope scope(servicesWith(watchedValues));
template <typename Wrapper>
[[nodiscard]] platform::Services servicesWith(Wrapper& wrapper)
{
    const auto either = [&wrapper]<typename Service>(Service& service) -> Service& {
        if constexpr (std::is_base_of_v<Service, Wrapper>)
            return wrapper;
        else
            return service;
    };
    const auto& [clock, mainQueue, notifications, log, text, types, files, coordination, resources, folders, cloud,
                 progress, activities, quota, storage, decoder, documents, apps, defaults, keyValues, device] =
        platform::installed();
    return {either(clock),   either(mainQueue), either(notifications), either(log),       either(text),
            either(types),   either(files),     either(coordination),  either(resources), either(folders),
            either(cloud),   either(progress),  either(activities),    either(quota),     either(storage),
            either(decoder), either(documents), either(apps),          either(defaults),  either(keyValues),
            either(device)};
}

} // namespace tessel
