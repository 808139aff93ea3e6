#include "platform/qt/views/PictureNodes.h"

#include "platform/base/Platform.h"
#include "platform/qt/views/ImageSources.h"
#include "platform/ui/Device.h"
#include "platform/ui/DisplayList.h"
#include "platform/ui/ImageView.h"
#include "platform/ui/ScrollView.h"

#include <QEasingCurve>

#include <algorithm>
#include <iterator>

namespace tessel::qt {

std::shared_ptr<ImageView> ImageNode::image() const
{
    return std::static_pointer_cast<ImageView>(view());
}

QString ImageNode::imageSource() const
{
    const auto image = this->image();
    return image ? qt::imageSource(image->image(), dark()) : QString();
}

QString ImageNode::symbol() const
{
    const auto image = this->image();
    const bool isSymbol = image && image->image() && image->image()->kind() == Image::Kind::Symbol;
    return isSymbol ? QString::fromStdString(image->image()->name()) : QString();
}

QVariant ImageNode::iconSize() const
{
    const auto view = image();
    const auto image = view ? view->image() : std::nullopt;
    if (!image || image->kind() != Image::Kind::Icon)
        return {};
    const auto& size = image->size();
    return QSizeF(std::max(size.width, width()), std::max(size.height, height())).toSize();
}

bool ImageNode::isSmooth() const
{
    const auto image = this->image();
    return !image || image->magnification() == Magnification::Smooth;
}

std::shared_ptr<ScrollView> ScrollNode::scrollView() const
{
    return std::static_pointer_cast<ScrollView>(view());
}

double ScrollNode::contentWidth() const
{
    const auto scroll = scrollView();
    return scroll ? scroll->contentSize().width : 0;
}

double ScrollNode::contentHeight() const
{
    const auto scroll = scrollView();
    return scroll ? scroll->contentSize().height : 0;
}

double ScrollNode::contentX() const
{
    const auto scroll = scrollView();
    return scroll ? scroll->contentOffset().x : 0;
}

double ScrollNode::contentY() const
{
    const auto scroll = scrollView();
    return scroll ? scroll->contentOffset().y : 0;
}

EdgeInsets ScrollNode::insets() const
{
    const auto scroll = scrollView();
    return scroll ? scroll->contentInset() : EdgeInsets();
}

bool ScrollNode::bounces() const
{
    const auto scroll = scrollView();
    return scroll && scroll->bouncesVertically;
}

bool ScrollNode::hasIndicators() const
{
    const auto scroll = scrollView();
    return scroll && scroll->showsIndicators;
}

void ScrollNode::scrolled(double x, double y)
{
    if (const auto scroll = scrollView())
        scroll->didScrollTo({x, y});
}

void ScrollNode::viewChanged(ViewChange change)
{
    constexpr QEasingCurve::Type kCurves[] = {QEasingCurve::InOutQuad, QEasingCurve::InQuad, QEasingCurve::OutQuad,
                                              QEasingCurve::Linear};
    const auto& animation = platform::installed().device.animation;
    motion_ = animation ? static_cast<int>(animation->duration * 1000) : 0;
    easing_ = kCurves[animation ? animation->options / Animation::kCurve % std::size(kCurves) : 0];
    Node::viewChanged(change);
}

std::shared_ptr<const DisplayList> DrawnNode::drawing() const
{
    auto drawing = std::make_shared<DisplayList>();
    if (const auto view = this->view())
        view->draw(*drawing);
    return drawing;
}

void DrawnNode::viewChanged(ViewChange change)
{
    Node::viewChanged(change);
    if (change == ViewChange::Drawing)
        emit drawingChanged();
}

} // namespace tessel::qt
