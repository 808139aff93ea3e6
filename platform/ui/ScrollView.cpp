#include "platform/ui/ScrollView.h"

#include <algorithm>

namespace tessel {

void ScrollView::setContentInset(const EdgeInsets& inset)
{
    if (assign(contentInset_, inset))
        setContentOffset({contentOffset_.x, verticallyInContent(contentOffset_.y)});
}

void ScrollView::scrollRectToVisible(const Rect& rect)
{
    const auto above = rect.y - contentInset_.top;
    const auto below = rect.y + rect.height - bounds().height + contentInset_.bottom;
    const auto y = std::min(std::max(contentOffset_.y, below), above);
    setContentOffset({contentOffset_.x, verticallyInContent(y)});
}

double ScrollView::verticallyInContent(double y) const
{
    const auto least = -contentInset_.top;
    return std::clamp(y, least, std::max(least, contentSize_.height - bounds().height + contentInset_.bottom));
}

} // namespace tessel
