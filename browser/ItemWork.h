#pragma once

#include "platform/run/Clock.h"
#include "platform/run/OperationQueue.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tessel {

class AlertController;
class NavigationController;
class SimpleTextViewController;

/// One thing that is done to each of many items, in order. The main queue has its turn in between: the window stays
/// alive. What takes no longer than a picture is done before `run` returns. After half a second an alert tells how much
/// is left; its Cancel ends the work behind the item that is under way, so that each item is done or untouched.
class ItemWork : public std::enable_shared_from_this<ItemWork> {
public:
    struct Plan {
        std::string title;                     ///< of the alert
        std::size_t count = 0;                 ///< of items
        std::function<void(std::size_t)> step; ///< does it to one item; on another thread where work is done aside
        std::function<void()> finished;        ///< called at the end, the alert being gone, cancelled or not
    };

    /// Main thread only.
    /// @param navigation presents the alert; without it the work goes on unseen
    static void run(Plan, const std::weak_ptr<NavigationController>& navigation);

    /// Whether items are worked on by a thread of their own, so that not even a single large one stops the screen. Set
    /// before anything is run; else everything happens in the order in which the main queue has it.
    static inline bool isDoneAside = false;

private:
    struct Turn;

    ItemWork(Plan, std::weak_ptr<NavigationController>);

    void takeTurn();
    void takeTurnAside();
    void work();
    void endTurn();
    void watch(const std::shared_ptr<Turn>&);
    void tell();
    void showAlert();
    void finish();

    const Plan plan_;
    const std::weak_ptr<NavigationController> navigation_;
    const Clock::Ticks begun_;
    Clock::Ticks toldAt_ = {};
    std::atomic<std::size_t> next_ = 0;
    std::atomic<bool> cancelled_ = false;
    std::shared_ptr<AlertController> alert_;
    std::shared_ptr<SimpleTextViewController> progress_;
    std::optional<OperationQueue> aside_; ///< ends first: what it runs uses all else
};

} // namespace tessel
