#include "platform/documents/DocumentListController.h"
#include "platform/documents/SearchController.h"
#include "platform/documents/UpgradeButton.h"
#include "platform/ui/AlertController.h"
#include "platform/ui/Button.h"
#include "platform/ui/Device.h"
#include "tests/platform/console/ConsoleShellFixture.h"

#include <gmock/gmock.h>

namespace tessel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class ConsoleControlsTest : public ConsoleShellFixture {
protected:
    /// An alert that asks for a name, with a message of its own beneath the field, and is done when there is one.
    std::shared_ptr<AlertController> presentPrompt()
    {
        auto alert =
            std::make_shared<AlertController>(AlertController::Style::Alert, "Rename Item", "Enter a\nnew name.");
        const auto done =
            std::make_shared<AlertAction>("Done", AlertAction::Style::Default, [this](const auto&) { log += "done;"; });
        message->setHidden(true);
        const auto content = std::make_shared<Page>();
        content->view().addSubview(message);
        alert->setContentViewController(content);
        alert->addTextField([this, done](TextField& field) {
            field.setText("Plan.txt");
            field.editingChanged = [this, done](TextField& changed) {
                message->setHidden(!changed.text().empty());
                done->setEnabled(!changed.text().empty());
                changed.setReturnKeyEnabled(!changed.text().empty());
                log += changed.text() + ";";
            };
        });
        alert->addAction(std::make_shared<AlertAction>("Cancel", AlertAction::Style::Cancel, nullptr));
        alert->addAction(done);
        navigation->present(alert, Animated::Yes);
        return alert;
    }

    std::string log;
    std::shared_ptr<Label> message = std::make_shared<Label>("A name is needed");
};

TEST_F(ConsoleControlsTest, AnAlertCoversTheScreenBehindIt)
{
    push("Projects");
    presentPrompt();
    EXPECT_EQ(
        run({"screen", "back", "tap Drive", "search x", "clear", "screen", "tap Done", "return", "tap Cancel", "back"}),
        "field: Plan.txt\nalert: Rename Item | Enter a new name.\nbutton: Cancel\nbutton: Done\nok\n"
        "error: there is no back button\nerror: nothing called \"Drive\" on the screen\n"
        "error: there is no search field on the screen\nok\n"
        "message: A name is needed\nalert: Rename Item | Enter a new name.\nbutton: Cancel\n"
        "button: Done (disabled)\nok\nerror: \"Done\" is disabled\nerror: the return key is disabled\nok\nok\n");
}

TEST_F(ConsoleControlsTest, TypesCharacterByCharacterIntoTheActiveField)
{
    presentPrompt();
    EXPECT_EQ(run({"clear", "type Bü é", "return", "tap Done", "type x", "clear", "return"}),
              "ok\nok\nok\nok\nerror: no text field is active\nerror: no text field is active\n"
              "error: no text field is active\n");
    EXPECT_EQ(log, ";B;Bü;Bü ;Bü é;done;");
}

TEST_F(ConsoleControlsTest, ShowsASheetWithItsMessage)
{
    const auto sheet =
        std::make_shared<AlertController>(AlertController::Style::ActionSheet, "", "“a” will be deleted.");
    sheet->addAction(std::make_shared<AlertAction>("Delete", AlertAction::Style::Destructive,
                                                   [this](const auto&) { log += "deleted;"; }));
    navigation->present(sheet, Animated::Yes);
    EXPECT_EQ(run({"screen", "tap Delete", "tap Delete"}), "sheet: “a” will be deleted.\nbutton: Delete\nok\nok\n"
                                                           "error: nothing called \"Delete\" on the screen\n");
    EXPECT_EQ(log, "deleted;");
}

TEST_F(ConsoleControlsTest, PressesTheItemsOfTheBars)
{
    const auto note = [this](const std::string& event) { return [this, event] { log += event + ";"; }; };
    const auto page = push("Projects");
    page->navigationItem.setLeftItems({BarButtonItem::titled("Cancel", note("cancel"))});
    page->navigationItem.setRightItems(
        {BarButtonItem::titled("Edge", note("edge")), BarButtonItem::titled("Next", {})});
    const auto move = std::make_shared<Button>("Move");
    move->pressed = note("move");
    const auto trash = BarButtonItem::system(BarButtonItem::System::Trash, note("trash"));
    const auto status = std::make_shared<View>();
    status->addSubview(std::make_shared<Label>("12 items, 3.4 GB available"));
    const auto offer = UpgradeButton::create();
    offer->pressed = note("offer");
    status->addSubview(offer);
    const auto hidden = UpgradeButton::create();
    hidden->setHidden(true);
    status->addSubview(hidden);
    page->setToolbarItems({BarButtonItem::custom(move), BarButtonItem::flexibleSpace(), BarButtonItem::custom(status),
                           BarButtonItem::fixedSpace(8), trash});
    EXPECT_THAT(run({"screen"}), testing::Not(HasSubstr("toolbar"))) << "it is hidden";
    navigation->setToolbarHidden(false);
    trash->setEnabled(false);
    EXPECT_EQ(
        run({"screen", "tap Cancel", "tap Edge", "tap Move", "tap Delete", "tap Drive", "back",
             "tap \"Upgrade Storage\""}),
        "title: Projects\nleft: Cancel\nright: Next\nright: Edge\nstatus: 12 items, 3.4 GB available\n"
        "offer: Upgrade Storage\ntoolbar: Move | Delete (disabled)\nok\nok\nok\nok\nerror: \"Delete\" is disabled\n"
        "error: nothing called \"Drive\" on the screen\nerror: there is no back button\nok\n");
    EXPECT_EQ(log, "cancel;edge;move;offer;");
    EXPECT_EQ(
        run({"screen"}, {.json = true}),
        R"json({"title": "Projects", "left": ["Cancel"], "right": ["Next", "Edge"], )json"
        R"json("status": "12 items, 3.4 GB available", "offer": "Upgrade Storage", "toolbar": "Move | Delete (disabled)"})json"
        "\nok\n");
    EXPECT_THAT(run({"screen"}, {.interactive = true}), HasSubstr("\n toolbar: Move | Delete (disabled)\n"));
}

TEST_F(ConsoleControlsTest, ShowsTheFieldsRowsAndButtonsOfAPage)
{
    const auto page = push("Details");
    const auto column = std::make_shared<View>();
    const auto field = std::make_shared<TextField>();
    const auto open = std::make_shared<Button>("Open");
    field->setText("Plan.txt");
    open->pressed = [&] { log += "open;"; };
    page->view().addSubview(column);
    for (const auto& view : std::vector<std::shared_ptr<View>>{open, std::make_shared<Label>("alone"), field})
        column->addSubview(view);
    for (const auto& [name, value] :
         {std::pair{"Kind", "Text"}, std::pair{"Where", "\u2068Drive\u2069 ▸ \u2068a\nb\u2069"}}) {
        const auto row = std::make_shared<View>();
        row->addSubview(std::make_shared<Label>(name));
        row->addSubview(std::make_shared<Label>(value));
        column->addSubview(row);
    }
    EXPECT_EQ(run({"screen", "type x", "tap Plan.txt", "type !", "tap Open"}),
              "title: Details\nback: Drive\nfield: Plan.txt\ninfo: Kind | Text\ninfo: Where | Drive ▸ a b\n"
              "button: Open\nok\nerror: no text field is active\nok\nok\nok\n");
    EXPECT_EQ(field->text(), "Plan.txt!");
    EXPECT_EQ(log, "open;");
    column->setHidden(true);
    EXPECT_EQ(run({"screen"}), "title: Details\nback: Drive\nok\n");
}

TEST_F(ConsoleControlsTest, ShowsWhatCoversTheStackInItsPlace)
{
    const auto cover = std::make_shared<Page>();
    cover->setTitle("Offer");
    push("Projects");
    navigation->present(cover, Animated::No);
    const auto inner = std::make_shared<NavigationController>();
    inner->pushViewController(std::make_shared<Page>(), Animated::No);
    inner->topViewController()->setTitle("Inside");
    EXPECT_EQ(run({"screen", "back"}), "title: Offer\nok\nerror: there is no back button\n");
    cover->present(inner, Animated::No);
    EXPECT_EQ(run({"screen"}), "title: Inside\nok\n");
}

/// Writes down the actions that it is asked for, and cannot move anything.
class Actor : public DocumentListControllerDelegate {
public:
    void documentListControllerDidSelectContainerWithViewController(
        DocumentListController&, const std::shared_ptr<DocumentListController>&) override
    {
    }
    void documentListControllerDidSelectItemAtURL(DocumentListController&, const URL&) override {}
    void documentListControllerItemsChanged(DocumentListController&) override {}
    void documentListControllerURLWasRemoved(DocumentListController&) override {}
    void documentListControllerPerformAction(DocumentListController&, int action, const URL& url,
                                             const std::shared_ptr<View>&, const std::function<void()>&) override
    {
        asked.push_back(std::to_string(action) + " " + std::string(url.lastPathComponent()));
    }
    [[nodiscard]] bool documentListControllerCanPerformAction(const DocumentListController&,
                                                              ListAction action) const override
    {
        return action != ListAction::Move;
    }

    std::vector<std::string> asked;
};

TEST_F(ConsoleControlsTest, AsksForTheActionsThatAListOffers)
{
    platform.drive.tree("Plan.txt Projects/ Projects/Plan.pdf");
    const auto list = DocumentListController::create();
    const auto actor = std::make_shared<Actor>();
    list->delegate = actor;
    list->offeredActions = 1U << static_cast<int>(ListAction::Rename) | 1U << static_cast<int>(ListAction::Move);
    navigation->setViewControllers({list}, Animated::No);
    platform.settle();
    EXPECT_EQ(run({"action Plan.txt Rename", "action Plan.txt Move", "action Plan.txt Info", "action Plan.txt Paint",
                   "action Nowhere Rename"}),
              "ok\nerror: \"Move\" is disabled\nerror: \"Info\" is disabled\nerror: no action is called \"Paint\"\n"
              "error: nothing called \"Nowhere\" on the screen\n");
    list->startSearch("pdf");
    platform.runUntil([this] {
        const auto search = std::dynamic_pointer_cast<SearchController>(navigation->presentedViewController());
        return search && !search->isBusy();
    });
    EXPECT_EQ(run({"action Plan.pdf Rename"}), "ok\n");
    presentPrompt();
    EXPECT_EQ(run({"action Plan.txt Rename", "search txt"}), "error: nothing called \"Plan.txt\" on the screen\n"
                                                             "error: there is no search field on the screen\n");
    EXPECT_THAT(actor->asked, ElementsAre("3 Plan.txt", "3 Plan.pdf"));
}

} // namespace
} // namespace tessel
