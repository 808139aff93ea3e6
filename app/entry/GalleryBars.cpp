#include "app/entry/GalleryPages.h"

#include "platform/base/Platform.h"
#include "platform/ui/AlertController.h"
#include "platform/ui/Button.h"
#include "platform/ui/Device.h"
#include "platform/ui/Label.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/StackView.h"

namespace tessel {

namespace {

/// A page that shows its toolbar while it is on top.
class BarsPage final : public GalleryPage {
public:
    BarsPage() : GalleryPage("Bars") {}

protected:
    void viewWillAppear(Animated) override { navigationController()->setToolbarHidden(false); }
    void viewWillDisappear(Animated) override
    {
        if (const auto navigation = navigationController())
            navigation->setToolbarHidden(true);
    }
};

/// A panel at the bottom of an otherwise clear view.
class PanelController final : public ViewController {
public:
    [[nodiscard]] std::string className() const override { return "PanelController"; }

protected:
    void viewDidLoad() override
    {
        panel_->setBackgroundColor(Color::gray(0.95));
        panel_->setBorder({1, Color::gray(0.8)});
        panel_->addSubview(text_);
        close_->pressed = [this] { dismiss(Animated::Yes); };
        panel_->addSubview(close_);
        view().addSubview(panel_);
    }
    void viewWillLayoutSubviews() override
    {
        const auto bounds = view().bounds();
        const auto height = std::min(bounds.height, 160.0);
        panel_->setFrame({0, bounds.height - height, bounds.width, height});
        text_->setFrame({16, 16, bounds.width - 32, 60});
        const auto size = close_->intrinsicContentSize();
        close_->setFrame({16, 100, size.width, size.height});
    }

private:
    const std::shared_ptr<View> panel_ = std::make_shared<View>();
    const std::shared_ptr<Label> text_ = std::make_shared<Label>("What lies beneath shows through.");
    const std::shared_ptr<Button> close_ = std::make_shared<Button>("Close");
};

/// The area of an alert between its field and its buttons.
class NoteController final : public ViewController {
public:
    [[nodiscard]] std::string className() const override { return "NoteController"; }

protected:
    [[nodiscard]] std::shared_ptr<View> loadView() override
    {
        auto note = std::make_shared<Label>("A name must not be empty. OK is enabled while it is not.");
        note->setNumberOfLines(0);
        note->setFont(Font::preferred(TextStyle::Footnote));
        note->setTextAlignment(TextAlignment::Center);
        return note;
    }
};

void presentAlert(GalleryPage& page, Button& button)
{
    const auto alert =
        std::make_shared<AlertController>(AlertController::Style::Alert, "Name", "What shall it be called?");
    const auto accept = std::make_shared<AlertAction>(
        "OK", AlertAction::Style::Default,
        [weakAlert = std::weak_ptr(alert), weakButton = std::weak_ptr(button.weak_from_this())](const auto&) {
            const auto named = weakButton.lock();
            const auto asked = weakAlert.lock();
            if (named && asked)
                static_cast<Button&>(*named).setTitle("Alert: " + asked->textFields().front()->text());
        });
    accept->setEnabled(false);
    alert->addTextField([&accept](TextField& field) {
        field.setPlaceholder("Name");
        field.editingChanged = [weakAccept = std::weak_ptr(accept)](TextField& edited) {
            if (const auto held = weakAccept.lock())
                held->setEnabled(!edited.text().empty());
        };
    });
    alert->setContentViewController(std::make_shared<NoteController>());
    alert->addAction(std::make_shared<AlertAction>("Cancel", AlertAction::Style::Cancel, nullptr));
    alert->addAction(accept);
    page.present(alert, Animated::Yes);
}

void presentSheet(GalleryPage& page, Button& button)
{
    const auto sheet =
        std::make_shared<AlertController>(AlertController::Style::ActionSheet, "", "Nothing is deleted.");
    sheet->popoverAnchor.sourceView = button.weak_from_this();
    sheet->popoverAnchor.sourceRect = button.bounds();
    sheet->addAction(std::make_shared<AlertAction>("Delete", AlertAction::Style::Destructive, nullptr));
    sheet->addAction(std::make_shared<AlertAction>("Keep", AlertAction::Style::Default, nullptr));
    sheet->addAction(std::make_shared<AlertAction>("Cancel", AlertAction::Style::Cancel, nullptr));
    page.present(sheet, Animated::Yes);
}

void presentPopover(GalleryPage& page, Button& button)
{
    const auto popover = galleryLabels();
    popover->presentationStyle = PresentationStyle::Popover;
    popover->popoverAnchor.sourceView = button.weak_from_this();
    popover->popoverAnchor.onlyLeftOrRight = true;
    page.present(popover, Animated::Yes);
}

void presentOverContext(GalleryPage& page, Button&)
{
    const auto panel = std::make_shared<PanelController>();
    panel->presentationStyle = PresentationStyle::OverCurrentContext;
    page.present(panel, Animated::Yes);
}

void presentStack(GalleryPage& page, Button&)
{
    const auto navigation = std::make_shared<NavigationController>();
    const auto inner = galleryPresentations();
    inner->navigationItem.setRightItems(
        {BarButtonItem::system(BarButtonItem::System::Done, [weak = std::weak_ptr(navigation)] {
            if (const auto presented = weak.lock(); presented && presented->presentingViewController())
                presented->presentingViewController()->dismiss(Animated::Yes);
        })});
    navigation->setViewControllers({inner}, Animated::No);
    page.present(navigation, Animated::Yes);
}

} // namespace

std::shared_ptr<GalleryPage> galleryBars()
{
    auto page = std::make_shared<BarsPage>();
    const auto status = std::make_shared<Label>("Nothing pressed");
    status->setFont(Font::preferred(TextStyle::Caption1));
    status->sizeToFit();
    const auto tells = [weakStatus = std::weak_ptr(status)](std::string text) {
        return [weakStatus, text = std::move(text)] {
            const auto held = weakStatus.lock();
            if (!held)
                return;
            held->setText(text);
            held->sizeToFit();
        };
    };
    const auto disabled = BarButtonItem::titled("Disabled", tells("Never"));
    disabled->setEnabled(false);
    page->navigationItem.setRightItems({BarButtonItem::system(BarButtonItem::System::Done, tells("Done")),
                                        BarButtonItem::system(BarButtonItem::System::Action, tells("Share"))});
    page->setToolbarItems({BarButtonItem::system(BarButtonItem::System::Trash, tells("Trash")),
                           BarButtonItem::fixedSpace(24), disabled, BarButtonItem::flexibleSpace(),
                           BarButtonItem::custom(status), BarButtonItem::flexibleSpace(),
                           BarButtonItem::system(BarButtonItem::System::Organize, tells("Organize"))});
    page->addText("Items above and below; the status in the middle is a view of the page's own.");
    return page;
}

std::shared_ptr<GalleryPage> galleryPresentations()
{
    auto page = std::make_shared<GalleryPage>("Presentations");
    page->addButton("Alert with a text field", presentAlert);
    page->addButton("Action sheet", presentSheet);
    page->addButton("Popover", presentPopover);
    page->addButton("Over the current context", presentOverContext);
    page->addButton("Full screen, with pages of its own", presentStack);
    return page;
}

} // namespace tessel
