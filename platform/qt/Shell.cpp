#include "platform/qt/Shell.h"

#include "platform/base/Platform.h"
#include "platform/qt/BarItem.h"
#include "platform/qt/Layer.h"
#include "platform/qt/OnScreenKeyboard.h"
#include "platform/qt/SceneItems.h"
#include "platform/qt/SystemAppearance.h"
#include "platform/qt/WindowSize.h"
#include "platform/qt/lists/RowView.h"
#include "platform/qt/views/Node.h"
#include "platform/text/TextServices.h"
#include "platform/ui/Device.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/Window.h"

#include <QJSEngine>

namespace tessel::qt {

namespace {

Device& device()
{
    return platform::installed().device;
}

std::shared_ptr<ViewController> rootController()
{
    const auto window = device().keyWindow();
    return window ? window->rootViewController() : nullptr;
}

std::shared_ptr<NavigationController> rootNavigation()
{
    return std::dynamic_pointer_cast<NavigationController>(rootController());
}

/// Presses the bar's Cancel button. @returns whether there is one
bool pressCancel(const NavigationController& navigation)
{
    const auto top = navigation.topViewController();
    if (!top || navigation.presentedViewController())
        return false;
    for (const auto& items : {top->navigationItem.leftItems(), top->navigationItem.rightItems()})
        for (const auto& item : items)
            if (item->style() == BarButtonItem::Style::Cancel)
                return item->press();
    return false;
}

bool goBackIn(NavigationController& navigation)
{
    return navigation.pressBack() || pressCancel(navigation);
}

double marginOfToolbar()
{
    return device().idiom == Idiom::Pad ? 16 : 8;
}

/// Lays out the views among the items of a toolbar. One that has no size of its own is as large as the bar.
void layOutToolbar(const ViewController& controller, double width)
{
    const Rect bar{0, 0, std::max(0.0, width - 2 * marginOfToolbar()), NavigationController::toolbarHeight()};
    for (const auto& item : BarButtonItems(controller.toolbarItems())) {
        const auto& view = item->customView();
        if (view && view->intrinsicContentSize().width < 0)
            view->setFrame(bar);
        if (view)
            view->layoutIfNeeded();
    }
}

/// Lays out the stack's top controller in the room between the bars, unless it wants to lie under them.
void layOutTop(NavigationController& navigation, const Size& window)
{
    navigation.layoutView({0, 0, window.width, window.height});
    const auto top = navigation.topViewController();
    if (!top)
        return;
    layOutToolbar(*top, window.width);
    if (top->extendsUnderBars)
        return top->layoutView({0, 0, window.width, window.height});
    const auto above = NavigationController::navigationBarHeight();
    const auto below = PageStack::hasToolbar(navigation, *top) ? NavigationController::toolbarHeight() : 0;
    top->layoutView({0, above, window.width, std::max(0.0, window.height - above - below)});
}

} // namespace

Shell::Shell(const SystemAppearance& appearance)
    : appearance_(appearance), items_(new BarItems(appearance.isDark(), this)),
      pages_(new PageStack(appearance.isDark(), this)), layers_(new LayerList(appearance.isDark(), this))
{
    QJSEngine::setObjectOwnership(this, QJSEngine::CppOwnership);
    connect(&appearance, &SystemAppearance::changed, this, &Shell::appearanceChanged);
    new OnScreenKeyboard(this);
    device().screenChanged = [this] { screenChanged(); };
    screenChanged();
}

Shell::~Shell()
{
    device().screenChanged = nullptr;
}

bool Shell::isTablet() const
{
    return device().idiom == Idiom::Pad;
}

bool Shell::isMirrored() const
{
    return device().layoutDirection == LayoutDirection::RightToLeft;
}

bool Shell::isDark() const
{
    return appearance_.isDark();
}

double Shell::textScale() const
{
    return device().textScale;
}

double Shell::navigationBarHeight() const
{
    return NavigationController::navigationBarHeight();
}

double Shell::toolbarHeight() const
{
    return NavigationController::toolbarHeight();
}

double Shell::toolbarMargin() const
{
    return marginOfToolbar();
}

QString Shell::applicationTitle() const
{
    return text(QStringLiteral("Tessel Drive"));
}

QString Shell::text(const QString& key) const
{
    return QString::fromStdString(platform::installed().text.localized(key.toStdString()));
}

bool Shell::back()
{
    sync(); // what QML shows may be older than what there is
    const bool wentBack = goBack();
    if (wentBack)
        sync(); // and QML may ask at once what became of its page
    return wentBack;
}

bool Shell::goBack()
{
    const auto layers = layers_->layers();
    if (layers.empty()) {
        const auto navigation = rootNavigation();
        return navigation && goBackIn(*navigation);
    }
    auto* const top = layers.back();
    return top->cancel() || (top->navigation() && goBackIn(*top->navigation()));
}

void Shell::setSize(double width, double height)
{
    const Rect bounds{0, 0, width, height};
    if (bounds == device().screenBounds())
        return;
    device().setScreenBounds(bounds);
    device().idiom = idiomOfSize({width, height});
    emit deviceChanged();
    screenChanged();
}

void Shell::setActive(bool isActive)
{
    if (std::exchange(isActive_, isActive) != isActive)
        emit activeChanged();
}

void Shell::appearanceChanged()
{
    device().textScale = appearance_.textScale();
    items_->setDark(isDark());
    pages_->setDark(isDark());
    layers_->setDark(isDark());
    emit deviceChanged();
    screenChanged();
}

void Shell::screenChanged()
{
    if (!std::exchange(isSyncPosted_, true))
        QMetaObject::invokeMethod(this, "sync", Qt::QueuedConnection);
}

// What is told meanwhile, such as by controllers that are laid out, has it run again.
void Shell::sync()
{
    isSyncPosted_ = false;
    layers_->follow(rootController());
    layOut();
    pages_->sync(rootNavigation().get(), *items_);
    for (auto* const layer : layers_->layers())
        layer->sync(*items_);
    syncAnchors();
    items_->dropGone();
}

void Shell::syncAnchors()
{
    for (auto* const layer : layers_->layers())
        layer->setAnchor(rectOf(layer->controller()->popoverAnchor));
}

void Shell::layOut()
{
    const auto bounds = device().screenBounds();
    const Size window{bounds.width, bounds.height};
    if (const auto navigation = rootNavigation())
        layOutTop(*navigation, window);
    for (const auto* const layer : layers_->layers()) {
        layer->layOut(window, isTablet());
        if (const auto navigation = layer->navigation())
            layOutTop(*navigation, {navigation->view().frame().width, navigation->view().frame().height});
    }
}

QRectF Shell::rectOf(const PopoverAnchor& anchor) const
{
    const auto entry = anchor.barButtonItem.lock();
    const auto view = anchor.sourceView.lock();
    if (!scene_ || (!entry && !view))
        return {};
    if (entry)
        return rectOnScene(
            itemShowing(*scene_, "item", [shown = items_->find(entry)](const QObject* item) { return item == shown; }));
    if (const auto* const row = dynamic_cast<const RowView*>(view.get()))
        return rectOfRow(*scene_, row->row());
    const auto* const item = itemShowing(*scene_, "node", [&view](const QObject* node) {
        return qobject_cast<const Node*>(node) && static_cast<const Node*>(node)->view() == view;
    });
    return rectOnScene(item, anchor.sourceRect, isMirrored());
}

} // namespace tessel::qt
