#include "tests/stress/ConsoleUser.h"

#include "platform/base/PercentEncoding.h"

#include <algorithm>
#include <filesystem>

namespace tessel {

namespace {

constexpr std::size_t kMostAtOnce = 4;

std::string quoted(const std::string& name)
{
    std::string text = "\"";
    for (const char character : name)
        text += (character == '"' || character == '\\' ? "\\" : "") + std::string(1, character);
    return text + '"';
}

bool exists(const URL& url)
{
    std::error_code ignored;
    return std::filesystem::exists(url.path(), ignored);
}

} // namespace

ConsoleUser::ConsoleUser(const Part& part, const Stage& stage, int ledger)
    : Actor(part, stage, ledger), program_({"--console", "--log", "off", "--home", stage.home().path()})
{
}

void ConsoleUser::operateOnce()
{
    leave();
    choose({{10, [this] { makeFolder(); }},
            {25, [this] { renameItem(); }},
            {35, [this] { moveItems(); }},
            {12, [this] { collectItems(); }},
            {3, [this] { removeOwnFolder(); }},
            {7, [this] { removeOwnItems(); }},
            {8, [this] { lookAtDocument(); }}});
}

URL ConsoleUser::ownFolder() const
{
    return stage_.places()[static_cast<std::size_t>(part_.process) % 2].appending(kOwnFolders +
                                                                                  std::to_string(part_.process));
}

void ConsoleUser::makeFolder()
{
    const auto own = ownFolder();
    const auto place = exists(own) ? anyFolder(anyContainer()) : own.deletingLastPathComponent();
    const auto folder = exists(own) ? place.appending(anyFolderName()) : own;
    if (!goTo(place) || !taps("Select") || !taps("New Folder"))
        return pass("console: new folder");
    operate({"console: new folder", folder.path()}, [&]() -> Words {
        if (!does("type " + quoted(std::string(folder.lastPathComponent()))))
            return {"refused"};
        return press("Create");
    });
}

void ConsoleUser::renameItem()
{
    const auto folder = anyFolder(anyContainer());
    const auto names = goTo(folder) ? rows(chance(75) ? "file" : "folder") : Lines();
    const auto name = names.empty() ? std::string() : names[number(names.size())];
    if (names.empty() || name.starts_with(kOwnFolders) || !does("action " + quoted(name) + " Rename"))
        return pass("console: rename");
    const auto other = name.ends_with(".txt") ? anyDocumentName() : anyFolderName();
    operate({"console: rename", folder.appending(name).path(), folder.appending(other).path()}, [&]() -> Words {
        if (!does("clear") || !does("type " + quoted(other)))
            return {"refused"};
        return press("Done");
    });
}

void ConsoleUser::moveItems()
{
    const auto from = anyFolder(anyContainer());
    moveItemsTo(from, anyFolder(anyContainer()));
}

void ConsoleUser::collectItems()
{
    if (!exists(ownFolder()))
        return makeFolder();
    moveItemsTo(anyFolder(anyContainer()), ownFolder());
}

void ConsoleUser::moveItemsTo(const URL& from, const URL& to)
{
    const auto names = goTo(from) ? selectSome() : Lines();
    if (names.empty() || !taps("Move") || !pick(from, to))
        return pass("console: move");
    Words words = {"console: move"};
    for (const auto& name : names)
        for (const auto& folder : {from, to})
            words.push_back(folder.appending(name).path());
    operate(std::move(words), [&] { return press("Move"); });
}

void ConsoleUser::removeOwnFolder()
{
    const auto own = ownFolder();
    const auto name = std::string(own.lastPathComponent());
    if (!exists(own) || !goTo(own.deletingLastPathComponent()) || !does("action " + quoted(name) + " Delete"))
        return pass("console: remove");
    operate({"console: remove", own.path()}, [&] {
        tellIntent(own.deletingLastPathComponent(), {name});
        return press("Delete from Tessel Drive");
    });
}

void ConsoleUser::removeOwnItems()
{
    const auto own = ownFolder();
    const auto names = exists(own) && goTo(own) ? selectSome() : Lines();
    if (names.empty() || !taps("Delete"))
        return pass("console: remove");
    operate({"console: remove", own.path()}, [&] {
        tellIntent(own, names);
        return press("Delete from Tessel Drive");
    });
}

void ConsoleUser::lookAtDocument()
{
    const auto folder = anyFolder(anyContainer());
    const auto names = goTo(folder) ? rows("file") : Lines();
    if (names.empty())
        return pass("console: look");
    const auto& name = names[number(names.size())];
    operate({"console: look", folder.appending(name).path()}, [&]() -> Words {
        if (!taps(name) || !does("settle"))
            return {"nothing there"};
        return {lines("preview").empty() ? "nothing there" : "done"};
    });
}

bool ConsoleUser::goTo(const URL& folder)
{
    return does("open tesseldriveapp:" + percentEncodedPath(percentEncodedPath(folder.path()))) && does("settle");
}

bool ConsoleUser::pick(const URL& from, const URL& to)
{
    auto at = from;
    const auto& places = stage_.places();
    const auto isLibrary = [&](const URL& folder) { return folder == places[1] || folder == places[2]; };
    while (!at.contains(to) && at != places[0]) {
        if (!does("back"))
            return false;
        at = isLibrary(at) ? places[0] : at.deletingLastPathComponent();
    }
    std::vector<std::string> down;
    for (auto folder = to; folder != at && !isLibrary(folder) && folder != places[0];
         folder = folder.deletingLastPathComponent())
        down.emplace_back(folder.lastPathComponent());
    for (const auto& library : {Stage::kNearLibrary, Stage::kFarLibrary})
        if (!places[0].contains(to) && !isLibrary(at) && at == places[0] &&
            places[library == std::string_view(Stage::kFarLibrary) ? 2 : 1].contains(to))
            down.emplace_back(library);
    return std::all_of(down.rbegin(), down.rend(),
                       [&](const std::string& name) { return does("settle") && taps(name); }) &&
           does("settle");
}

ConsoleUser::Lines ConsoleUser::selectSome()
{
    auto names = rows("file");
    if (chance(25))
        for (auto& name : rows("folder"))
            names.push_back(std::move(name));
    std::erase_if(names, [](const std::string& name) { return name.starts_with(kOwnFolders); });
    if (names.empty() || !taps("Select"))
        return {};
    Lines selected;
    for (auto count = 1 + number(kMostAtOnce); count > 0 && !names.empty(); --count) {
        const auto chosen = names.begin() + static_cast<std::ptrdiff_t>(number(names.size()));
        if (taps(*chosen))
            selected.push_back(*chosen);
        names.erase(chosen);
    }
    return selected;
}

void ConsoleUser::tellIntent(const URL& folder, const Lines& names)
{
    pen_.fact({"looks"});
    Words words = {"intends"};
    for (const auto& name : names)
        for (auto& identifier : identifiersBelow(folder.appending(name)))
            words.push_back(std::move(identifier));
    pen_.fact(std::move(words));
}

Actor::Words ConsoleUser::press(const std::string& name)
{
    if (!taps(name))
        return {"refused"};
    return {lines("alert").empty() ? "done" : "in part"};
}

void ConsoleUser::leave()
{
    for (const auto* name : {"OK", "Cancel", "Cancel"})
        static_cast<void>(taps(name));
}

bool ConsoleUser::taps(const std::string& name)
{
    return does("tap " + quoted(name));
}

ConsoleUser::Lines ConsoleUser::lines(const std::string& key)
{
    Lines result;
    for (const auto& line : program_.send("screen").lines)
        if (line.starts_with(key + ": "))
            result.push_back(line.substr(key.size() + 2));
    return result;
}

ConsoleUser::Lines ConsoleUser::rows(const std::string& kind)
{
    Lines names;
    for (const auto& row : lines("row"))
        if (row.starts_with(kind + " | ")) {
            const auto start = kind.size() + 3;
            names.push_back(row.substr(start, row.find(" | ", start) - start));
        }
    return names;
}

} // namespace tessel
