#include "platform/console/ScreenControls.h"

#include "platform/base/Platform.h"
#include "platform/documents/UpgradeButton.h"
#include "platform/text/TextServices.h"
#include "platform/ui/AlertController.h"
#include "platform/ui/Button.h"
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

void visit(const std::shared_ptr<View>& view, const std::function<void(const std::shared_ptr<View>&)>& visitor)
{
    if (view->hidden())
        return;
    visitor(view);
    for (const auto& subview : view->subviews())
        visit(subview, visitor);
}

/// Without the isolates that the program puts around names where they stand in a text.
std::string withoutIsolates(std::string text)
{
    for (const std::string_view isolate : {"\u2068", "\u2069"})
        for (auto at = text.find(isolate); at != std::string::npos; at = text.find(isolate, at))
            text.erase(at, isolate.size());
    return text;
}

/// The texts of a view that holds labels only, such as what an attribute is called and its value.
std::vector<std::string> rowOfLabels(const View& view)
{
    std::vector<std::string> texts;
    for (const auto& subview : view.subviews()) {
        const auto* const label = dynamic_cast<const Label*>(subview.get());
        if (!label)
            return {};
        texts.push_back(oneLine(withoutIsolates(label->text())));
    }
    return texts;
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
    const auto addOffer = [&screen](const std::shared_ptr<View>& view) {
        if (const auto button = std::dynamic_pointer_cast<UpgradeButton>(view))
            addControl(screen, "offer", button->title(), button->enabled(), [button] { button->press(); });
    };
    for (const auto& item : top.toolbarItems())
        if (item->customView())
            visit(item->customView(), addOffer);
    for (const auto& item : top.toolbarItems())
        addBarItem(screen, "toolbar", item);
}

void addButton(Screen& screen, const std::string& title, std::function<void()> press)
{
    if (!title.empty())
        addControl(screen, "button", title, true, std::move(press));
}

void addPage(Screen& screen, const View& page)
{
    const auto add = [&screen](const std::shared_ptr<View>& view) {
        if (const auto field = std::dynamic_pointer_cast<TextField>(view); field && !field->text().empty()) {
            const auto text = oneLine(field->text());
            screen.push_back({"field", {text}, text, [field] { field->becomeFirstResponder(); }, {}});
        } else if (auto texts = rowOfLabels(*view); texts.size() > 1) {
            addLine(screen, "info", std::move(texts));
        }
    };
    for (const auto& view : page.subviews())
        visit(view, add);
}

void addButtons(Screen& screen, const View& page)
{
    const auto add = [&screen](const std::shared_ptr<View>& view) {
        if (const auto button = std::dynamic_pointer_cast<Button>(view))
            addControl(screen, "button", button->accessibilityLabel(), button->enabled(),
                       [button] { button->press(); });
    };
    for (const auto& view : page.subviews())
        visit(view, add);
}

void addOfferPage(Screen& screen, const StorageOffer& offer)
{
    addLine(screen, "message", {oneLine(offer.title), oneLine(offer.message)});
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
