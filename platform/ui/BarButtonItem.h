#pragma once

#include "platform/ui/Image.h"
#include "platform/ui/View.h"

#include <functional>
#include <memory>
#include <string>

namespace tessel {

/// One entry of a navigation bar or toolbar. Made as a shared pointer: the program keeps the ones that it enables and
/// anchors popovers at. Main thread only.
class BarButtonItem {
public:
    enum class Kind { Plain, FlexibleSpace, FixedSpace, Custom };
    enum class Style { Plain, Cancel, Done };
    /// The system's own buttons, with its symbols and texts.
    enum class System { Cancel, Done, Action, Trash, Organize };

    [[nodiscard]] static std::shared_ptr<BarButtonItem> titled(std::string title, std::function<void()> action);
    [[nodiscard]] static std::shared_ptr<BarButtonItem> system(System, std::function<void()> action);
    [[nodiscard]] static std::shared_ptr<BarButtonItem> flexibleSpace();
    [[nodiscard]] static std::shared_ptr<BarButtonItem> fixedSpace(double width);
    /// A button among the custom views is pressed by itself. A view that has no size of its own is as large as a
    /// toolbar, so that it stands alone between its spaces.
    [[nodiscard]] static std::shared_ptr<BarButtonItem> custom(std::shared_ptr<View>);

    [[nodiscard]] Kind kind() const { return kind_; }
    [[nodiscard]] double width() const { return width_; } ///< of a fixed space, points
    [[nodiscard]] const std::shared_ptr<View>& customView() const { return customView_; }
    /// Of a custom button: the button's.
    [[nodiscard]] std::string title() const;
    /// Shown in place of the title, which stays its accessible name.
    [[nodiscard]] const std::optional<Image>& image() const { return image_; }
    [[nodiscard]] Style style() const { return style_; }

    /// Of a custom control: whether that is.
    [[nodiscard]] bool enabled() const;
    void setEnabled(bool);

    /// Presses the item, as the user does. Nothing while it is disabled, and for a space.
    /// @returns whether it was pressed.
    bool press();

    /// Told after each change, by the shell's wish.
    std::function<void()> changed;

private:
    BarButtonItem() = default;

    Kind kind_ = Kind::Plain;
    Style style_ = Style::Plain;
    std::string title_;
    std::optional<Image> image_;
    double width_ = 0;
    std::shared_ptr<View> customView_;
    std::function<void()> action_;
    bool enabled_ = true;
};

} // namespace tessel
