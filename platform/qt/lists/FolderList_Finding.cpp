#include "platform/base/Platform.h"
#include "platform/qt/lists/FolderList.h"
#include "platform/text/TextServices.h"

#include <algorithm>
#include <chrono>

namespace tessel::qt {

namespace {

// A part of a list that takes well under a millisecond, and the time that the rest may take.
constexpr std::size_t kRowsLookedAtFirst = 512;
constexpr auto kMostTime = std::chrono::milliseconds(5);

char lowered(char character)
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character | 0x20) : character;
}

/// Whether titles start with what was typed. Most are told by their first characters alone.
class Prefix {
public:
    Prefix(const std::string& typed, const TextServices& text) : text_(text), folded_(text.searchFolded(typed)) {}

    [[nodiscard]] bool empty() const { return folded_.empty(); }
    [[nodiscard]] bool isOf(const std::string& title) const
    {
        const auto length = std::min(title.size(), folded_.size());
        const auto isPlain = [](char character) { return static_cast<unsigned char>(character) < 0x80; };
        for (std::size_t index = 0; index < length && isPlain(title[index]) && isPlain(folded_[index]); ++index)
            if (lowered(title[index]) != folded_[index])
                return false;
        return text_.searchFolded(title).starts_with(folded_);
    }

private:
    const TextServices& text_;
    const std::string folded_;
};

/// By what rows are sorted.
std::string sortName(const ListRow& row)
{
    return row.kind == RowKind::Library ? row.title : std::string(row.url.lastPathComponent());
}

/// The first row that does not come before a name.
std::size_t lowerBound(const DocumentListController& list, std::string_view name, const TextServices& text)
{
    std::size_t low = 0;
    for (auto high = list.containedItemCount(); low < high;) {
        const auto middle = low + (high - low) / 2;
        if (text.compareNames(sortName(list.row(middle)), name) < 0)
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

/// Looks at rows one after the other, at the first one again after the last.
std::optional<std::size_t> findInTurn(const DocumentListController& list, const Prefix& prefix, std::size_t from,
                                      std::size_t most)
{
    const auto size = list.containedItemCount();
    const auto end = std::chrono::steady_clock::now() + kMostTime;
    for (std::size_t step = 0; step < std::min(most, size); ++step) {
        const auto index = (from + step) % size;
        if (prefix.isOf(list.row(index).title))
            return index;
        if (step % 64 == 63 && std::chrono::steady_clock::now() > end)
            break;
    }
    return std::nullopt;
}

/// Titles that start alike lie together, but for numbers, which are sorted by value: the order tells where most are.
std::optional<std::size_t> findByOrder(const DocumentListController& list, const Prefix& prefix,
                                       const std::string& typed, const TextServices& text)
{
    const auto index = lowerBound(list, typed, text);
    const bool isThere = index < list.containedItemCount() && prefix.isOf(list.row(index).title);
    return isThere ? std::optional(index) : std::nullopt;
}

/// A library has another name than its folder and is looked for in vain where that would be; there are few rows where
/// there are libraries.
std::optional<std::size_t> rowOf(const DocumentListController& list, const URL& url, const TextServices& text)
{
    const auto size = list.containedItemCount();
    auto index = lowerBound(list, url.lastPathComponent(), text);
    if (index < size && list.row(index).url == url)
        return index;
    for (index = 0; index < size; ++index)
        if (list.row(index).url == url)
            return index;
    return std::nullopt;
}

} // namespace

int FolderList::find(const QString& prefix, int from) const
{
    const auto controller = controller_.lock();
    if (!controller || rowsNow() == 0)
        return -1;
    const auto& text = platform::installed().text;
    const auto typed = prefix.toStdString();
    const Prefix wanted(typed, text);
    if (wanted.empty())
        return -1;
    const auto first = static_cast<std::size_t>(std::max(from, 0)) % rowsNow();
    auto found = findInTurn(*controller, wanted, first, kRowsLookedAtFirst);
    if (!found)
        found = findByOrder(*controller, wanted, typed, text);
    if (!found)
        found = findInTurn(*controller, wanted, first + kRowsLookedAtFirst, rowsNow());
    return found ? static_cast<int>(*found) : -1;
}

/// Mostly one of the first rows; of a long list, all that is selected is listed only where it is not.
int FolderList::firstSelected() const
{
    const auto controller = controller_.lock();
    if (!controller)
        return -1;
    for (std::size_t index = 0; index < std::min(kRowsLookedAtFirst, rowsNow()); ++index)
        if (controller->row(index).selected)
            return static_cast<int>(index);
    const auto selected = rowsNow() > kRowsLookedAtFirst ? controller->selectedItemURLs() : std::vector<URL>();
    if (selected.empty())
        return -1;
    const auto index = rowOf(*controller, selected.front(), platform::installed().text);
    return index ? static_cast<int>(*index) : -1;
}

} // namespace tessel::qt
