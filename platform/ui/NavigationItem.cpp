#include "platform/ui/NavigationItem.h"

#include "platform/base/Platform.h"
#include "platform/ui/Device.h"

#include <utility>

namespace tessel {

namespace {

template <typename T>
void assign(T& property, T value)
{
    if (property == value)
        return;
    property = std::move(value);
    platform::installed().device.tellScreenChanged();
}

} // namespace

void NavigationItem::setTitle(std::string title)
{
    assign(title_, std::move(title));
}

void NavigationItem::setPrompt(std::string prompt)
{
    assign(prompt_, std::move(prompt));
}

void NavigationItem::setHidesBackButton(bool hides)
{
    assign(hidesBackButton_, hides);
}

void NavigationItem::setLeftItems(BarButtonItems items)
{
    assign(leftItems_, std::move(items));
}

void NavigationItem::setLeftItemsSupplementBackButton(bool supplement)
{
    assign(leftItemsSupplement_, supplement);
}

void NavigationItem::setRightItems(BarButtonItems items)
{
    assign(rightItems_, std::move(items));
}

} // namespace tessel
