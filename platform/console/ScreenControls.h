#pragma once

#include "platform/console/ScreenElement.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

class AlertController;
class NavigationController;
class NavigationItem;
struct StorageOffer;
class View;
class ViewController;

// What is shown and pressed besides the rows of lists.

/// Adds what only informs; a key without a value is left out.
void addLine(Screen&, std::string_view key, std::vector<std::string> parts);

/// A navigation bar's items, in reading order.
void addBarItems(Screen&, const NavigationItem&);

/// The items of the toolbar, one element each, and before them the status line, which is the labels among the items,
/// and the button of an offer.
void addToolbar(Screen&, const NavigationController&, const ViewController& top);

/// A button of its own, in what lies under the bars.
void addButton(Screen&, const std::string& title, std::function<void()> press);

/// What stands in the fields of a page of views, and the rows of texts on it.
void addPage(Screen&, const View&);
/// The buttons on a page of views.
void addButtons(Screen&, const View&);

/// What an offer of more storage says.
void addOfferPage(Screen&, const StorageOffer&);

void addAlert(Screen&, const std::shared_ptr<AlertController>&);

} // namespace tessel
