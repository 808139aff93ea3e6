#include "platform/base/Platform.h"

#include <atomic>
#include <cassert>

namespace tessel::platform {

namespace {
std::atomic<const Services*> current = nullptr;
}

const Services* installedIfAny()
{
    return current.load(std::memory_order_acquire);
}

const Services& installed()
{
    const auto* services = installedIfAny();
    assert(services);
    return *services;
}

Scope::Scope(const Services& services) : services_(services), outer_(current.exchange(&services_))
{
}

Scope::~Scope()
{
    current.store(outer_, std::memory_order_release);
}

} // namespace tessel::platform
