#include "tests/stress/Actor.h"

#include "platform/linux/cloud/Placeholder.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <numeric>
#include <set>
#include <system_error>

namespace tessel {

namespace {

namespace fs = std::filesystem;

// Few enough for processes to want the same one all the time.
constexpr std::size_t kDocumentNames = 20;
constexpr std::size_t kFolderNames = 5;
constexpr int kAttempts = 6;

std::mt19937_64 randomOf(const Part& part)
{
    std::seed_seq seeds = {static_cast<unsigned>(part.seed), static_cast<unsigned>(part.seed >> 32U),
                           static_cast<unsigned>(part.process), static_cast<unsigned>(part.generation)};
    return std::mt19937_64(seeds);
}

bool isHidden(const fs::path& path)
{
    return path.filename().native().starts_with('.');
}

} // namespace

Actor::Actor(const Part& part, const Stage& stage, int ledger)
    : part_(part), stage_(stage), pen_(ledger, part.process, part.generation), random_(randomOf(part)),
      operation_(part.firstOperation)
{
}

void Actor::run()
{
    pen_.start();
    recover();
    while (operation_ < part_.endOperation)
        operateOnce();
    if (part_.sabotage != Sabotage::None)
        damageSomething();
}

void Actor::choose(const std::vector<Choice>& choices)
{
    const auto total = std::accumulate(choices.begin(), choices.end(), 0,
                                       [](int sum, const Choice& choice) { return sum + choice.weight; });
    auto chosen = static_cast<int>(number(static_cast<std::size_t>(total)));
    for (const auto& [weight, work] : choices)
        if ((chosen -= weight) < 0)
            return work();
}

void Actor::operate(Words words, const std::function<Words()>& work)
{
    pen_.begin(operation_++, std::move(words));
    pen_.end(work());
}

void Actor::pass(const std::string& what)
{
    operate({what}, [] { return Words{"nothing there"}; });
}

// Not by a distribution of the library, each of which has its own way: a seed replays everywhere.
std::size_t Actor::number(std::size_t below)
{
    return static_cast<std::size_t>(random_() % below);
}

std::string Actor::newIdentifier()
{
    return std::to_string(part_.process) + '.' + std::to_string(part_.generation) + '.' + std::to_string(++contents_);
}

// Mostly small, now and then so long that a process is killed in the middle of it.
std::size_t Actor::anyLength()
{
    return chance(5) ? 200'000 + number(1'000'000) : number(8'000);
}

std::string Actor::anyDocumentName()
{
    const auto chosen = number(kDocumentNames);
    if (chosen == 0)
        return "Uebung e\xcc\x81.txt";
    if (chosen == 1)
        return std::string(250, 'x') + ".txt";
    return "Document " + std::to_string(chosen) + ".txt";
}

std::string Actor::anyFolderName()
{
    return "Folder " + std::to_string(number(kFolderNames));
}

std::size_t Actor::anyPlace()
{
    constexpr std::array<std::size_t, 8> kShares = {0, 0, 0, 1, 1, 2, 2, Stage::kTrash};
    return kShares.at(number(kShares.size()));
}

URL Actor::anyFolder(std::size_t place)
{
    auto folder = stage_.places().at(place);
    while (chance(60)) {
        std::vector<URL> folders;
        for (const auto& item : itemsIn(folder))
            if (item.isFolder)
                folders.push_back(item.url);
        if (folders.empty())
            break;
        folder = folders[number(folders.size())];
    }
    return folder;
}

std::optional<Actor::Item> Actor::anyItem(Kind kind, std::size_t place)
{
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        auto items = itemsIn(anyFolder(place));
        std::erase_if(items,
                      [&](const Item& item) { return kind != Kind::Any && item.isFolder != (kind == Kind::Folder); });
        if (!items.empty())
            return items[number(items.size())];
    }
    return std::nullopt;
}

std::vector<Actor::Item> Actor::itemsIn(const URL& folder)
{
    std::vector<Item> items;
    std::error_code ended;
    std::error_code ignored;
    for (fs::directory_iterator entry(folder.path(), ended); !ended && entry != fs::directory_iterator();
         entry.increment(ended)) {
        const auto url = URL::file(entry->path().native());
        if (url.lastPathComponent().starts_with(kOwnFolders))
            continue;
        if (!isHidden(entry->path())) {
            items.push_back({url, entry->is_directory(ignored), false});
        } else if (isPlaceholderName(url.lastPathComponent())) {
            if (const auto record = readPlaceholder(url))
                items.push_back({folder.appending(record->name), false, true});
        }
    }
    std::ranges::sort(items, {}, [](const Item& item) { return item.url; });
    return items;
}

std::optional<std::string> Actor::identifierAt(const URL& document)
{
    auto reading = readDocument(document, stage_.store());
    // What is hidden is in the making.
    if (reading.isThere && !reading.identifier && !isHidden(document.path()))
        pen_.fact({"torn", document.path()});
    return reading.identifier;
}

Actor::Words Actor::identifiersBelow(const URL& url)
{
    std::set<std::string> found;
    const auto add = [&](const URL& document) {
        if (auto identifier = identifierAt(document))
            found.insert(*std::move(identifier));
    };
    std::error_code ended;
    if (!fs::is_directory(fs::symlink_status(url.path(), ended)))
        add(url);
    for (fs::recursive_directory_iterator entry(url.path(), ended);
         !ended && entry != fs::recursive_directory_iterator(); entry.increment(ended)) {
        const auto file = URL::file(entry->path().native());
        if (const auto record =
                isPlaceholderName(file.lastPathComponent()) ? std::optional(readPlaceholder(file)) : std::nullopt;
            record && *record)
            add(file.deletingLastPathComponent().appending((*record)->name));
        else if (entry->is_regular_file(ended))
            add(file);
    }
    return {found.begin(), found.end()};
}

Actor::Words Actor::outcomeOf(const std::optional<Error>& error)
{
    return {error ? "error " + std::to_string(error->code) : "done"};
}

void Actor::damageSomething()
{
    // A document of its own: what others did with theirs may excuse the damage, or the store have another copy.
    const auto document = stage_.places().front().appending("Damaged.txt");
    const fs::path path = document.path();
    const auto identifier = newIdentifier();
    operate({"create", document.path(), identifier}, [&]() -> Words {
        std::ofstream(path, std::ios::binary) << makeContent(identifier, anyLength());
        return {"done"};
    });
    const auto beside = [&](const char* name) { return path.parent_path() / name; };
    switch (part_.sabotage) {
    case Sabotage::None:
        break;
    case Sabotage::Lose:
        fs::remove(path);
        break;
    case Sabotage::Tear:
        fs::resize_file(path, fs::file_size(path) / 2);
        break;
    case Sabotage::Double:
        fs::copy_file(path, beside("A second one.txt"));
        break;
    case Sabotage::Leave:
        std::ofstream(beside(".tsd-temporary-left")) << "left";
        break;
    }
}

} // namespace tessel
