#pragma once

#include "platform/ui/Label.h"

#include <memory>
#include <string>

namespace tessel {

/// A row with what an attribute is called, in grey, and its value, in black. As high as the value's lines.
class FileInfoCell : public View {
public:
    FileInfoCell() : FileInfoCell("", "", 1) {}
    FileInfoCell(std::string name, std::string value, std::size_t maxLines);

    [[nodiscard]] static Font font() { return Font::ofStyle(TextStyle::Subheadline); }

    const std::shared_ptr<Label> nameLabel;
    const std::shared_ptr<Label> valueLabel;
};

} // namespace tessel
