#pragma once

#include "platform/text/TextServices.h"
#include "platform/ui/StackView.h"
#include "preview/FileInfoCell.h"

#include <memory>
#include <optional>
#include <string>

namespace tessel {

class DRItem;

/// Lists what is known of a document: its kind, size, place, dates and tags. Dates are as long as there is room for.
class FileInfoStackView : public StackView {
public:
    FileInfoStackView();

    [[nodiscard]] const std::shared_ptr<DRItem>& item() const { return item_; }
    /// Makes the rows anew; null leaves them as they are.
    void setItem(std::shared_ptr<DRItem>);

    /// The rows of the dates; null while the item has no such date.
    [[nodiscard]] const std::shared_ptr<FileInfoCell>& modifiedDateCell() const { return modifiedDateCell_; }
    [[nodiscard]] const std::shared_ptr<FileInfoCell>& creationDateCell() const { return creationDateCell_; }

    /// Appends a row whose name is as wide as those of the other rows.
    std::shared_ptr<FileInfoCell> addCell(std::string name, std::string value, std::size_t maxLines);
    /// The tags' names, each behind a dot in its colour; none without tags.
    [[nodiscard]] static std::optional<AttributedText> buildTagsWithImagesString(const DRItem&, const Font&);

protected:
    void layoutSubviews() override;

private:
    using Text = std::optional<std::string>;

    void removeCells();
    std::shared_ptr<FileInfoCell> addCellIfKnown(const std::string& name, const Text& value, std::size_t maxLines = 1);
    [[nodiscard]] double widthOfDates() const;
    [[nodiscard]] Text dateOf(const std::shared_ptr<FileInfoCell>&, DateStyle) const;

    std::shared_ptr<DRItem> item_;
    std::shared_ptr<FileInfoCell> modifiedDateCell_;
    std::shared_ptr<FileInfoCell> creationDateCell_;
};

} // namespace tessel
