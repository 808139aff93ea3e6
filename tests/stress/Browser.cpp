#include "files/FileUtils.h"
#include "tests/stress/Member.h"

#include <algorithm>
#include <cctype>

namespace tessel {

namespace {

std::string otherCase(std::string_view name)
{
    std::string other(name);
    const bool isUpper = std::ranges::any_of(name, [](unsigned char c) { return std::isupper(c) != 0; });
    std::ranges::transform(other, other.begin(), [&](unsigned char c) {
        return static_cast<char>(isUpper ? std::tolower(c) : std::toupper(c));
    });
    return other;
}

} // namespace

void Browser::operateOnce()
{
    choose({{8, [this] { makeFolder(); }},
            {12, [this] { renameItem(); }},
            {8, [this] { renameCase(); }},
            {12, [this] { moveWithin(); }},
            {12, [this] { moveBetween(); }},
            {14, [this] { moveAcross(); }},
            {4, [this] { trashItem(); }},
            {6, [this] { removeItem(); }},
            {5, [this] { tagItem(); }},
            {8, [this] { evictDocument(); }},
            {6, [this] { readDocument(); }},
            {5, [this] { identifyDocument(); }}});
}

void Browser::makeFolder()
{
    auto folder = anyFolder().appending(anyFolderName());
    if (chance(30))
        folder = folder.appending(anyFolderName());
    operate({"mkdir", folder.path()}, [&] { return outcomeOf(FileUtils::mkdir(folder)); });
}

void Browser::renameItem()
{
    const auto item = anyItem(Kind::Any);
    if (!item)
        return pass("rename");
    const auto name = item->isFolder ? anyFolderName() : anyDocumentName();
    move("rename", *item, item->url.deletingLastPathComponent().appending(name));
}

void Browser::renameCase()
{
    const auto item = anyItem(Kind::Any);
    if (!item)
        return pass("rename case");
    move("rename case", *item,
         item->url.deletingLastPathComponent().appending(otherCase(item->url.lastPathComponent())));
}

void Browser::moveWithin()
{
    const auto place = anyPlace();
    moveItem(place, place);
}

void Browser::moveBetween()
{
    const bool isForth = chance(50);
    moveItem(isForth ? 0 : 1, isForth ? 1 : 0);
}

void Browser::moveAcross()
{
    const auto near = number(Stage::kFarContainer);
    const bool isForth = chance(50);
    moveItem(isForth ? near : Stage::kFarContainer, isForth ? Stage::kFarContainer : near);
}

void Browser::moveItem(std::size_t from, std::size_t to)
{
    const bool isFar = (from == Stage::kFarContainer) != (to == Stage::kFarContainer);
    const auto* what = isFar ? "move to another file system" : from == to ? "move" : "move to another container";
    const auto item = anyItem(chance(75) ? Kind::Document : Kind::Any, from);
    if (!item)
        return pass(what);
    move(what, *item, anyFolder(to).appending(item->url.lastPathComponent()));
}

void Browser::trashItem()
{
    const auto item = anyItem(Kind::Any, number(Stage::kContainers));
    if (!item)
        return pass("trash");
    move("trash", *item, stage_.places()[Stage::kTrash].appending(item->url.lastPathComponent()));
}

void Browser::move(const char* what, const Item& item, const URL& to)
{
    operate({what, item.url.path(), to.path()}, [&] { return outcomeOf(FileUtils::move(item.url, to)); });
}

} // namespace tessel
