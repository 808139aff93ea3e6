#include "platform/linux/coordination/PresenterPost.h"

#include "platform/linux/files/Uninterrupted.h"
#include "platform/run/CurrentThread.h"
#include "platform/run/StartThread.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <random>
#include <string_view>
#include <system_error>
#include <utility>

namespace tessel {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLongestMessage = 16 * 1024; // two paths
constexpr std::chrono::seconds kLongestAnswer(2);

struct Address {
    sockaddr_un address = {};
    socklen_t length = sizeof(sa_family_t); ///< as it is, an address that the kernel chooses
};

// By way of the folder's descriptor, for an address holds 107 bytes and a home's path may be longer.
Address addressOf(int folder, const std::string& name)
{
    Address result;
    const auto path = "/proc/self/fd/" + std::to_string(folder) + '/' + name;
    result.address.sun_family = AF_UNIX;
    std::memcpy(result.address.sun_path, path.c_str(), std::min(path.size(), sizeof result.address.sun_path - 1));
    result.length = sizeof result.address;
    return result;
}

Address anyAddress()
{
    Address result;
    result.address.sun_family = AF_UNIX;
    return result;
}

FileDescriptor socketAt(const Address& address)
{
    FileDescriptor socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (socket.isOpen() &&
        ::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address.address), address.length) != 0)
        return FileDescriptor();
    return socket;
}

FileDescriptor openFolder(const URL& folder)
{
    return FileDescriptor(::open(folder.path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
}

bool waitFor(int descriptor, Answers::Time deadline)
{
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Answers::Time::clock::now()).count();
    pollfd ready = {descriptor, POLLIN, 0};
    return uninterrupted([&] { return ::poll(&ready, 1, static_cast<int>(std::max<std::int64_t>(left, 0))); }) > 0;
}

} // namespace

PresenterPost::PresenterPost(const URL& folder, Handler handler) : folder_(folder), handler_(std::move(handler))
{
}

PresenterPost::~PresenterPost()
{
    if (wake_.isOpen())
        ::eventfd_write(wake_.get(), 1);
    if (thread_.joinable())
        thread_.join();
    if (socket_.isOpen())
        ::unlink(folder_.appending(name_).path().c_str());
}

void PresenterPost::open()
{
    wake_ = FileDescriptor(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    if (wake_.isOpen() && makeSocket())
        thread_ = startThread([this] { run(); });
}

bool PresenterPost::makeSocket()
{
    ::mkdir(folder_.path().c_str(), 0700);
    const auto folder = openFolder(folder_);
    name_ = std::to_string(::getpid()) + '-' + std::to_string(std::random_device()());
    if (folder.isOpen())
        socket_ = socketAt(addressOf(folder.get(), name_));
    return socket_.isOpen();
}

void PresenterPost::run()
{
    applyQualityOfService(QualityOfService::UserInitiated, "presenter-post");
    pollfd ready[] = {{socket_.get(), POLLIN, 0}, {wake_.get(), POLLIN, 0}};
    while (!(ready[1].revents & POLLIN)) {
        ::poll(ready, std::size(ready), -1);
        if (ready[0].revents & POLLIN)
            receive();
    }
}

void PresenterPost::receive()
{
    std::array<char, kLongestMessage> message{};
    Address sender;
    sender.length = sizeof sender.address;
    const auto length = ::recvfrom(socket_.get(), message.data(), message.size(), 0,
                                   reinterpret_cast<sockaddr*>(&sender.address), &sender.length);
    const auto notice = length > 0 ? decodedNotice({message.data(), static_cast<std::size_t>(length)}) : std::nullopt;
    if (!notice)
        return;
    const auto answers = std::make_shared<Answers>();
    handler_(*notice, answers);
    if (!notice->wantsAnswers())
        return;
    const auto refusal = answers->wait(Answers::Time::clock::now() + kLongestAnswer);
    const auto answer = refusal ? refusal->description : std::string();
    ::sendto(socket_.get(), answer.data(), answer.size(), MSG_DONTWAIT | MSG_NOSIGNAL,
             reinterpret_cast<const sockaddr*>(&sender.address), sender.length);
}

std::optional<Error> PresenterPost::send(const Notice& notice, Answers::Time deadline) const
{
    const auto socket = socketAt(anyAddress());
    if (!socket.isOpen())
        return std::nullopt;
    int owed = sendToAll(socket.get(), encoded(notice));
    std::array<char, kLongestMessage> answer{};
    for (; notice.wantsAnswers() && owed > 0 && waitFor(socket.get(), deadline); --owed) {
        const auto length = ::recv(socket.get(), answer.data(), answer.size(), 0);
        if (length > 0) {
            const std::string text(answer.data(), static_cast<std::size_t>(length));
            return Error{Domain::General, ErrorCode::kUserCancelled, text, text};
        }
    }
    return std::nullopt;
}

// How many it has reached. The socket of a process that was killed refuses, and goes.
int PresenterPost::sendToAll(int socket, const std::string& message) const
{
    int reached = 0;
    const auto folder = openFolder(folder_);
    std::error_code ended;
    for (fs::directory_iterator entry(folder_.path(), ended); !ended && entry != fs::directory_iterator();
         entry.increment(ended)) {
        const auto name = entry->path().filename().native();
        if (name == name_)
            continue;
        const auto address = addressOf(folder.get(), name);
        if (::sendto(socket, message.data(), message.size(), MSG_DONTWAIT | MSG_NOSIGNAL,
                     reinterpret_cast<const sockaddr*>(&address.address), address.length) >= 0)
            ++reached;
        else if (errno == ECONNREFUSED)
            ::unlink(entry->path().c_str());
    }
    return reached;
}

} // namespace tessel
