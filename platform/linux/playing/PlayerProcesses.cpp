#include "platform/linux/playing/PlayerProcesses.h"

#include "platform/linux/playing/PlayerTalk.h"
#include "platform/linux/playing/ProcessPlayer.h"
#include "platform/run/MainQueue.h"

#include <unistd.h>

#include <utility>

namespace tessel {

namespace {

constexpr std::size_t kMostPrograms = 4; // one is shown; others are still being ended

} // namespace

PlayerProcesses::PlayerProcesses(const Services& services, Options options)
    : services_(services), options_(std::move(options)),
      canPlay_(!options_.program.empty() && ::access(options_.program.c_str(), X_OK) == 0),
      workers_("players", QualityOfService::UserInitiated, kMostPrograms)
{
}

PlayerProcesses::~PlayerProcesses()
{
    for (const auto& weak : talks_)
        if (const auto talk = weak.lock())
            talk->end();
}

std::shared_ptr<MediaPlayer> PlayerProcesses::open(const URL& url)
{
    if (!canPlay_)
        return nullptr;
    auto talk = std::make_shared<PlayerTalk>(options_.program, options_.timeLimit, services_.log, url);
    auto player = std::make_shared<ProcessPlayer>(talk);
    std::erase_if(talks_, [](const auto& weak) { return weak.expired(); });
    talks_.push_back(talk);
    workers_.addOperation([talk, weak = std::weak_ptr(player), &queue = services_.mainQueue] {
        talk->run([&](const PlayerNote& note, const std::optional<ContentPicture>& picture) {
            queue.async([weak, note, picture] {
                if (const auto alive = weak.lock())
                    alive->hear(note, picture);
            });
        });
    });
    return player;
}

} // namespace tessel
