#include "platform/ui/AlertController.h"
#include "platform/run/MainQueue.h"
#include "platform/ui/Device.h"
#include "platform/ui/NavigationController.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <utility>

namespace tessel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Events = std::vector<std::string>;

class AlertControllerTest : public testing::Test {
protected:
    std::shared_ptr<AlertAction> add(const std::string& title, AlertAction::Style style = AlertAction::Style::Default)
    {
        const auto action = std::make_shared<AlertAction>(title, style, [this](const auto& chosen) {
            events.push_back(chosen->title() + (navigation->presentedViewController() ? " under an alert" : ""));
        });
        alert->addAction(action);
        return action;
    }
    void show()
    {
        navigation->present(alert, Animated::No);
        DispatchQueue::main().runReady();
    }

    InstalledPlatform platform;
    Events events;
    std::shared_ptr<NavigationController> navigation = std::make_shared<NavigationController>();
    std::shared_ptr<AlertController> alert =
        std::make_shared<AlertController>(AlertController::Style::Alert, "Rename", "Enter a name");
};

TEST_F(AlertControllerTest, IsGoneBeforeItsHandlerRunsAndAnswersOnce)
{
    const auto done = add("Done");
    done->shouldDismiss = [this] {
        events.emplace_back("may it?");
        return true;
    };
    EXPECT_FALSE(alert->choose(done)) << "it is not shown yet";
    show();
    EXPECT_FALSE(alert->choose(std::make_shared<AlertAction>("Done", AlertAction::Style::Default, nullptr)));
    EXPECT_TRUE(alert->choose(done));
    EXPECT_FALSE(alert->choose(done)) << "pressed twice in a hurry";
    EXPECT_THAT(events, ElementsAre("may it?", "Done"));
}

TEST_F(AlertControllerTest, StaysWhileItsButtonIsDisabledOrRefuses)
{
    const auto done = add("Done");
    bool isReady = false;
    done->shouldDismiss = [&] { return isReady; };
    int told = 0;
    done->changed = [&] { ++told; };
    show();
    EXPECT_FALSE(alert->choose(done));
    isReady = true;
    done->setEnabled(false);
    done->setEnabled(false);
    EXPECT_FALSE(alert->choose(done));
    EXPECT_EQ(told, 1);
    EXPECT_EQ(navigation->presentedViewController(), alert);
    EXPECT_THAT(events, IsEmpty());
    done->setEnabled(true);
    done->shouldDismiss = [&] {
        navigation->dismiss(Animated::No);
        return true;
    };
    EXPECT_FALSE(alert->choose(done)) << "the question has ended it in another way";
    EXPECT_THAT(events, IsEmpty());
}

TEST_F(AlertControllerTest, IsCancelledByItsCancelButtonAlone)
{
    add("Done");
    show();
    EXPECT_FALSE(alert->cancel());
    add("Cancel", AlertAction::Style::Cancel);
    EXPECT_TRUE(alert->cancel());
    EXPECT_THAT(events, ElementsAre("Cancel"));
}

TEST_F(AlertControllerTest, EditsItsFirstFieldWhileItIsShown)
{
    alert->addTextField([](TextField& field) { field.setText("Plan.txt"); });
    alert->addTextField([](TextField&) {});
    add("Done");
    show();
    auto& device = platform.services().device;
    EXPECT_EQ(device.firstResponder(), alert->textFields().front());
    alert->choose(alert->actions().front());
    EXPECT_EQ(device.firstResponder(), nullptr);
}

TEST_F(AlertControllerTest, GoesAwayOnceAnsweredAndLetsItsHandlerAskAgain)
{
    const std::weak_ptr<AlertController> weak = alert;
    alert->addAction(std::make_shared<AlertAction>("Again", AlertAction::Style::Default, [&](const auto&) {
        const auto next = std::make_shared<AlertController>(AlertController::Style::ActionSheet, "", "Again?");
        navigation->present(next, Animated::No);
    }));
    show();
    std::exchange(alert, nullptr)->choose(weak.lock()->actions().front());
    DispatchQueue::main().runReady();
    EXPECT_TRUE(weak.expired());
    ASSERT_NE(navigation->presentedViewController(), nullptr);
    EXPECT_EQ(navigation->presentedViewController()->presentationStyle, PresentationStyle::Popover);

    const auto orphan = std::dynamic_pointer_cast<AlertController>(navigation->presentedViewController());
    navigation.reset();
    EXPECT_FALSE(orphan->cancel());
    EXPECT_EQ(orphan->presentingViewController(), nullptr) << "it does not keep its maker";
}

} // namespace
} // namespace tessel
