#pragma once

#include "platform/linux/files/FileDescriptor.h"
#include "platform/log/UnifiedLog.h"

#include <sys/un.h>

#include <memory>
#include <string>

namespace tessel {

/// Sends lines to the system journal, a datagram each. A line that the journal does not take at once is lost.
class JournalSink final : public LogSink {
public:
    static constexpr const char* kSystemSocket = "/run/systemd/journal/socket";

    /// @returns null when nobody listens at the socket.
    [[nodiscard]] static std::shared_ptr<JournalSink> make(const std::string& socketPath = kSystemSocket);

    void write(const Date&, LogLevel, std::string_view line) override;

private:
    JournalSink(FileDescriptor socket, const sockaddr_un& address) : socket_(std::move(socket)), address_(address) {}

    const FileDescriptor socket_;
    const sockaddr_un address_;
};

} // namespace tessel
