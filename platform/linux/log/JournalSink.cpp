#include "platform/linux/log/JournalSink.h"

#include <sys/socket.h>

#include <cstddef>

namespace tessel {

namespace {

/// The syslog severities.
constexpr char priority(LogLevel level)
{
    switch (level) {
    case LogLevel::Debug:
        return '7';
    case LogLevel::Info:
        return '6';
    case LogLevel::Warning:
        return '4';
    case LogLevel::Error:
        return '3';
    }
    return '6';
}

const sockaddr* generic(const sockaddr_un& address)
{
    return reinterpret_cast<const sockaddr*>(&address);
}

} // namespace

std::shared_ptr<JournalSink> JournalSink::make(const std::string& socketPath)
{
    sockaddr_un address = {};
    if (socketPath.size() >= sizeof address.sun_path)
        return nullptr;
    address.sun_family = AF_UNIX;
    socketPath.copy(address.sun_path, socketPath.size());
    FileDescriptor socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    if (!socket.isOpen() || ::connect(socket.get(), generic(address), sizeof address) != 0)
        return nullptr;
    return std::shared_ptr<JournalSink>(new JournalSink(std::move(socket), address));
}

void JournalSink::write(const Date&, LogLevel level, std::string_view line)
{
    constexpr std::size_t kLongestLine = 64U << 10U; // bytes; well below what a socket's buffer takes
    std::string fields = "MESSAGE=";
    fields.append(line.substr(0, kLongestLine)).append("\nPRIORITY=").append(1, priority(level));
    fields.append("\nSYSLOG_IDENTIFIER=tesseldrive\n");
    // Addressed anew each time, since the journal may have been restarted.
    ::sendto(socket_.get(), fields.data(), fields.size(), MSG_DONTWAIT | MSG_NOSIGNAL, generic(address_),
             sizeof address_);
}

} // namespace tessel
