#pragma once

#include "platform/ui/TextField.h"
#include "platform/ui/ViewController.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tessel {

/// One button of an alert.
class AlertAction {
public:
    enum class Style { Default, Cancel, Destructive };
    using Handler = std::function<void(const std::shared_ptr<AlertAction>&)>;

    AlertAction(std::string title, Style style, Handler handler)
        : title_(std::move(title)), style_(style), handler_(std::move(handler))
    {
    }

    [[nodiscard]] const std::string& title() const { return title_; }
    [[nodiscard]] Style style() const { return style_; }
    [[nodiscard]] bool enabled() const { return enabled_; }
    void setEnabled(bool);

    /// Asked when the button is pressed; a no keeps the alert open and the handler uncalled.
    std::function<bool()> shouldDismiss;

    /// Told after each change, by the shell's wish.
    std::function<void()> changed;

private:
    friend class AlertController;

    std::string title_;
    Style style_;
    Handler handler_;
    bool enabled_ = true;
};

/// A question to the user, over everything else: an alert in the middle of the screen, or an action sheet, which is a
/// popover at its anchor on a tablet and comes from the bottom edge on a phone.
class AlertController : public ViewController {
public:
    enum class Style { Alert, ActionSheet };

    AlertController(Style, std::string title, std::string message);

    [[nodiscard]] std::string className() const override { return "AlertController"; }

    [[nodiscard]] Style style() const { return style_; }
    [[nodiscard]] const std::string& message() const { return message_; } ///< the title is the controller's

    [[nodiscard]] const std::vector<std::shared_ptr<AlertAction>>& actions() const { return actions_; }
    void addAction(std::shared_ptr<AlertAction>);

    [[nodiscard]] const std::vector<std::shared_ptr<TextField>>& textFields() const { return textFields_; }
    /// Adds a field, after `configure` has set it up; the first one is edited as soon as the alert is shown.
    void addTextField(const std::function<void(TextField&)>& configure);

    /// An area of the program's own between the fields and the buttons; null without one.
    [[nodiscard]] const std::shared_ptr<ViewController>& contentViewController() const { return content_; }
    void setContentViewController(std::shared_ptr<ViewController>);

    /// Presses a button, as the user does: unless it is disabled or refuses, the alert is dismissed and then the
    /// handler called. Nothing for a button of another alert, and once the alert is no longer presented.
    /// @returns whether the alert was dismissed.
    bool choose(const std::shared_ptr<AlertAction>&);
    /// What a touch beside the alert, Escape or the back button mean: chooses the cancel action; without one, nothing.
    bool cancel();

protected:
    void viewDidAppear() override;
    void viewWillDisappear(Animated) override;

private:
    [[nodiscard]] std::vector<std::shared_ptr<ViewController>> shownWithin() const override;

    Style style_;
    std::string message_;
    std::vector<std::shared_ptr<AlertAction>> actions_;
    std::vector<std::shared_ptr<TextField>> textFields_;
    std::shared_ptr<ViewController> content_;
};

} // namespace tessel
