#include "files/SimpleTextViewController.h"

#include <algorithm>

namespace tessel {

namespace {

constexpr std::size_t kMostLines = 5;

/// Holds one view between its leading and trailing edges, and is as high as that; hidden, it takes no room.
class InsetView final : public View {
public:
    explicit InsetView(double inset) : inset_(inset) {}

    [[nodiscard]] Size sizeThatFits(const Size& available) const override
    {
        if (hidden() || subviews().empty())
            return {available.width, 0};
        const auto width = widthInside(available.width);
        return {available.width, subviews().front()->sizeThatFits({width, available.height}).height};
    }

private:
    [[nodiscard]] double widthInside(double width) const { return std::max(0.0, width - 2 * inset_); }

    void layoutSubviews() override
    {
        for (const auto& subview : subviews())
            subview->setFrame({inset_, 0, widthInside(bounds().width), bounds().height});
    }

    const double inset_;
};

} // namespace

std::shared_ptr<View> SimpleTextViewController::loadView()
{
    return std::make_shared<InsetView>(_labelHorizontalInsets());
}

void SimpleTextViewController::viewDidLoad()
{
    messageLabel = std::make_shared<Label>();
    messageLabel->setNumberOfLines(kMostLines);
    messageLabel->setFont(messageLabelFont());
    messageLabel->setTextColor({1, 0, 0, 1});
    messageLabel->setLineBreak(LineBreak::WordWrap);
    view().addSubview(messageLabel);
}

} // namespace tessel
