#include "platform/ui/StackView.h"

#include <algorithm>
#include <numeric>

namespace tessel {

void StackView::setAxis(Axis axis)
{
    if (!assign(axis_, axis))
        return;
    invalidateIntrinsicContentSize();
    setNeedsLayout();
}

void StackView::setAlignment(Alignment alignment)
{
    if (assign(alignment_, alignment))
        setNeedsLayout();
}

void StackView::setSpacing(double points)
{
    if (!assign(spacing_, points))
        return;
    invalidateIntrinsicContentSize();
    setNeedsLayout();
}

void StackView::addArrangedSubview(const std::shared_ptr<View>& view)
{
    addSubview(view); // which takes it out of where it was arranged
    arranged_.push_back(view);
    invalidateIntrinsicContentSize();
}

void StackView::removeArrangedSubview(const std::shared_ptr<View>& view)
{
    if (std::erase(arranged_, view) == 0)
        return;
    invalidateIntrinsicContentSize();
    setNeedsLayout();
}

void StackView::willRemoveSubview(const View& view)
{
    std::erase_if(arranged_, [&](const auto& arranged) { return arranged.get() == &view; });
}

Size StackView::intrinsicContentSize() const
{
    const auto views = shownViews();
    double length = spaces(views);
    double breadth = views.empty() ? 0 : -1;
    bool hasLength = true;
    for (const auto& view : views) {
        const auto content = view->intrinsicContentSize();
        hasLength = hasLength && along(content) >= 0;
        length += std::max(along(content), 0.0);
        breadth = std::max(breadth, across(content));
    }
    return size(hasLength ? length : -1, breadth);
}

Size StackView::sizeThatFits(const Size& available) const
{
    const auto views = shownViews();
    const auto most = axis_ == Axis::Horizontal ? available : Size{available.width, 0};
    const auto lengths = this->lengths(views, most);
    double length = spaces(views);
    double breadth = 0;
    for (std::size_t index = 0; index < views.size(); ++index) {
        length += lengths[index];
        const auto room = axis_ == Axis::Horizontal ? Size{lengths[index], available.height} : most;
        if (across(views[index]->intrinsicContentSize()) >= 0)
            breadth = std::max(breadth, across(views[index]->sizeThatFits(room)));
    }
    return size(length, breadth);
}

void StackView::layoutSubviews()
{
    const auto views = shownViews();
    auto lengths = this->lengths(views, {frame().width, frame().height});
    fill(lengths, views);
    double position = 0;
    for (std::size_t index = 0; index < views.size(); ++index) {
        place(*views[index], position, lengths[index]);
        position += lengths[index] + spacing_;
    }
}

StackView::Views StackView::shownViews() const
{
    Views views;
    std::ranges::copy_if(arranged_, std::back_inserter(views), [](const auto& view) { return !view->hidden(); });
    return views;
}

double StackView::along(const Size& size) const
{
    return axis_ == Axis::Horizontal ? size.width : size.height;
}

double StackView::across(const Size& size) const
{
    return axis_ == Axis::Horizontal ? size.height : size.width;
}

Size StackView::size(double along, double across) const
{
    return axis_ == Axis::Horizontal ? Size{along, across} : Size{across, along};
}

/// Below 0: none. Text in a column grows with its lines, so its height is asked for at the width that it gets.
double StackView::lengthOf(const View& view, double across) const
{
    const auto length = along(view.intrinsicContentSize());
    return length < 0 || axis_ == Axis::Horizontal ? length : view.sizeThatFits({across, 0}).height;
}

double StackView::spaces(const Views& views) const
{
    return views.empty() ? 0 : spacing_ * static_cast<double>(views.size() - 1);
}

/// Those of the contents, the last ones cut to what is available.
/// @param available 0 along the axis: without an end
std::vector<double> StackView::lengths(const Views& views, const Size& available) const
{
    std::vector<double> lengths;
    for (const auto& view : views)
        lengths.push_back(std::max(lengthOf(*view, across(available)), 0.0));
    if (along(available) <= 0)
        return lengths;
    double excess = std::accumulate(lengths.begin(), lengths.end(), spaces(views)) - along(available);
    for (auto length = lengths.rbegin(); excess > 0 && length != lengths.rend(); ++length) {
        const auto cut = std::min(*length, excess);
        *length -= cut;
        excess -= cut;
    }
    return lengths;
}

/// Gives away what is left of the stack's length.
void StackView::fill(std::vector<double>& lengths, const Views& views) const
{
    const auto left =
        along({frame().width, frame().height}) - std::accumulate(lengths.begin(), lengths.end(), spaces(views));
    if (left <= 0 || views.empty())
        return;
    const auto grows = [&](const auto& view) { return along(view->intrinsicContentSize()) < 0; };
    const auto growing = std::ranges::count_if(views, grows);
    if (growing == 0)
        lengths.back() += left;
    for (std::size_t index = 0; index < views.size(); ++index)
        if (grows(views[index]))
            lengths[index] += left / static_cast<double>(growing);
}

void StackView::place(View& view, double position, double length) const
{
    const auto room = across({frame().width, frame().height});
    const auto content = across(view.intrinsicContentSize());
    const bool fills = alignment_ == Alignment::Fill || content < 0;
    const auto breadth = fills ? room : std::min(across(view.sizeThatFits(size(length, room))), room);
    double offset = 0;
    if (alignment_ == Alignment::Center)
        offset = (room - breadth) / 2;
    else if (alignment_ == Alignment::Trailing)
        offset = room - breadth;
    view.setFrame(axis_ == Axis::Horizontal ? Rect{position, offset, length, breadth}
                                            : Rect{offset, position, breadth, length});
}

} // namespace tessel
