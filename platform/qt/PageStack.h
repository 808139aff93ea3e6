#pragma once

#include "platform/qt/PresenceList.h"

namespace tessel {
class NavigationController;
} // namespace tessel

namespace tessel::qt {

class BarItems;
class Page;

/// The pages of a navigation stack; the role is `page`.
class PageStack : public PresenceList {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Stacks of pages are made by the shell.")

public:
    PageStack(bool dark, QObject* parent) : PresenceList("page", parent), dark_(dark) {}

    /// Whether a page has a toolbar: one without any items takes no room.
    [[nodiscard]] static bool hasToolbar(const NavigationController&, const ViewController&);

    /// Follows the stack, and reads every page again. No stack has no pages.
    void sync(const NavigationController*, BarItems&);
    void setDark(bool);

protected:
    Presence* make(const std::shared_ptr<ViewController>&) override;
    bool covers(const Presence&) const override { return true; }

private:
    [[nodiscard]] Page* page(std::size_t index) const;

    bool dark_;
};

} // namespace tessel::qt
