#include "platform/console/ScreenControls.h"

#include "platform/base/Platform.h"
#include "platform/text/TextServices.h"
#include "platform/ui/AlertController.h"
#include "platform/ui/Label.h"
#include "platform/ui/NavigationController.h"

#include <algorithm>
#include <functional>

namespace tessel {

namespace {

/// Names of items can be part of a text, and hold what a terminal must not get.
std::string oneLine(std::string text)
{
    std::ranges::replace(text, '\n', ' ');
    return platform::installed().text.displayName(text);
}

void addControl(Screen& screen, std::string_view key, const std::string& title, bool enabled,
                std::function<void()> press)
{
    const auto name = oneLine(title);
    if (enabled)
        screen.push_back({key, {name}, name, std::move(press), {}});
    else if (!name.empty())
        screen.push_back({key, {name + " (disabled)"}, name, {}, {}});
}

void addBarItem(Screen& screen, std::string_view key, const std::shared_ptr<BarButtonItem>& item)
{
    if (!item->title().empty())
        addControl(screen, key, item->title(), item->enabled(), [item] { item->press(); });
}

/// The texts of the labels that can be seen in a view, in reading order.
void collectLabels(const View& view, std::vector<std::string>& texts)
{
    if (view.hidden())
        return;
    if (const auto* label = dynamic_cast<const Label*>(&view))
        texts.push_back(oneLine(label->text()));
    for (const auto& subview : view.subviews())
        collectLabels(*subview, texts);
}

} // namespace

void addLine(Screen& screen, std::string_view key, std::vector<std::string> parts)
{
    std::erase(parts, "");
    if (!parts.empty())
        screen.push_back({key, std::move(parts), {}, {}, {}});
}

void addBarItems(Screen& screen, const NavigationItem& navigationItem)
{
    for (const auto& item : navigationItem.leftItems())
        addBarItem(screen, "left", item);
    auto right = navigationItem.rightItems();
    std::ranges::reverse(right);
    for (const auto& item : right)
        addBarItem(screen, "right", item);
}

void addToolbar(Screen& screen, const NavigationController& navigation, const ViewController& top)
{
    if (navigation.toolbarHidden())
        return;
    std::vector<std::string> status;
    for (const auto& item : top.toolbarItems())
        if (item->customView())
            collectLabels(*item->customView(), status);
    addLine(screen, "status", std::move(status));
    for (const auto& item : top.toolbarItems())
        addBarItem(screen, "toolbar", item);
}

void addButton(Screen& screen, const std::string& title, std::function<void()> press)
{
    if (!title.empty())
        addControl(screen, "button", title, true, std::move(press));
}

void addAlert(Screen& screen, const std::shared_ptr<AlertController>& alert)
{
    for (const auto& field : alert->textFields())
        addLine(screen, "field", {oneLine(field->text())});
    if (const auto& content = alert->contentViewController()) {
        std::vector<std::string> texts;
        collectLabels(content->view(), texts);
        addLine(screen, "message", std::move(texts));
    }
    const bool isSheet = alert->style() == AlertController::Style::ActionSheet;
    addLine(screen, isSheet ? "sheet" : "alert", {oneLine(alert->title()), oneLine(alert->message())});
    for (const auto& action : alert->actions())
        addControl(screen, "button", action->title(), action->enabled(), [alert, action] { alert->choose(action); });
}

} // namespace tessel
