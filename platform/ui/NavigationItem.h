#pragma once

#include "platform/ui/BarButtonItem.h"

#include <memory>
#include <string>
#include <vector>

namespace tessel {

using BarButtonItems = std::vector<std::shared_ptr<BarButtonItem>>;

/// What a controller shows in the navigation bar while it is on top. The setters have the shells look again.
class NavigationItem {
public:
    [[nodiscard]] const std::string& title() const { return title_; }
    void setTitle(std::string); ///< UTF-8
    /// One line over the title: what the user is about to do; empty for none.
    [[nodiscard]] const std::string& prompt() const { return prompt_; }
    void setPrompt(std::string); ///< UTF-8
    [[nodiscard]] bool hidesBackButton() const { return hidesBackButton_; }
    void setHidesBackButton(bool);
    /// In reading order; they take the back button's place unless they supplement it.
    [[nodiscard]] const BarButtonItems& leftItems() const { return leftItems_; }
    void setLeftItems(BarButtonItems);
    [[nodiscard]] bool leftItemsSupplementBackButton() const { return leftItemsSupplement_; }
    void setLeftItemsSupplementBackButton(bool);
    /// From the edge inwards: the first is the last that is read.
    [[nodiscard]] const BarButtonItems& rightItems() const { return rightItems_; }
    void setRightItems(BarButtonItems);

private:
    std::string title_;
    std::string prompt_;
    bool hidesBackButton_ = false;
    bool leftItemsSupplement_ = false;
    BarButtonItems leftItems_;
    BarButtonItems rightItems_;
};

} // namespace tessel
