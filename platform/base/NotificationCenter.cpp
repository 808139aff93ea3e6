#include "platform/base/NotificationCenter.h"

namespace tessel {

NotificationCenter::Observation NotificationCenter::observe(std::string_view name, Handler handler)
{
    auto shared = std::make_shared<Handler>(std::move(handler));
    auto& registered = observers_[std::string(name)];
    std::erase_if(registered, [](const auto& entry) { return entry.expired(); });
    registered.push_back(shared);
    return {std::move(shared), life_};
}

void NotificationCenter::post(std::string_view name)
{
    const auto found = observers_.find(name);
    if (found == observers_.end())
        return;
    const auto registeredNow = found->second;
    for (const auto& entry : registeredNow)
        if (const auto handler = entry.lock())
            (*handler)();
}

} // namespace tessel
