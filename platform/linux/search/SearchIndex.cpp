#include "platform/linux/search/SearchIndex.h"

#include <algorithm>
#include <charconv>

namespace tessel {

namespace {

constexpr std::size_t kMostWords = 16;
constexpr std::size_t kLongestWord = 120;      ///< bytes; what is longer is sought by its beginning
constexpr std::size_t kShortestWordOfText = 2; ///< bytes: nearly every text has each letter

bool isInsideCharacter(char byte)
{
    return (byte & 0xC0) == 0x80;
}

/// As it stands in quotes, where nothing is an operator; empty when nothing in it can be sought.
std::string quotable(const std::string& word)
{
    auto length = std::min(word.size(), kLongestWord);
    while (length > 0 && length < word.size() && isInsideCharacter(word[length]))
        --length;
    auto text = word.substr(0, length);
    std::ranges::replace_if(
        text, [](char c) { return c == '"' || static_cast<unsigned char>(c) < ' '; }, ' ');
    const bool hasLetters = std::ranges::any_of(text, [](unsigned char c) { return std::isalnum(c) || c >= 0x80; });
    return hasLetters ? text : std::string();
}

/// Words that begin so.
std::string matchOf(const std::vector<std::string>& words)
{
    std::string match;
    std::size_t count = 0;
    for (const auto& word : words)
        if (const auto text = quotable(word); !text.empty() && count++ < kMostWords)
            match += (match.empty() ? "\"" : " \"") + text + "\"*";
    return match;
}

bool areSoughtInTexts(const std::vector<std::string>& words)
{
    return std::ranges::all_of(
        words, [](const auto& word) { return word.size() >= kShortestWordOfText || quotable(word).empty(); });
}

} // namespace

bool SearchIndex::begin()
{
    return database_.execute("BEGIN IMMEDIATE");
}

bool SearchIndex::commit()
{
    if (database_.execute("COMMIT"))
        return true;
    (void)database_.execute("ROLLBACK");
    return false;
}

Statement::Step SearchIndex::step(Statement& statement) const
{
    const auto result = statement.step();
    if (result != Statement::Step::Failed)
        return result;
    hasFailed_ = true;
    isDamaged_ = isDamaged_ || database_.lastError() == Error{Domain::General, ErrorCode::kReadCorrupt, {}, {}};
    return result;
}

void SearchIndex::run(Statement& statement) const
{
    while (step(statement) == Statement::Step::Row) {
    }
}

std::int64_t SearchIndex::size() const
{
    auto query = database_.prepare("SELECT page_count * page_size FROM pragma_page_count(), pragma_page_size()");
    return step(query) == Statement::Step::Row ? query.number(0) : 0;
}

std::optional<std::int64_t> SearchIndex::folderNumber(const std::string& folder) const
{
    auto query = database_.prepare("SELECT id FROM folders WHERE path = ?");
    query.bind(folder);
    return step(query) == Statement::Step::Row ? std::optional(query.number(0)) : std::nullopt;
}

std::optional<std::int64_t> SearchIndex::changeTime(const std::string& folder) const
{
    auto query = database_.prepare("SELECT changed FROM folders WHERE path = ?");
    query.bind(folder);
    return step(query) == Statement::Step::Row ? std::optional(query.number(0)) : std::nullopt;
}

std::vector<std::string> SearchIndex::foldersIn(const std::string& folder) const
{
    std::vector<std::string> folders;
    auto query = database_.prepare("SELECT path FROM folders WHERE parent = (SELECT id FROM folders WHERE path = ?)");
    query.bind(folder);
    while (step(query) == Statement::Step::Row)
        folders.push_back(query.bytes(0));
    return folders;
}

std::vector<std::string> SearchIndex::topFolders() const
{
    std::vector<std::string> folders;
    auto query = database_.prepare("SELECT path FROM folders WHERE parent NOT IN (SELECT id FROM folders)");
    while (step(query) == Statement::Step::Row)
        folders.push_back(query.bytes(0));
    return folders;
}

void SearchIndex::setFolder(const std::string& folder, std::int64_t changeTime)
{
    auto known = database_.prepare("UPDATE folders SET changed = ? WHERE path = ? RETURNING id");
    if (step(known.bindNumber(changeTime).bind(folder)) == Statement::Step::Row)
        return;
    const auto parent = folderNumber(URL::file(folder).deletingLastPathComponent().path()).value_or(0);
    auto insert = database_.prepare("INSERT INTO folders(path, parent, changed) VALUES(?, ?, ?)");
    run(insert.bind(folder).bindNumber(parent).bindNumber(changeTime));
}

void SearchIndex::forget(const std::string& folder)
{
    std::vector<std::string> pending = {folder};
    while (!pending.empty()) {
        const auto path = std::move(pending.back());
        pending.pop_back();
        const auto inside = foldersIn(path);
        pending.insert(pending.end(), inside.begin(), inside.end());
        for (const auto& [name, changed] : itemsIn(path))
            removeItem(path, name);
        auto erase = database_.prepare("DELETE FROM folders WHERE path = ?");
        run(erase.bind(path));
    }
}

SearchIndex::ChangeTimes SearchIndex::itemsIn(const std::string& folder) const
{
    ChangeTimes items;
    auto query =
        database_.prepare("SELECT name, changed FROM items WHERE folder = (SELECT id FROM folders WHERE path = ?)");
    query.bind(folder);
    while (step(query) == Statement::Step::Row)
        items.emplace(query.bytes(0), query.number(1));
    return items;
}

void SearchIndex::setItem(const std::string& folder, const std::string& name, const Item& item)
{
    const auto document = documentNumber(item);
    if (addItem(folder, name, item, document))
        return;
    auto known = database_.prepare("SELECT items.id, tags, document FROM items JOIN folders "
                                   "ON items.folder = folders.id WHERE path = ? AND name = ?");
    if (step(known.bind(folder).bind(name)) != Statement::Step::Row)
        return;
    if (known.bytes(1) != item.tags || known.number(2) != document) {
        remove(known.number(0), name, known.bytes(1), known.number(2));
        (void)addItem(folder, name, item, document);
        return;
    }
    auto update = database_.prepare("UPDATE items SET changed = ? WHERE id = ?");
    run(update.bindNumber(item.changed).bindNumber(known.number(0)));
}

/// @returns false when there is one of this name, or no such folder
bool SearchIndex::addItem(const std::string& folder, const std::string& name, const Item& item,
                          std::int64_t document) const
{
    auto insert = database_.prepare("INSERT INTO items(folder, name, tags, changed, document) "
                                    "SELECT id, ?, ?, ?, ? FROM folders WHERE path = ? ON CONFLICT DO NOTHING "
                                    "RETURNING id");
    insert.bind(name).bind(item.tags).bindNumber(item.changed).bindNumber(document).bind(folder);
    if (step(insert) != Statement::Step::Row)
        return false;
    auto words = database_.prepare("INSERT INTO words(rowid, name, tags) VALUES(?, ?, ?)");
    run(words.bindNumber(insert.number(0)).bind(name).bind(item.tags));
    return true;
}

void SearchIndex::removeItem(const std::string& folder, const std::string& name)
{
    auto known = database_.prepare("SELECT items.id, tags, document FROM items JOIN folders "
                                   "ON items.folder = folders.id WHERE path = ? AND name = ?");
    if (step(known.bind(folder).bind(name)) == Statement::Step::Row)
        remove(known.number(0), name, known.bytes(1), known.number(2));
}

void SearchIndex::remove(std::int64_t item, const std::string& name, const std::string& tags, std::int64_t document)
{
    auto words = database_.prepare("INSERT INTO words(words, rowid, name, tags) VALUES('delete', ?, ?, ?)");
    run(words.bindNumber(item).bind(name).bind(tags));
    auto erase = database_.prepare("DELETE FROM items WHERE id = ?");
    run(erase.bindNumber(item));
    if (document != 0)
        removedDocuments_.insert(document);
}

std::int64_t SearchIndex::documentNumber(const Item& item) const
{
    if (item.document.empty())
        return 0;
    auto set = database_.prepare("INSERT INTO documents(identity, wanted) VALUES(?, ?) "
                                 "ON CONFLICT(identity) DO UPDATE SET wanted = excluded.wanted RETURNING id");
    set.bind(item.document).bind(item.version);
    const auto number = step(set) == Statement::Step::Row ? set.number(0) : 0;
    run(set);
    return number;
}

std::vector<SearchIndex::Unread> SearchIndex::unreadTexts(int limit) const
{
    std::vector<Unread> unread;
    auto query = database_.prepare(
        "SELECT documents.id, wanted, path, name FROM documents CROSS JOIN items ON items.document = documents.id "
        "AND items.document <> 0 CROSS JOIN folders ON folders.id = items.folder "
        "WHERE version <> wanted GROUP BY documents.id LIMIT ?");
    query.bindNumber(limit);
    while (step(query) == Statement::Step::Row)
        unread.push_back({query.number(0), query.bytes(1), URL::file(query.bytes(2)).appending(query.bytes(3))});
    return unread;
}

void SearchIndex::setText(const Unread& unread, const std::string& text)
{
    auto erase = database_.prepare("DELETE FROM texts WHERE rowid = ?");
    run(erase.bindNumber(unread.document));
    if (!text.empty()) {
        auto insert = database_.prepare("INSERT INTO texts(rowid, text) VALUES(?, ?)");
        run(insert.bindNumber(unread.document).bind(text));
    }
    auto update = database_.prepare("UPDATE documents SET version = ? WHERE id = ?");
    run(update.bind(unread.version).bindNumber(unread.document));
}

void SearchIndex::forgetUnusedTexts(bool all)
{
    if (all) {
        auto unused = database_.prepare("SELECT id FROM documents WHERE NOT EXISTS "
                                        "(SELECT 1 FROM items WHERE items.document = documents.id "
                                        "AND items.document <> 0)");
        while (step(unused) == Statement::Step::Row)
            removedDocuments_.insert(unused.number(0));
    }
    for (const auto document : removedDocuments_)
        forgetTextIfUnused(document);
    removedDocuments_.clear();
}

void SearchIndex::forgetTextIfUnused(std::int64_t document) const
{
    auto use = database_.prepare("SELECT 1 FROM items WHERE document = ? AND document <> 0 LIMIT 1");
    if (step(use.bindNumber(document)) != Statement::Step::Done)
        return;
    for (const auto* erasing : {"DELETE FROM texts WHERE rowid = ?", "DELETE FROM documents WHERE id = ?"}) {
        auto erase = database_.prepare(erasing);
        run(erase.bindNumber(document));
    }
}

std::vector<std::string> SearchIndex::find(const std::vector<std::string>& words, int limit) const
{
    std::vector<std::string> found;
    const auto match = matchOf(words);
    if (match.empty())
        return found;
    collect("SELECT rowid FROM words WHERE words MATCH ? LIMIT ?", match, limit, found);
    if (found.size() < static_cast<std::size_t>(limit) && areSoughtInTexts(words))
        collect("SELECT items.id FROM texts CROSS JOIN items ON items.document = texts.rowid "
                "AND items.document <> 0 WHERE texts MATCH ? LIMIT ?",
                match, limit, found);
    return found;
}

void SearchIndex::collect(const char* question, const std::string& match, int limit,
                          std::vector<std::string>& found) const
{
    auto query = database_.prepare(question);
    query.bind(match).bindNumber(limit);
    while (found.size() < static_cast<std::size_t>(limit) && step(query) == Statement::Step::Row)
        if (auto identifier = std::to_string(query.number(0)); std::ranges::find(found, identifier) == found.end())
            found.push_back(std::move(identifier));
}

std::optional<FoundDocument> SearchIndex::document(const std::string& identifier) const
{
    std::int64_t number = 0;
    std::from_chars(identifier.data(), identifier.data() + identifier.size(), number);
    auto query =
        database_.prepare("SELECT path, name FROM items JOIN folders ON folders.id = items.folder WHERE items.id = ?");
    if (step(query.bindNumber(number)) != Statement::Step::Row)
        return std::nullopt;
    return FoundDocument{identifier, URL::file(query.bytes(0)).appending(query.bytes(1))};
}

} // namespace tessel
