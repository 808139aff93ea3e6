#pragma once

#include "platform/run/Clock.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace tessel {

class AlertController;
class NavigationController;
class SimpleTextViewController;

/// One thing that is done to each of many items, in order, on the main queue, which has its turn in between: the window
/// stays alive. What takes no longer than a picture is done before `run` returns. After half a second an alert tells
/// how much is left; its Cancel ends the work behind the item that is under way, so that each item is done or
/// untouched.
class ItemWork : public std::enable_shared_from_this<ItemWork> {
public:
    struct Plan {
        std::string title;                     ///< of the alert
        std::size_t count = 0;                 ///< of items
        std::function<void(std::size_t)> step; ///< does it to one item
        std::function<void()> finished;        ///< called at the end, the alert being gone, cancelled or not
    };

    /// @param navigation presents the alert; without it the work goes on unseen
    static void run(Plan, const std::weak_ptr<NavigationController>& navigation);

private:
    ItemWork(Plan, std::weak_ptr<NavigationController>);

    void takeTurn();
    void tell();
    void showAlert();
    void finish();

    const Plan plan_;
    const std::weak_ptr<NavigationController> navigation_;
    const Clock::Ticks begun_;
    Clock::Ticks toldAt_ = {};
    std::size_t next_ = 0;
    bool cancelled_ = false;
    std::shared_ptr<AlertController> alert_;
    std::shared_ptr<SimpleTextViewController> progress_;
};

} // namespace tessel
