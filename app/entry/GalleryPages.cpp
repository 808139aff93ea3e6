#include "app/entry/GalleryPages.h"

#include "platform/base/Platform.h"
#include "platform/ui/Button.h"
#include "platform/ui/Device.h"
#include "platform/ui/ImageView.h"
#include "platform/ui/Label.h"
#include "platform/ui/NavigationController.h"
#include "platform/ui/ScrollView.h"
#include "platform/ui/StackView.h"
#include "platform/ui/TextField.h"
#include "preview/PieProgressIndicatorView.h"

namespace tessel {

namespace {

constexpr double kMargin = 16;

constexpr auto kLongText = "A text of many words that does not fit into one line of any phone, and goes on for a while "
                           "so that one can see where it is broken and where it ends.";

/// As large as it wants to be shown here.
class Pie final : public PieProgressIndicatorView {
public:
    [[nodiscard]] Size intrinsicContentSize() const override { return {64, 64}; }
};

std::shared_ptr<Label> label(std::string text, TextStyle style = TextStyle::Body)
{
    auto made = std::make_shared<Label>(std::move(text));
    made->setFont(Font::preferred(style));
    return made;
}

/// Names with a dot before each.
std::shared_ptr<Label> dottedLabel(const std::vector<std::pair<std::string, Color>>& names)
{
    auto made = label("", TextStyle::Subheadline);
    const auto metrics = platform::installed().device.textMeasurer().metrics(made->font());
    AttributedText text;
    for (const auto& [name, color] : names) {
        const auto dot = std::make_shared<DisplayList>();
        dot->setFillColor(color);
        dot->fillOval({1, metrics.ascender - metrics.capHeight + 1, metrics.capHeight - 1, metrics.capHeight - 1});
        text.append(Image::drawn(dot, {metrics.capHeight + 2, metrics.lineHeight}));
        text.append(name, {metrics.descender});
    }
    made->setAttributedText(std::move(text));
    return made;
}

std::shared_ptr<ImageView> picture(Image image)
{
    auto made = std::make_shared<ImageView>();
    made->setImage(std::move(image));
    return made;
}

std::shared_ptr<StackView> stack(StackView::Axis axis, const std::vector<std::shared_ptr<View>>& views)
{
    auto made = std::make_shared<StackView>();
    made->setAxis(axis);
    made->setAlignment(StackView::Alignment::Leading);
    made->setSpacing(8);
    for (const auto& view : views)
        made->addArrangedSubview(view);
    return made;
}

/// A picture that is shown larger than it is.
class EnlargedView final : public ImageView {
public:
    [[nodiscard]] Size intrinsicContentSize() const override { return {144, 96}; }
};

/// Nine units wide and six high.
std::shared_ptr<const DisplayList> flag(double unit)
{
    const auto drawing = std::make_shared<DisplayList>();
    for (int stripe = 0; stripe < 3; ++stripe) {
        drawing->setFillColor({0.2 + 0.3 * stripe, 0.4, 0.8 - 0.3 * stripe, 1});
        drawing->fillRect({0, 2 * unit * stripe, 9 * unit, 2 * unit});
    }
    drawing->setFillColor(Color::white());
    drawing->fillOval({3 * unit, 1.5 * unit, 3 * unit, 3 * unit});
    return drawing;
}

} // namespace

GalleryPage::GalleryPage(std::string title) : column_(std::make_shared<StackView>())
{
    setTitle(std::move(title));
    column_->setAxis(StackView::Axis::Vertical);
    column_->setAlignment(StackView::Alignment::Leading);
    column_->setSpacing(12);
}

void GalleryPage::add(const std::shared_ptr<View>& view)
{
    column_->addArrangedSubview(view);
}

void GalleryPage::addText(std::string text)
{
    const auto made = label(std::move(text), TextStyle::Footnote);
    made->setNumberOfLines(0);
    made->setTextColor(Color::gray(0.4));
    add(made);
}

void GalleryPage::addButton(std::string title, std::function<void(GalleryPage&, Button&)> pressed)
{
    const auto button = std::make_shared<Button>(std::move(title));
    button->setTitleFont(Font::preferred(TextStyle::Body));
    button->pressed = [this, weakButton = std::weak_ptr(button), pressed = std::move(pressed)] {
        if (const auto held = weakButton.lock())
            pressed(*this, *held);
    };
    add(button);
}

std::shared_ptr<View> GalleryPage::loadView()
{
    const auto scroll = std::make_shared<ScrollView>();
    scroll->setBackgroundColor(Color::white());
    scroll->addSubview(column_);
    return scroll;
}

void GalleryPage::viewWillLayoutSubviews()
{
    const auto width = view().bounds().width;
    const auto height = column_->sizeThatFits({width - 2 * kMargin, 0}).height;
    column_->setFrame({kMargin, kMargin, width - 2 * kMargin, height});
    static_cast<ScrollView&>(view()).setContentSize({width, height + 2 * kMargin});
}

std::shared_ptr<GalleryPage> galleryLabels()
{
    constexpr std::pair<const char*, TextStyle> kStyles[] = {
        {"Title 2", TextStyle::Title2},          {"Headline", TextStyle::Headline}, {"Body", TextStyle::Body},
        {"Subheadline", TextStyle::Subheadline}, {"Footnote", TextStyle::Footnote}, {"Caption 1", TextStyle::Caption1},
        {"Caption 2", TextStyle::Caption2}};
    auto page = std::make_shared<GalleryPage>("Labels");
    for (const auto& [name, style] : kStyles)
        page->add(label(name, style));
    const auto colored = label("In a colour of its own");
    colored->setTextColor({0.7, 0.1, 0.3, 1});
    page->add(colored);
    const auto middle = label(kLongText);
    middle->setLineBreak(LineBreak::TruncateMiddle);
    page->add(middle);
    const auto two = label(kLongText);
    two->setNumberOfLines(2);
    page->add(two);
    const auto all = label(kLongText);
    all->setNumberOfLines(0);
    page->add(all);
    page->add(label("نص من اليمين إلى اليسار"));
    return page;
}

std::shared_ptr<GalleryPage> galleryControls()
{
    auto page = std::make_shared<GalleryPage>("Controls");
    const auto count = std::make_shared<int>(0);
    page->addButton("Not pressed yet", [count](GalleryPage&, Button& button) {
        button.setTitle("Pressed " + std::to_string(++*count) + (*count == 1 ? " time" : " times"));
    });
    const auto disabled = std::make_shared<Button>("Disabled");
    disabled->setEnabled(false);
    page->add(disabled);
    const auto symbol = std::make_shared<Button>("Share");
    symbol->setImage(Image::symbol("share"));
    page->add(symbol);

    const auto echo = label("What is typed is repeated here.", TextStyle::Footnote);
    const auto field = std::make_shared<TextField>();
    field->setPlaceholder("A text field");
    field->showsClearButtonWhileEditing = true;
    field->setFrame({0, 0, 280, 0});
    field->editingChanged = [weakEcho = std::weak_ptr(echo)](TextField& edited) {
        if (const auto held = weakEcho.lock())
            held->setText(edited.text());
    };
    page->add(field);
    page->add(echo);
    const auto locked = std::make_shared<TextField>();
    locked->setText("A field that cannot be edited");
    locked->setEnabled(false);
    page->add(locked);
    return page;
}

std::shared_ptr<GalleryPage> galleryPictures()
{
    auto page = std::make_shared<GalleryPage>("Pictures");
    page->addText("A symbol, icons, and a picture that the program drew");
    page->add(stack(StackView::Axis::Horizontal,
                    {picture(Image::symbol("folder-add")), picture(Image::icon("folder", {48, 48})),
                     picture(Image::icon("text-x-generic", {48, 48})), picture(Image::drawn(flag(8), {72, 48}))}));
    page->addText("Pictures in a text");
    page->add(dottedLabel({{"Red & green ", Color::systemRed()}, {"<Green>", Color::systemGreen()}}));
    page->addText("A view that draws itself: 40 %");
    const auto pie = std::make_shared<Pie>();
    pie->setProgress(0.4F);
    page->add(pie);
    page->addText("Enlarged smoothly, and to the next pixel");
    const auto smooth = std::make_shared<EnlargedView>();
    const auto sharp = std::make_shared<EnlargedView>();
    sharp->setMagnification(Magnification::NearestNeighbour);
    for (const auto& view : {smooth, sharp})
        view->setImage(Image::drawn(flag(1), {9, 6}));
    page->add(stack(StackView::Axis::Horizontal, {smooth, sharp}));
    return page;
}

std::shared_ptr<GalleryPage> galleryStacks()
{
    const auto box = [](double level) {
        auto made = label(" " + std::to_string(static_cast<int>(level * 100)) + " % ");
        made->setBackgroundColor(Color::gray(level));
        made->setBorder({1, Color::black()});
        return made;
    };
    auto page = std::make_shared<GalleryPage>("Stacks");
    page->addText("Stacks within stacks; the one in the middle is hidden in the second row");
    for (const bool isHidden : {false, true}) {
        const auto middle = box(0.8);
        middle->setHidden(isHidden);
        page->add(stack(StackView::Axis::Horizontal,
                        {box(0.9), stack(StackView::Axis::Vertical, {box(0.85), middle, box(0.75)}), box(0.7)}));
    }
    page->addText("Content that scrolls");
    for (int line = 1; line <= 30; ++line)
        page->add(label("Line " + std::to_string(line)));
    return page;
}

} // namespace tessel
