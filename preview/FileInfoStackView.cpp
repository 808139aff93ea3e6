#include "preview/FileInfoStackView.h"

#include "files/DRItem.h"
#include "files/FileTags.h"
#include "files/FileUtils.h"
#include "platform/base/Platform.h"
#include "platform/ui/Device.h"
#include "platform/ui/layout/VisualFormat.h"

#include <algorithm>
#include <utility>

namespace tessel {

namespace {

constexpr double kRowSpacing = 10;
constexpr std::size_t kMostLinesOfPlace = 4;

} // namespace

FileInfoStackView::FileInfoStackView()
{
    setAlignment(Alignment::Leading);
    setDistribution(Distribution::Fill);
    setSpacing(kRowSpacing);
    setLaidOutByConstraints(true);
}

void FileInfoStackView::setItem(std::shared_ptr<DRItem> item)
{
    item_ = std::move(item);
    if (!item_)
        return;
    removeCells();
    const auto& text = platform::installed().text;
    const auto& url = item_->url();
    addCellIfKnown(text.localized("Kind"), item_->localizedTypeDescription());
    addCellIfKnown(text.localized("Size"), item_->friendlyFileSize());
    addCellIfKnown(text.localized("Where"), url ? FileUtils::displayableLocationForURL(*url) : std::nullopt,
                   kMostLinesOfPlace);
    creationDateCell_ = addCellIfKnown(text.localized("Created"), item_->friendlyCreationDate(DateStyle::Long));
    modifiedDateCell_ =
        addCellIfKnown(text.localized("Modified"), item_->friendlyContentModificationDate(DateStyle::Long));
    if (auto tags = buildTagsWithImagesString(*item_, FileInfoCell::font()))
        addCell(text.localized("Tags"), "", 1)->valueLabel->setAttributedText(std::move(*tags));
}

std::shared_ptr<FileInfoCell> FileInfoStackView::addCell(std::string name, std::string value, std::size_t maxLines)
{
    auto cell = std::make_shared<FileInfoCell>(std::move(name), std::move(value), maxLines);
    const auto last = arrangedSubviews().empty() ? nullptr : arrangedSubviews().back();
    addArrangedSubview(cell);
    if (const auto* const lastCell = dynamic_cast<const FileInfoCell*>(last.get())) {
        const NamedViews views{{"nameLabel", cell->nameLabel.get()}, {"lastNameLabel", lastCell->nameLabel.get()}};
        LayoutConstraint::activate(constraintsWithVisualFormat("[nameLabel(==lastNameLabel)]", views).value());
    }
    return cell;
}

std::optional<AttributedText> FileInfoStackView::buildTagsWithImagesString(const DRItem& item, const Font& font)
{
    const auto& tags = item.tags();
    if (!tags || tags->empty())
        return std::nullopt;
    const auto metrics = platform::installed().device.textMeasurer().metrics(font);
    constexpr double kGap = 2; // between image and name
    const Size imageSize{metrics.capHeight + kGap, metrics.lineHeight};
    const bool isMirrored = platform::installed().device.layoutDirection == LayoutDirection::RightToLeft;
    const Point offset{isMirrored ? kGap : 0, metrics.ascender - metrics.capHeight + 1};
    const TextAttributes attributes{metrics.descender};
    AttributedText text;
    for (const auto& tag : *tags) {
        if (auto blip = FileTags::blipWithTag(tag, imageSize, metrics.capHeight, offset))
            text.append(std::move(*blip), attributes);
        const auto name = platform::installed().text.displayName(tag);
        text.append(&tag == &tags->back() ? name : name + " ", attributes);
    }
    return text;
}

void FileInfoStackView::layoutSubviews()
{
    StackView::layoutSubviews();
    const auto width = widthOfDates();
    if (!item_ || width <= 0)
        return;
    const auto fits = [width](const Text& text) {
        const auto& measurer = platform::installed().device.textMeasurer();
        return !text || measurer.measure(*text, FileInfoCell::font(), kUnlimitedWidth, 1).width <= width;
    };
    Text created;
    Text modified;
    for (const auto style : {DateStyle::Long, DateStyle::Medium, DateStyle::Short}) {
        created = dateOf(creationDateCell_, style);
        modified = dateOf(modifiedDateCell_, style);
        if (fits(created) && fits(modified))
            break;
    }
    if (created)
        creationDateCell_->valueLabel->setText(*created);
    if (modified)
        modifiedDateCell_->valueLabel->setText(*modified);
}

void FileInfoStackView::removeCells()
{
    const auto cells = arrangedSubviews();
    for (const auto& cell : cells)
        cell->removeFromSuperview();
    creationDateCell_ = nullptr;
    modifiedDateCell_ = nullptr;
}

std::shared_ptr<FileInfoCell> FileInfoStackView::addCellIfKnown(const std::string& name, const Text& value,
                                                                std::size_t maxLines)
{
    return value ? addCell(name, *value, maxLines) : nullptr;
}

double FileInfoStackView::widthOfDates() const
{
    double width = 0;
    for (const auto& cell : {creationDateCell_, modifiedDateCell_}) {
        if (!cell)
            continue;
        cell->layoutIfNeeded();
        width = std::max(width, cell->valueLabel->frame().width);
    }
    return width;
}

/// None for a row that is not there.
FileInfoStackView::Text FileInfoStackView::dateOf(const std::shared_ptr<FileInfoCell>& cell, DateStyle style) const
{
    if (!cell)
        return std::nullopt;
    return cell == creationDateCell_ ? item_->friendlyCreationDate(style)
                                     : item_->friendlyContentModificationDate(style);
}

} // namespace tessel
