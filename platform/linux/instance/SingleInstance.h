#pragma once

#include "platform/base/URL.h"
#include "platform/linux/files/FileDescriptor.h"
#include "platform/ui/OutsideRequest.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>

namespace tessel {

/// That only one window is open for each home: the first start has a lock and listens on a socket beside it; a later
/// one gives it what it was asked for and ends. The kernel frees the lock of a process that has died.
class SingleInstance {
public:
    struct Claim {
        std::unique_ptr<SingleInstance> instance; ///< of the first; null after a handover, and where nobody can tell
        bool wasHandedOver = false;
    };

    /// Becomes the first, or hands the request over, which takes seconds at most.
    /// @param folder of the user's own, made when it is missing
    /// @param key tells one program from another: the home and the drive
    [[nodiscard]] static Claim claim(const URL& folder, const std::string& key, const OutsideRequest&);

    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    /// Begins to take requests of later starts; those that came before have waited. Once.
    /// @param handler called on a thread of the instance's own
    void serve(std::function<void(const OutsideRequest&)> handler);

private:
    SingleInstance(std::string socketPath, FileDescriptor lock, FileDescriptor listener);

    void run() const;
    void take(const FileDescriptor& connection) const;

    const std::string socketPath_;
    const FileDescriptor lock_;
    const FileDescriptor listener_;
    const FileDescriptor stop_;
    std::function<void(const OutsideRequest&)> handler_;
    std::thread thread_;
};

} // namespace tessel
