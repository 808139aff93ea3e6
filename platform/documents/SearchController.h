#pragma once

#include "platform/documents/ListRow.h"
#include "platform/ui/ViewController.h"

#include <memory>
#include <string>
#include <vector>

namespace tessel {

class DocumentListController;

/// The results of a search below a list's folder, presented over the navigation controller while there is a query.
/// Pressing a result tells the list's delegate, as pressing a row of the list does.
class SearchController : public ViewController {
public:
    [[nodiscard]] std::string className() const override { return "SearchController"; }

    [[nodiscard]] const std::string& query() const;
    [[nodiscard]] const std::vector<ListRow>& results() const;
    void pressResult(std::size_t index);
    [[nodiscard]] bool isBusy() const;
};

} // namespace tessel
