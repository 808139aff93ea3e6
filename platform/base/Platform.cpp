#include "platform/base/Platform.h"

#include <atomic>
#include <cassert>

namespace tessel::platform {

namespace {
std::atomic<const Services*> current = nullptr;
}

const Services& installed()
{
    const auto* services = current.load(std::memory_order_acquire);
    assert(services);
    return *services;
}

bool isInstalled()
{
    return current.load(std::memory_order_acquire) != nullptr;
}

Scope::Scope(const Services& services) : services_(services), outer_(current.exchange(&services_))
{
}

Scope::~Scope()
{
    current.store(outer_, std::memory_order_release);
}

} // namespace tessel::platform
