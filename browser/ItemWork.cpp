#include "browser/ItemWork.h"

#include "files/SimpleTextViewController.h"
#include "platform/base/Platform.h"
#include "platform/run/MainQueue.h"
#include "platform/text/TextServices.h"
#include "platform/ui/AlertController.h"
#include "platform/ui/NavigationController.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace tessel {

namespace {

using namespace std::chrono_literals;

constexpr auto kTurn = 12ms;       // of the main queue
constexpr auto kUnnoticed = 500ms; // what takes longer is seen
constexpr auto kBetweenTexts = 100ms;

Clock::Ticks uptime()
{
    return platform::installed().clock.uptime();
}

} // namespace

void ItemWork::run(Plan plan, const std::weak_ptr<NavigationController>& navigation)
{
    std::shared_ptr<ItemWork>(new ItemWork(std::move(plan), navigation))->takeTurn();
}

ItemWork::ItemWork(Plan plan, std::weak_ptr<NavigationController> navigation)
    : plan_(std::move(plan)), navigation_(std::move(navigation)), begun_(uptime())
{
}

/// What both threads know of a turn that is taken aside.
struct ItemWork::Turn {
    std::mutex mutex;
    std::condition_variable ended;
    bool hasEnded = false;
    bool isWaitedFor = true;
    bool isTakenUp = false; ///< the main thread's: it goes on behind the turn

    /// @returns whether nobody waits any more
    [[nodiscard]] bool end()
    {
        const std::lock_guard lock(mutex);
        hasEnded = true;
        ended.notify_one();
        return !isWaitedFor;
    }
    /// @returns whether it has ended in that time
    [[nodiscard]] bool wait(std::chrono::milliseconds time)
    {
        std::unique_lock lock(mutex);
        return isWaitedFor = ended.wait_for(lock, time, [this] { return hasEnded; });
    }
};

void ItemWork::takeTurn()
{
    if (isDoneAside)
        return takeTurnAside();
    work();
    endTurn();
}

/// This thread waits for as long as a picture may take, so that what is short is done in order.
void ItemWork::takeTurnAside()
{
    if (!aside_)
        aside_.emplace("items", QualityOfService::UserInitiated);
    const auto turn = std::make_shared<Turn>();
    aside_->addOperation([this, turn] {
        work();
        if (turn->end())
            platform::installed().mainQueue.async([weak = weak_from_this(), turn] {
                turn->isTakenUp = true;
                if (const auto self = weak.lock())
                    self->endTurn();
            });
    });
    if (turn->wait(kTurn + kTurn))
        endTurn();
    else
        watch(turn);
}

/// Tells how long it takes until the turn ends, and keeps the work alive.
void ItemWork::watch(const std::shared_ptr<Turn>& turn)
{
    const std::chrono::duration<double> seconds = kBetweenTexts;
    platform::installed().mainQueue.after(seconds.count(), [self = shared_from_this(), turn] {
        if (turn->isTakenUp)
            return;
        self->tell();
        self->watch(turn);
    });
}

void ItemWork::work()
{
    const auto start = uptime();
    while (next_ < plan_.count && !cancelled_ && uptime() - start < kTurn) {
        plan_.step(next_);
        ++next_;
    }
}

void ItemWork::endTurn()
{
    if (next_ == plan_.count || cancelled_)
        return finish();
    tell();
    platform::installed().mainQueue.async([self = shared_from_this()] { self->takeTurn(); });
}

void ItemWork::tell()
{
    const auto now = uptime();
    if (now - begun_ < kUnnoticed || (alert_ && now - toldAt_ < kBetweenTexts))
        return;
    if (alert_ && !alert_->presentingViewController())
        alert_ = nullptr; // what it lay on has gone, and it with that
    if (!alert_)
        showAlert();
    toldAt_ = now;
    if (progress_)
        progress_->messageLabel->setText(platform::installed().text.localizedCount(
            ".DICT.ITEMS_LEFT.%d", static_cast<std::int64_t>(plan_.count - next_)));
}

void ItemWork::showAlert()
{
    const auto navigation = navigation_.lock();
    const auto presenter = navigation ? navigation->visibleViewController() : nullptr;
    if (!presenter)
        return;
    progress_ = std::make_shared<SimpleTextViewController>();
    (void)progress_->view();
    progress_->messageLabel->setTextColor(Color::black());
    alert_ = std::make_shared<AlertController>(AlertController::Style::Alert, plan_.title, "");
    alert_->setContentViewController(progress_);
    alert_->addAction(std::make_shared<AlertAction>(
        platform::installed().text.localized("Cancel"), AlertAction::Style::Cancel,
        [self = shared_from_this()](const std::shared_ptr<AlertAction>&) { self->cancelled_ = true; }));
    presenter->present(alert_, Animated::Yes);
}

void ItemWork::finish()
{
    if (const auto alert = std::exchange(alert_, nullptr))
        if (const auto presenter = alert->presentingViewController();
            presenter && presenter->presentedViewController() == alert)
            presenter->dismiss(Animated::Yes);
    progress_ = nullptr;
    if (plan_.finished)
        plan_.finished();
}

} // namespace tessel
