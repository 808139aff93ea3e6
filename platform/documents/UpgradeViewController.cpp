#include "platform/documents/UpgradeViewController.h"

#include "platform/base/Platform.h"
#include "platform/text/TextServices.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/ScrollView.h"

#include <algorithm>

namespace tessel {

namespace {

constexpr double kMargin = 16;
constexpr double kGap = 8;
constexpr double kWidestText = 560;

/// The lines of a text of the service's, without what could be taken for something else.
std::string shown(const std::string& text)
{
    std::string lines;
    for (std::size_t begin = 0; begin <= text.size();) {
        const auto end = std::min(text.find('\n', begin), text.size());
        lines += (begin > 0 ? "\n" : "") + platform::installed().text.displayName(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

void configure(Label& label, const std::string& text, TextStyle style)
{
    label.setText(shown(text));
    label.setFont(Font::preferred(style));
    label.setNumberOfLines(0);
    label.setLineBreak(LineBreak::WordWrap);
}

} // namespace

UpgradeViewController::UpgradeViewController(StorageOffer offer) : offer_(std::move(offer))
{
    setTitle(platform::installed().text.localized("Upgrade Storage"));
    navigationItem.setRightItems({BarButtonItem::system(BarButtonItem::System::Done, [this] {
        if (const auto navigation = navigationController())
            navigation->dismiss(Animated::Yes);
    })});
}

std::shared_ptr<View> UpgradeViewController::loadView()
{
    return std::make_shared<ScrollView>();
}

void UpgradeViewController::viewDidLoad()
{
    view().setBackgroundColor(Color::white());
    configure(*title_, offer_.title, TextStyle::Title2);
    configure(*message_, offer_.message, TextStyle::Body);
    view().addSubview(title_);
    view().addSubview(message_);
}

void UpgradeViewController::viewWillLayoutSubviews()
{
    const auto width = view().bounds().width;
    const auto column = std::clamp(width - 2 * kMargin, 0.0, kWidestText);
    const auto place = [&](Label& label, double top) {
        label.setFrame({(width - column) / 2, top, column, label.sizeThatFits({column, 0}).height});
        return top + label.frame().height;
    };
    const auto bottom = place(*message_, place(*title_, kMargin) + kGap);
    static_cast<ScrollView&>(view()).setContentSize({width, bottom + kMargin});
}

} // namespace tessel
