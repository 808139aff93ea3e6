#include "platform/linux/apps/ChildWatcher.h"

#include "platform/run/StartThread.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

namespace tessel {

namespace {

int processDescriptor(pid_t process)
{
    return static_cast<int>(::syscall(SYS_pidfd_open, process, 0));
}

/// @returns whether the process has ended, or is nobody that could be waited for
bool hasEnded(pid_t process, int& status)
{
    pid_t result = 0;
    do
        result = ::waitpid(process, &status, WNOHANG);
    while (result < 0 && errno == EINTR);
    return result != 0;
}

} // namespace

ChildWatcher::~ChildWatcher()
{
    {
        const std::lock_guard lock(mutex_);
        isStopping_ = true;
    }
    wake();
    if (thread_.joinable())
        thread_.join();
    for (const auto& child : children_)
        if (child.descriptor >= 0)
            ::close(child.descriptor);
    if (wakeDescriptor_ >= 0)
        ::close(wakeDescriptor_);
}

void ChildWatcher::watch(pid_t child, Ended ended)
{
    {
        const std::lock_guard lock(mutex_);
        children_.push_back({child, processDescriptor(child), std::move(ended)});
    }
    if (wakeDescriptor_ < 0)
        wakeDescriptor_ = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (!thread_.joinable() && wakeDescriptor_ >= 0)
        thread_ = startThread([this] { run(); });
    wake();
}

void ChildWatcher::wake() const
{
    if (wakeDescriptor_ >= 0)
        (void)::eventfd_write(wakeDescriptor_, 1);
}

void ChildWatcher::run()
{
    while (waitForSomething())
        reap();
}

/// @returns false when the watcher is being destroyed
bool ChildWatcher::waitForSomething()
{
    std::vector<pollfd> descriptors = {{wakeDescriptor_, POLLIN, 0}};
    {
        const std::lock_guard lock(mutex_);
        for (const auto& child : children_)
            descriptors.push_back({child.descriptor, POLLIN, 0}); // poll passes over negative ones
    }
    (void)::poll(descriptors.data(), descriptors.size(), -1);
    eventfd_t count = 0;
    (void)::eventfd_read(wakeDescriptor_, &count);
    const std::lock_guard lock(mutex_);
    return !isStopping_;
}

void ChildWatcher::reap()
{
    std::vector<std::pair<Ended, int>> calls;
    {
        const std::lock_guard lock(mutex_);
        std::erase_if(children_, [&](Child& child) {
            int status = 0;
            if (!hasEnded(child.process, status))
                return false;
            if (child.descriptor >= 0)
                ::close(child.descriptor);
            calls.emplace_back(std::move(child.ended), status);
            return true;
        });
    }
    for (const auto& [ended, status] : calls)
        ended(status);
}

} // namespace tessel
