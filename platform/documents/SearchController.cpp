#include "platform/documents/SearchController.h"

#include "platform/base/Platform.h"
#include "platform/documents/DocumentListController.h"
#include "platform/documents/FolderRows.h"
#include "platform/text/TextServices.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <utility>

namespace tessel {

void SearchController::search(const URL& folder, const std::vector<ListRow>& libraries, const std::string& query)
{
    query_ = query;
    results_.clear();
    std::vector<URL> folders{folder};
    for (const auto& library : libraries)
        folders.push_back(library.url);
    SearchClient client;
    client.found = [this](const auto& hits) { addHits(hits); };
    client.finished = [this] {
        search_.reset();
        tellResultsChanged();
    };
    search_ = platform::installed().folders.search(std::move(folders), query, std::move(client));
    addLibraries(libraries);
}

void SearchController::addLibraries(const std::vector<ListRow>& libraries)
{
    const auto& text = platform::installed().text;
    std::vector<ListRow> found;
    for (const auto& library : libraries)
        if (text.searchFolded(library.title).find(text.searchFolded(query_)) != std::string::npos)
            found.push_back(library);
    add(std::move(found));
}

void SearchController::addHits(const std::vector<SearchHit>& hits)
{
    std::vector<ListRow> found;
    const auto room = kMostResults - std::min(results_.size(), kMostResults);
    for (const auto& hit : std::span(hits).first(std::min(room, hits.size()))) {
        found.push_back(listRow(hit.url, hit.entry, platform::installed().text));
        addDetails(found.back(), hit.details);
    }
    if (found.size() == room)
        search_.reset(); // what it has already found beyond is not told any more
    add(std::move(found));
}

void SearchController::tellResultsChanged() const
{
    if (resultsChanged)
        resultsChanged();
}

void SearchController::colorTagsOf(std::vector<ListRow>& rows) const
{
    if (const auto list = list_.lock())
        for (auto& row : rows)
            list->colorTags(row);
}

void SearchController::colorTags()
{
    colorTagsOf(results_);
    tellResultsChanged();
}

void SearchController::add(std::vector<ListRow> found)
{
    colorTagsOf(found);
    const auto& text = platform::installed().text;
    const auto isBefore = [&](const ListRow& left, const ListRow& right) {
        const auto order = text.compareNames(left.title, right.title);
        return order != 0 ? order < 0 : left.url < right.url;
    };
    std::sort(found.begin(), found.end(), isBefore);

    // Few into many: each finds its place by halving, and the rows between are moved without being compared.
    std::vector<ListRow> merged;
    merged.reserve(results_.size() + found.size());
    auto next = results_.begin();
    for (auto& row : found) {
        const auto place = std::upper_bound(next, results_.end(), row, isBefore);
        merged.insert(merged.end(), std::move_iterator(next), std::move_iterator(place));
        next = place;
        merged.push_back(std::move(row));
    }
    merged.insert(merged.end(), std::move_iterator(next), std::move_iterator(results_.end()));
    results_ = std::move(merged);
    tellResultsChanged();
}

void SearchController::pressResult(std::size_t index)
{
    const auto list = list_.lock();
    if (list && index < results_.size())
        list->open(ListRow(results_[index])); // a copy: opening may end the search
}

} // namespace tessel
