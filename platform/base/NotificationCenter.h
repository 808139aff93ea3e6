#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

/// Tells many listeners of one event. Main thread only.
class NotificationCenter {
public:
    using Handler = std::function<void()>;

    /// A registration; destroying it ends it, also from inside a notice, also after the centre is gone.
    class [[nodiscard]] Observation {
    public:
        Observation() = default;

        /// Whether it is one, and its centre still there.
        [[nodiscard]] bool stands() const { return !centre_.expired(); }

    private:
        friend class NotificationCenter;
        Observation(std::shared_ptr<Handler> handler, std::weak_ptr<const void> centre)
            : handler_(std::move(handler)), centre_(std::move(centre))
        {
        }

        std::shared_ptr<Handler> handler_;
        std::weak_ptr<const void> centre_;
    };

    Observation observe(std::string_view name, Handler);

    /// Runs, in the order of registration, the handlers registered when it is called. One that is removed by an
    /// earlier handler of the same notice is left out; one that is added waits for the next notice.
    void post(std::string_view name);

private:
    std::map<std::string, std::vector<std::weak_ptr<Handler>>, std::less<>> observers_;
    std::shared_ptr<const void> life_ = std::make_shared<int>(); ///< ends with the centre
};

} // namespace tessel
