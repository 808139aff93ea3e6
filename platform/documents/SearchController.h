#pragma once

#include "platform/documents/ListRow.h"
#include "platform/files/FolderReader.h"
#include "platform/ui/ViewController.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tessel {

class DocumentListController;

/// The results of a search below a list's folder and the libraries shown in it, presented over the navigation
/// controller while there is a query. The search ends early when it has found `kMostResults`: those nearest to the
/// folder, for it looks at nearer items first. Pressing a result tells the list's delegate, as pressing a row of the
/// list does.
class SearchController : public ViewController {
public:
    static constexpr std::size_t kMostResults = 10'000; ///< more than anyone reads

    explicit SearchController(std::weak_ptr<DocumentListController> list) : list_(std::move(list))
    {
        presentationStyle = PresentationStyle::OverCurrentContext;
    }

    [[nodiscard]] std::string className() const override { return "SearchController"; }

    /// Begins a search, in place of the one before.
    void search(const URL& folder, const std::vector<ListRow>& libraries, const std::string& query);

    /// Told when there are other results, and when the search has finished.
    std::function<void()> resultsChanged;

    [[nodiscard]] const std::string& query() const { return query_; }
    /// In natural order of the titles, those found so far.
    [[nodiscard]] const std::vector<ListRow>& results() const { return results_; }
    void pressResult(std::size_t index);
    /// The tags have other colours now.
    void colorTags();
    [[nodiscard]] bool isBusy() const { return search_ != nullptr; }

protected:
    void wasDismissed() override { search_.reset(); }

private:
    void addLibraries(const std::vector<ListRow>&);
    void addHits(const std::vector<SearchHit>&);
    void colorTagsOf(std::vector<ListRow>&) const;
    void add(std::vector<ListRow>);
    void tellResultsChanged() const;

    std::weak_ptr<DocumentListController> list_;
    std::string query_;
    std::vector<ListRow> results_;
    std::unique_ptr<FolderSearch> search_;
};

} // namespace tessel
