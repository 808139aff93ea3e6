#include "platform/cloud/ProgressService.h"

#include "platform/run/MainQueue.h"

#include <algorithm>
#include <utility>

namespace tessel {

struct ProgressService::Subscriber {
    struct Told {
        std::shared_ptr<Progress> progress;
        WithdrawalHandler withdrawal;
    };

    const URL url;
    PublishingHandler handler; ///< empty once it is removed
    std::vector<Told> told = {};
};

ProgressService::Publication::Publication(ProgressService& service, URL url, std::shared_ptr<Progress> progress)
    : service_(service), url_(std::move(url)), progress_(std::move(progress))
{
    service_.mainQueue_.async([&service = service_, url = url_, progress = progress_] {
        service.add({url, progress});
    });
}

ProgressService::Publication::~Publication()
{
    service_.mainQueue_.async([&service = service_, progress = progress_] { service.withdraw(progress); });
}

ProgressService::Publication ProgressService::publishForFileURL(const URL& url)
{
    return {*this, url, std::make_shared<Progress>(mainQueue_, kProgressKindFile)};
}

std::shared_ptr<ProgressService::Subscriber> ProgressService::addSubscriberForFileURL(const URL& url,
                                                                                      PublishingHandler handler)
{
    auto subscriber = std::shared_ptr<Subscriber>(new Subscriber{url, std::move(handler)});
    subscribers_.push_back(subscriber);
    for (const auto& published : published_)
        if (published.url == url)
            mainQueue_.async([this, subscriber, progress = published.progress] {
                const bool isStill = std::any_of(published_.begin(), published_.end(),
                                                 [&](const Published& other) { return other.progress == progress; });
                if (isStill)
                    tell(*subscriber, progress);
            });
    return subscriber;
}

void ProgressService::removeSubscriber(const std::shared_ptr<Subscriber>& subscriber)
{
    std::erase(subscribers_, subscriber);
    const auto handler = std::exchange(subscriber->handler, nullptr); // may own what asks for this
    for (const auto& [progress, withdrawal] : std::exchange(subscriber->told, {}))
        if (withdrawal)
            withdrawal();
}

void ProgressService::add(const Published& published)
{
    published_.push_back(published);
    const auto subscribers = subscribers_; // a handler may add some and remove some
    for (const auto& subscriber : subscribers)
        if (subscriber->url == published.url)
            tell(*subscriber, published.progress);
}

void ProgressService::withdraw(const std::shared_ptr<Progress>& progress)
{
    std::erase_if(published_, [&](const Published& published) { return published.progress == progress; });
    const auto subscribers = subscribers_;
    for (const auto& subscriber : subscribers) {
        const auto found = std::find_if(subscriber->told.begin(), subscriber->told.end(),
                                        [&](const auto& told) { return told.progress == progress; });
        if (found == subscriber->told.end())
            continue;
        const auto withdrawal = std::move(found->withdrawal);
        subscriber->told.erase(found);
        if (withdrawal)
            withdrawal();
    }
}

void ProgressService::tell(Subscriber& subscriber, const std::shared_ptr<Progress>& progress)
{
    const auto handler = subscriber.handler; // a copy: it may end the subscription
    if (!handler)
        return;
    auto withdrawal = handler(progress);
    if (subscriber.handler)
        subscriber.told.push_back({progress, std::move(withdrawal)});
    else if (withdrawal)
        withdrawal();
}

} // namespace tessel
