#pragma once

#include "platform/ui/Label.h"
#include "platform/ui/ViewController.h"

#include <memory>

namespace tessel {

/// An area with some lines of small red text, as high as the text: what is wrong with what the user typed.
class SimpleTextViewController : public ViewController {
public:
    [[nodiscard]] std::string className() const override { return "SimpleTextViewController"; }

    std::shared_ptr<Label> messageLabel; ///< made with the view

    /// Points between the text and the view's leading and trailing edges.
    [[nodiscard]] double _labelHorizontalInsets() const { return 16; }
    [[nodiscard]] Font messageLabelFont() const { return Font::preferred(TextStyle::Footnote); }

protected:
    [[nodiscard]] std::shared_ptr<View> loadView() override;
    void viewDidLoad() override;
};

} // namespace tessel
