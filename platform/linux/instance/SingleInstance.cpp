#include "platform/linux/instance/SingleInstance.h"

#include "platform/linux/files/Uninterrupted.h"
#include "platform/linux/instance/RequestText.h"
#include "platform/run/StartThread.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstring>
#include <filesystem>

namespace tessel {

namespace {

using Steady = std::chrono::steady_clock;

constexpr auto kPatience = std::chrono::seconds(5); // with a first start that is not ready yet
constexpr int kAnswerMilliseconds = 2000;
constexpr std::size_t kLongestRequest = 64 * 1024; // bytes
constexpr std::string_view kTaken = "taken";

/// FNV-1a, 64 bits: a name that fits into a socket's address.
std::string hashOf(const std::string& key)
{
    std::uint64_t hash = 14695981039346656037U;
    for (const char character : key)
        hash = (hash ^ static_cast<unsigned char>(character)) * 1099511628211U;
    std::array<char, 17> text{};
    std::snprintf(text.data(), text.size(), "%016llx", static_cast<unsigned long long>(hash));
    return text.data();
}

std::optional<sockaddr_un> addressOf(const std::string& path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path)
        return std::nullopt;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    return address;
}

FileDescriptor newSocket()
{
    return FileDescriptor(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
}

FileDescriptor listenerAt(const std::string& path)
{
    const auto address = addressOf(path);
    auto listener = newSocket();
    ::unlink(path.c_str()); // of a process that has died: the lock is this one's
    const bool listens = address && listener.isOpen() &&
                         ::bind(listener.get(), reinterpret_cast<const sockaddr*>(&*address), sizeof *address) == 0 &&
                         ::chmod(path.c_str(), 0600) == 0 && ::listen(listener.get(), 16) == 0;
    return listens ? std::move(listener) : FileDescriptor();
}

bool isReadable(int descriptor, int milliseconds)
{
    pollfd wanted = {descriptor, POLLIN, 0};
    return uninterrupted([&] { return ::poll(&wanted, 1, milliseconds); }) == 1;
}

/// One message, of a peer that has it ready or soon will.
std::optional<std::string> received(int socket)
{
    std::string text(kLongestRequest, '\0');
    if (!isReadable(socket, kAnswerMilliseconds))
        return std::nullopt;
    const auto length = uninterrupted([&] { return ::recv(socket, text.data(), text.size(), MSG_TRUNC); });
    if (length <= 0 || static_cast<std::size_t>(length) > text.size())
        return std::nullopt;
    text.resize(static_cast<std::size_t>(length));
    return text;
}

bool sends(int socket, std::string_view text)
{
    return uninterrupted([&] { return ::send(socket, text.data(), text.size(), MSG_NOSIGNAL); }) ==
           static_cast<ssize_t>(text.size());
}

bool isOfThisUser(int socket)
{
    ucred peer = {};
    socklen_t length = sizeof peer;
    return ::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &length) == 0 && peer.uid == ::getuid();
}

bool handsOver(const std::string& path, const std::string& text)
{
    const auto address = addressOf(path);
    const auto connection = newSocket();
    return address && connection.isOpen() &&
           ::connect(connection.get(), reinterpret_cast<const sockaddr*>(&*address), sizeof *address) == 0 &&
           isOfThisUser(connection.get()) && sends(connection.get(), text) && received(connection.get()) == kTaken;
}

} // namespace

SingleInstance::Claim SingleInstance::claim(const URL& folder, const std::string& key, const OutsideRequest& request)
{
    std::error_code ignored;
    std::filesystem::create_directories(folder.path(), ignored);
    const auto base = folder.appending("window-" + hashOf(key)).path();
    const auto text = textOf(request);
    for (const auto begin = Steady::now(); Steady::now() - begin < kPatience; ::usleep(20'000)) {
        FileDescriptor lock(::open((base + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
        if (!lock.isOpen())
            return {};
        if (::flock(lock.get(), LOCK_EX | LOCK_NB) == 0) {
            auto listener = listenerAt(base + ".socket");
            if (!listener.isOpen())
                return {};
            return {.instance = std::unique_ptr<SingleInstance>(
                        new SingleInstance(base + ".socket", std::move(lock), std::move(listener)))};
        }
        if (handsOver(base + ".socket", text))
            return {.instance = nullptr, .wasHandedOver = true};
    }
    return {};
}

SingleInstance::SingleInstance(std::string socketPath, FileDescriptor lock, FileDescriptor listener)
    : socketPath_(std::move(socketPath)), lock_(std::move(lock)), listener_(std::move(listener)),
      stop_(::eventfd(0, EFD_CLOEXEC))
{
}

SingleInstance::~SingleInstance()
{
    const std::uint64_t one = 1;
    static_cast<void>(uninterrupted([&] { return ::write(stop_.get(), &one, sizeof one); }));
    if (thread_.joinable())
        thread_.join();
    ::unlink(socketPath_.c_str()); // while the lock is held
}

void SingleInstance::serve(std::function<void(const OutsideRequest&)> handler)
{
    handler_ = std::move(handler);
    thread_ = startThread([this] { run(); });
}

void SingleInstance::run() const
{
    std::array<pollfd, 2> wanted = {{{listener_.get(), POLLIN, 0}, {stop_.get(), POLLIN, 0}}};
    while (uninterrupted([&] { return ::poll(wanted.data(), wanted.size(), -1); }) > 0 && wanted[1].revents == 0) {
        const FileDescriptor connection(::accept4(listener_.get(), nullptr, nullptr, SOCK_CLOEXEC));
        if (connection.isOpen() && isOfThisUser(connection.get()))
            take(connection);
    }
}

void SingleInstance::take(const FileDescriptor& connection) const
{
    const auto text = received(connection.get());
    const auto request = text ? requestIn(*text) : std::nullopt;
    if (!request)
        return;
    handler_(*request);
    static_cast<void>(sends(connection.get(), kTaken));
}

} // namespace tessel
