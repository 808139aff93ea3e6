#pragma once

#include "platform/ui/Control.h"
#include "platform/ui/Font.h"
#include "platform/ui/Image.h"

#include <functional>

namespace tessel {

/// A button in the system's style: its title, or its symbol, in the accent colour.
class Button : public Control {
public:
    Button() = default;
    explicit Button(std::string title) : title_(std::move(title)) {}

    [[nodiscard]] const std::string& title() const { return title_; }
    void setTitle(std::string);
    [[nodiscard]] const std::optional<Image>& image() const { return image_; }
    void setImage(std::optional<Image>);
    [[nodiscard]] const Font& titleFont() const { return font_; }
    void setTitleFont(const Font&);
    /// The height of the title's text alone; 0 without a title.
    [[nodiscard]] double titleHeight() const;

    /// What a touch that ends inside does.
    std::function<void()> pressed;
    /// Presses the button, as the user does. Nothing while it is disabled.
    /// @returns whether it was pressed.
    bool press();

    [[nodiscard]] Size intrinsicContentSize() const override;
    [[nodiscard]] std::string accessibilityLabel() const override;

private:
    std::string title_;
    std::optional<Image> image_;
    Font font_;
};

} // namespace tessel
