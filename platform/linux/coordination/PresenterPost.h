#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"
#include "platform/linux/coordination/Answers.h"
#include "platform/linux/coordination/Notice.h"
#include "platform/linux/files/FileDescriptor.h"

#include <functional>
#include <string>
#include <thread>

namespace tessel {

/// Carries notices between processes that present items: each has a socket in a common folder, which ends with it.
class PresenterPost {
public:
    /// Takes a notice from another process, on a thread of the post's own. What it comes to owe is waited for there and
    /// sent back.
    using Handler = std::function<void(const Notice&, const std::shared_ptr<Answers>&)>;

    PresenterPost(const URL& folder, Handler handler);
    ~PresenterPost();
    PresenterPost(const PresenterPost&) = delete;
    PresenterPost& operator=(const PresenterPost&) = delete;

    /// Begins to take notices. Called once.
    void open();

    /// Sends a notice to every other process, and waits for their answers when it wants any.
    /// @returns the first refusal that came in time
    [[nodiscard]] std::optional<Error> send(const Notice&, Answers::Time deadline) const;

private:
    [[nodiscard]] int sendToAll(int socket, const std::string& message) const;
    [[nodiscard]] bool makeSocket();
    void run();
    void receive();

    const URL folder_;
    const Handler handler_;
    std::string name_; ///< of the own socket
    FileDescriptor socket_;
    FileDescriptor wake_;
    std::thread thread_;
};

} // namespace tessel
