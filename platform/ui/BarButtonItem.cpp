#include "platform/ui/BarButtonItem.h"

#include "platform/base/Platform.h"
#include "platform/text/TextServices.h"
#include "platform/ui/Button.h"
#include "platform/ui/Device.h"

#include <utility>

namespace tessel {

namespace {

struct SystemItem {
    const char* title;  ///< the key of its text
    const char* symbol; ///< null: the title is shown
};

SystemItem describe(BarButtonItem::System system)
{
    switch (system) {
    case BarButtonItem::System::Cancel:
        return {"Cancel", nullptr};
    case BarButtonItem::System::Done:
        return {"Done", nullptr};
    case BarButtonItem::System::Action:
        return {"Share", "action"};
    case BarButtonItem::System::Trash:
        return {"Delete", "trash"};
    case BarButtonItem::System::Organize:
        return {"Move", "organize"};
    }
    return {};
}

Control* controlIn(const std::shared_ptr<View>& view)
{
    return dynamic_cast<Control*>(view.get());
}

} // namespace

std::shared_ptr<BarButtonItem> BarButtonItem::titled(std::string title, std::function<void()> action)
{
    const std::shared_ptr<BarButtonItem> item(new BarButtonItem);
    item->title_ = std::move(title);
    item->action_ = std::move(action);
    return item;
}

std::shared_ptr<BarButtonItem> BarButtonItem::system(System system, std::function<void()> action)
{
    const auto [title, symbol] = describe(system);
    auto item = titled(platform::installed().text.localized(title), std::move(action));
    if (symbol)
        item->image_ = Image::symbol(symbol);
    item->style_ = system == System::Done ? Style::Done : system == System::Cancel ? Style::Cancel : Style::Plain;
    return item;
}

std::shared_ptr<BarButtonItem> BarButtonItem::flexibleSpace()
{
    const std::shared_ptr<BarButtonItem> item(new BarButtonItem);
    item->kind_ = Kind::FlexibleSpace;
    return item;
}

std::shared_ptr<BarButtonItem> BarButtonItem::fixedSpace(double width)
{
    const std::shared_ptr<BarButtonItem> item(new BarButtonItem);
    item->kind_ = Kind::FixedSpace;
    item->width_ = width;
    return item;
}

std::shared_ptr<BarButtonItem> BarButtonItem::custom(std::shared_ptr<View> view)
{
    const std::shared_ptr<BarButtonItem> item(new BarButtonItem);
    item->kind_ = Kind::Custom;
    item->customView_ = std::move(view);
    return item;
}

std::string BarButtonItem::title() const
{
    const auto* button = dynamic_cast<const Button*>(customView_.get());
    return button ? button->title() : title_;
}

bool BarButtonItem::enabled() const
{
    const auto* control = controlIn(customView_);
    return control ? control->enabled() : enabled_;
}

void BarButtonItem::setEnabled(bool enabled)
{
    if (enabled == this->enabled())
        return;
    if (auto* control = controlIn(customView_))
        control->setEnabled(enabled);
    else
        enabled_ = enabled;
    if (changed)
        changed();
    platform::installed().device.tellScreenChanged();
}

bool BarButtonItem::press()
{
    if (auto* button = dynamic_cast<Button*>(customView_.get()))
        return button->press();
    if (kind_ != Kind::Plain || !enabled_)
        return false;
    if (const auto action = action_)
        action();
    return true;
}

} // namespace tessel
