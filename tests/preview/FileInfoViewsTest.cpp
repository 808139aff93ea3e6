#include "files/DRItem.h"
#include "platform/linux/cloud/TagAttribute.h"
#include "platform/linux/files/ExtendedAttributes.h"
#include "platform/ui/Device.h"
#include "preview/ConstraintUtils.h"
#include "preview/FileInfoStackView.h"
#include "preview/HairlineView.h"
#include "preview/ThumbnailImageView.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

namespace tessel {

static void PrintTo(const Rect& rect, std::ostream* stream)
{
    *stream << "{" << rect.x << ", " << rect.y << ", " << rect.width << ", " << rect.height << "}";
}

namespace {

using testing::ElementsAre;

/// Shows any picture as a thumbnail.
class ShownThumbnail : public ThumbnailImageView {
public:
    using ThumbnailImageView::_setThumbnailImage;
};

class FileInfoViewsTest : public testing::Test {
protected:
    FileInfoViewsTest()
    {
        info->setAxis(StackView::Axis::Vertical);
        root->addSubview(info);
        LayoutConstraint::activate({info->topAnchor().equalTo(root->topAnchor()),
                                    info->centerXAnchor().equalTo(root->centerXAnchor()),
                                    info->widthAnchor().atMost(root->widthAnchor(), -16)});
    }
    ~FileInfoViewsTest() override { device.layoutDirection = LayoutDirection::LeftToRight; }

    std::shared_ptr<FileInfoCell> cell(std::size_t index)
    {
        return std::static_pointer_cast<FileInfoCell>(info->arrangedSubviews().at(index));
    }
    std::vector<std::string> names() const
    {
        std::vector<std::string> names;
        for (const auto& row : info->arrangedSubviews())
            names.push_back(std::static_pointer_cast<FileInfoCell>(row)->nameLabel->text());
        return names;
    }
    std::string created(DateStyle style) const { return *info->item()->friendlyCreationDate(style); }
    std::string modified(DateStyle style) const { return *info->item()->friendlyContentModificationDate(style); }
    /// The root's width in which the dates just fit: beside them are names of 60 points, and 16 + 10 points.
    double widthFor(DateStyle style) const
    {
        const auto widthOf = [&](const std::string& text) {
            return device.textMeasurer().measure(text, FileInfoCell::font(), kUnlimitedWidth, 1).width;
        };
        return 86 + std::ceil(std::max(widthOf(created(style)), widthOf(modified(style))));
    }

    InstalledPlatform platform;
    Device& device = platform.services().device;
    std::shared_ptr<View> root = std::make_shared<View>(Rect{0, 0, 400, 600});
    std::shared_ptr<FileInfoStackView> info = std::make_shared<FileInfoStackView>();
};

// The fixed advance of this font is 7.5 points a character, a line is 18 high.
TEST_F(FileInfoViewsTest, RowsHaveTheirNamesInOneColumnAndWrapTheirValues)
{
    info->addCell("Kind", "Text", 1);
    info->addCell("Modified", std::string(20, 'x'), 1);
    info->addCell("Where", "aaaaaaaaaaaaaaaaaaa bbbbbbbbbbbbbbbbbbb ccccccccccccccccccc", 4);
    root->layoutIfNeeded();
    // The names are 8 * 7.5 = 60 wide; the widest row would be 60 + 10 + 59 * 7.5 = 512.5, and 384 are left.
    EXPECT_EQ(info->frame(), (Rect{8, 0, 384, 18 + 10 + 18 + 10 + 36}));
    for (std::size_t row = 0; row < 3; ++row)
        EXPECT_EQ(cell(row)->nameLabel->frame(), (Rect{0, 0, 60, 18})) << row;
    EXPECT_EQ(cell(0)->frame(), (Rect{0, 0, 100, 18}));
    EXPECT_EQ(cell(0)->valueLabel->frame(), (Rect{70, 0, 30, 18}));
    EXPECT_EQ(cell(1)->frame(), (Rect{0, 28, 220, 18}));
    EXPECT_EQ(cell(2)->frame(), (Rect{0, 56, 384, 36}));
    EXPECT_EQ(cell(2)->valueLabel->frame(), (Rect{70, 0, 314, 36})) << "41 characters a line";

    root->setFrame({0, 0, 236, 600}); // 220 for a row, 150 for a value, 20 characters a line
    root->layoutIfNeeded();
    EXPECT_EQ(cell(2)->frame(), (Rect{0, 56, 220, 54}));
    EXPECT_EQ(cell(1)->valueLabel->frame(), (Rect{70, 0, 150, 18}));
}

TEST_F(FileInfoViewsTest, NamesStandTowardsTheirValuesInEitherDirection)
{
    EXPECT_EQ(FileInfoCell("Kind", "", 1).nameLabel->textAlignment(), TextAlignment::Right);
    device.layoutDirection = LayoutDirection::RightToLeft;
    EXPECT_EQ(FileInfoCell("Kind", "", 1).nameLabel->textAlignment(), TextAlignment::Left);
    const auto row = info->addCell("Kind", "Text", 1);
    root->layoutIfNeeded();
    EXPECT_EQ(row->valueLabel->frame(), (Rect{40, 0, 30, 18})) << "from the leading edge";
}

TEST_F(FileInfoViewsTest, DatesAreAsLongAsThereIsRoom)
{
    info->setItem(DRItem::initWithURL(platform.drive.file("Plan.txt", "seven!!")));
    EXPECT_THAT(names(), ElementsAre("Kind", "Size", "Where", "Created", "Modified"));
    EXPECT_EQ(cell(0)->valueLabel->text(), "Plain text document");
    EXPECT_EQ(cell(1)->valueLabel->text(), "7 bytes");
    const std::pair<double, DateStyle> kWidths[] = {{widthFor(DateStyle::Long), DateStyle::Long},
                                                    {widthFor(DateStyle::Long) - 1, DateStyle::Medium},
                                                    {widthFor(DateStyle::Medium), DateStyle::Medium},
                                                    {widthFor(DateStyle::Medium) - 1, DateStyle::Short},
                                                    {100, DateStyle::Short}};
    for (const auto& [width, style] : kWidths) {
        info->setItem(info->item());
        root->setFrame({0, 0, width, 600});
        root->layoutIfNeeded();
        EXPECT_EQ(info->creationDateCell()->valueLabel->text(), created(style)) << width;
        EXPECT_EQ(info->modifiedDateCell()->valueLabel->text(), modified(style)) << width;
    }
    info->setItem(nullptr);
    EXPECT_EQ(names().size(), 5U) << "the old rows stay";
}

TEST_F(FileInfoViewsTest, TagsStandBehindTheirDots)
{
    const auto url = platform.drive.file("Plan.txt", "seven!!");
    ASSERT_EQ(setExtendedAttribute(url, kTagAttribute, "A,B"), std::nullopt);
    const auto tags = FileInfoStackView::buildTagsWithImagesString(*DRItem::initWithURL(url), {10, false});
    ASSERT_EQ(tags->runs().size(), 4U);
    const TextAttributes raised{2.5}; // the descender
    for (const std::size_t dot : {0U, 2U}) {
        EXPECT_EQ(tags->runs()[dot].attachment->size(), (Size{9, 12}));
        EXPECT_EQ(tags->runs()[dot].attributes, raised);
    }
    EXPECT_EQ(tags->runs()[1].text, "A ");
    EXPECT_EQ(tags->runs()[3].text, "B");
    info->setItem(DRItem::initWithURL(url));
    EXPECT_EQ(names().back(), "Tags");
    EXPECT_EQ(cell(5)->valueLabel->text(), "A B");
}

TEST_F(FileInfoViewsTest, PicturesFitBetweenTheirMargins)
{
    struct Case {
        Size image;
        Rect frame;
        double margin;
        Rect fitted;
    };
    const Case kCases[] = {{{100, 50}, {0, 0, 300, 300}, 17, {17, 83.5, 266, 133}},
                           {{100, 50}, {30, 10, 300, 300}, 17, {47, 93.5, 266, 133}},
                           {{10, 10}, {0, 0, 1000, 1000}, 17, {460, 460, 80, 80}},
                           {{0, 50}, {0, 0, 300, 300}, 17, {150, 150, 0, 0}},
                           {{50, 1e-8}, {0, 0, 300, 300}, 17, {150, 150, 0, 0}},
                           {{2000, 4000}, {0, 0, 190, 490}, 45, {45, 145, 100, 200}}};
    ShownThumbnail thumbnail;
    for (const auto& one : kCases)
        EXPECT_EQ(thumbnail.aspectFitImage(one.image, one.frame, one.margin), one.fitted);
}

TEST_F(FileInfoViewsTest, DocumentsWithoutAPictureHaveTheIconOfTheirType)
{
    const auto view = std::make_shared<ShownThumbnail>();
    view->setItem(DRItem::initWithURL(platform.drive.file("Plan.txt", "seven!!")));
    view->setFrame({0, 0, 100, 300});
    view->layoutIfNeeded();
    EXPECT_TRUE(view->isGenericImage());
    EXPECT_EQ(view->thumbnailView()->image()->name(), "text-x-generic");
    EXPECT_EQ(view->thumbnailView()->frame(), (Rect{-14, 86, 128, 128})) << "twice its size, whatever the room";
    EXPECT_EQ(view->thumbnailView()->border().width, 0);
    view->_setThumbnailImage(Image::symbol("share"), true);
    EXPECT_EQ(view->thumbnailView()->border(), (Border{1, Color::gray(0, 0.16)}));

    if (std::string_view(TESSELDRIVE_DECODER).empty())
        return;
    const auto drawing = "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='20'><g/></svg>";
    view->setItem(DRItem::initWithURL(platform.drive.file("Plan.svg", drawing)));
    EXPECT_TRUE(view->isGenericImage());
    ASSERT_TRUE(platform.runUntil([&] { return !view->isGenericImage(); }));
    EXPECT_EQ(view->thumbnailView()->image()->size(), (Size{40, 20}));
    EXPECT_EQ(view->thumbnailView()->border().width, 1);
    view->setItem(DRItem::initWithURL(platform.drive.file("Damaged.svg", "<svg")));
    EXPECT_TRUE(view->isGenericImage());

    device.idiom = Idiom::Pad;
    for (const auto& [width, margin] : {std::pair{1024.0, 45.0}, std::pair{320.0, 17.0}}) {
        device.setScreenBounds({0, 0, width, 768});
        EXPECT_EQ(ThumbnailImageView::margins(), margin);
    }
}

TEST_F(FileInfoViewsTest, HairlinesAreAPixelHighAndStacksOfTwoShareTheHeight)
{
    device.screenScale = 2;
    const auto line = std::make_shared<HairlineView>();
    const auto label = std::make_shared<Label>("12 characters...");
    for (const auto& view : {std::static_pointer_cast<View>(line), std::static_pointer_cast<View>(label)}) {
        view->setLaidOutByConstraints(true);
        root->addSubview(view);
    }
    const auto constraints = ConstraintUtils::verticallyStackedConstraintsInParent(*root, *line, *label, 3);
    EXPECT_EQ(constraints.size(), 7U);
    EXPECT_FALSE(constraints.front()->isActive());
    LayoutConstraint::activate(constraints);
    line->widthAnchor().equalTo(100)->setActive(true);
    root->layoutIfNeeded();
    EXPECT_EQ(line->frame(), (Rect{150, 0, 100, 0.5}));
    EXPECT_EQ(label->frame(), (Rect{132, 3.5, 136, 596.5}));
    LayoutConstraint::deactivate(constraints);
    LayoutConstraint::activate(ConstraintUtils::stretchSubviewConstraints(*label, *root));
    root->layoutIfNeeded();
    EXPECT_EQ(label->frame(), (Rect{0, 0, 400, 600}));
    device.screenScale = 1;
}

} // namespace
} // namespace tessel
