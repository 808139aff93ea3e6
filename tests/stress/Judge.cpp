#include "tests/stress/Judge.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <tuple>

namespace tessel {

namespace {

enum class Certainty { No, Maybe, Yes };

struct Content {
    Certainty isWritten = Certainty::Maybe;
    Certainty isGone = Certainty::No;
    bool isSuperseded = false;
    std::string displacedAt;                                         ///< the path at which it was superseded
    std::size_t goneSince = std::numeric_limits<std::size_t>::max(); ///< a line; before it, it was there
    std::string base;                                                ///< empty for a new document
    std::string displaced;                                           ///< what it took the place of
    std::string document; ///< the first content of the document that it is; empty when that is not known
};

struct Operation {
    std::size_t first = 0; ///< its lines
    std::size_t last = 0;
    std::vector<std::string> words;
    std::optional<std::string> outcome; ///< none when its process was killed
    std::vector<std::string> answer;
    std::vector<std::string> intends;
    std::size_t intendsSince = 0;
};

// A document was asked for its identifier.
struct Answer {
    std::string content;
    std::size_t place; ///< of the line
};

bool isBelow(const std::string& path, const std::string& folder)
{
    return path.size() > folder.size() && path.starts_with(folder) && path[folder.size()] == '/';
}

// Of those who wait for their turn, too; not of one that found nothing to save.
bool writes(const std::vector<std::string>& words)
{
    return words.size() > 2 && (words.front().starts_with("create") || words.front().starts_with("save"));
}

bool writesWithoutAsking(const std::vector<std::string>& words)
{
    return writes(words) && (words.front() == "create" || words.front() == "save");
}

class Trial {
public:
    Trial(const std::vector<LedgerLine>& lines, const Survey& survey) : lines_(lines), survey_(survey) {}

    Verdict run()
    {
        for (std::size_t i = 0; i < lines_.size(); ++i)
            readLine(lines_[i], i);
        for (const auto& [key, operation] : operations_)
            conclude(operation);
        for (const auto& [key, operation] : operations_)
            excuseWhatCameWhileItsFolderWent(operation);
        for (const auto& [identifier, content] : contents_)
            compare(identifier, content);
        for (auto& [number, answers] : answers_)
            std::ranges::sort(answers, {}, &Answer::place);
        lookAtIdentifiers();
        lookAtRest();
        return std::move(verdict_);
    }

private:
    using Key = std::tuple<int, int, int>;

    void readLine(const LedgerLine& line, std::size_t place)
    {
        using Kind = LedgerLine::Kind;
        const Key key = {line.process, line.generation, line.operation};
        if (line.kind == Kind::Begin)
            begin(operations_[key], line, place);
        else if (line.kind == Kind::End)
            end(operations_[key], line, place);
        else if (line.kind == Kind::Kill)
            endAll(line, place);
        else if (line.kind == Kind::Fact)
            addFact(operations_[key], line, place);
    }

    void begin(Operation& operation, const LedgerLine& line, std::size_t place)
    {
        operation.first = place;
        operation.last = lines_.size();
        operation.words = line.words;
        if (!writes(line.words))
            return;
        auto& content = contents_[line.words.at(2)];
        if (line.words.size() > 3)
            content.base = line.words.at(3);
        else
            content.document = line.words.at(2);
    }

    static void end(Operation& operation, const LedgerLine& line, std::size_t place)
    {
        operation.last = place;
        operation.outcome = line.words.front();
        operation.answer = line.words;
    }

    void endAll(const LedgerLine& kill, std::size_t place)
    {
        for (auto& [key, operation] : operations_)
            if (std::get<0>(key) == kill.process && std::get<1>(key) == kill.generation && !operation.outcome)
                operation.last = std::min(operation.last, place);
    }

    void addFact(Operation& operation, const LedgerLine& line, std::size_t place)
    {
        const auto& what = line.words.front();
        if (what == "intends") {
            operation.intends.assign(line.words.begin() + 1, line.words.end());
        } else if (what == "looks") {
            operation.intendsSince = place;
        } else if (what == "displaced") {
            displace(line.words.at(1), line.words.at(2), place);
            contents_[line.words.at(1)].displacedAt =
                operation.words.size() > 1 ? operation.words.at(1) : std::string();
        } else if (what == "shadowed") {
            contents_[line.words.at(1)].goneSince = place;
        } else if (what == "torn") {
            find("torn", line.words.at(1) + " when it was read");
        }
    }

    void displace(const std::string& old, const std::string& by, std::size_t place)
    {
        auto& content = contents_[by];
        content.isWritten = Certainty::Yes;
        content.displaced = old;
        if (content.base == old) {
            contents_[old].isSuperseded = true;
            contents_[old].goneSince = std::min(contents_[old].goneSince, place);
            content.document = contents_[old].document;
        } else {
            content.document = by;
        }
    }

    void conclude(const Operation& operation)
    {
        const auto& what = operation.words.empty() ? std::string() : operation.words.front();
        const bool isDone = operation.outcome == "done";
        if (writes(operation.words) && operation.outcome) {
            auto& content = contents_[operation.words.at(2)];
            content.isWritten = isDone ? Certainty::Yes : Certainty::No;
            if (isDone && content.document.empty())
                content.document = operation.words.at(2);
        }
        for (const auto& identifier : operation.intends)
            if (isDone || !operation.outcome || operation.outcome == "in part")
                remove(contents_[identifier], isDone ? Certainty::Yes : Certainty::Maybe, operation.intendsSince);
        if (what == "identify" && isDone)
            answers_[operation.answer.at(1)].push_back({operation.answer.at(2), operation.last});
    }

    static void remove(Content& content, Certainty certainty, std::size_t place)
    {
        content.isGone = std::max(content.isGone, certainty);
        content.goneSince = std::min(content.goneSince, place);
    }

    // Only of those who do not coordinate: the others wait for the deletion.
    void excuseWhatCameWhileItsFolderWent(const Operation& removal)
    {
        if (removal.intendsSince == 0 || (removal.outcome && removal.outcome != "done"))
            return;
        const auto& folder = removal.words.at(1);
        for (const auto& [key, operation] : operations_) {
            if (writesWithoutAsking(operation.words) && isBelow(operation.words.at(1), folder) &&
                operation.first < removal.last && operation.last > removal.intendsSince)
                excuse(operation);
        }
    }

    // What it wrote and what was in its place, which may have been on the way from one name to the other.
    void excuse(const Operation& writer)
    {
        const auto& content = contents_[writer.words.at(2)];
        for (const auto& identifier : {writer.words.at(2), content.base, content.displaced})
            if (!identifier.empty())
                remove(contents_[identifier], Certainty::Maybe, writer.first);
    }

    void compare(const std::string& identifier, const Content& content)
    {
        const auto found = survey_.places.find(identifier);
        const auto count = found == survey_.places.end() ? 0 : found->second.size();
        const bool isGone = content.isGone == Certainty::Yes || content.isSuperseded;
        ++verdict_.contents;
        verdict_.found += count > 0 ? 1 : 0;
        verdict_.superseded += content.isSuperseded ? 1 : 0;
        verdict_.deleted += content.isGone == Certainty::Yes && !content.isSuperseded ? 1 : 0;
        verdict_.undecided +=
            !isGone && (content.isWritten == Certainty::Maybe || content.isGone == Certainty::Maybe) ? 1 : 0;
        if (count > 1)
            find("half-moved", identifier + " is at " + pathsOf(found->second));
        else if (count == 1 && isGone && !wasInTwoPlaces(content))
            find("returned", identifier + ", deleted or superseded, is at " + pathsOf(found->second));
        else if (count == 1 && content.isWritten == Certainty::No)
            find("returned", identifier + ", never written, is at " + pathsOf(found->second));
        else if (count == 0 && content.isWritten == Certainty::Yes && !isGone && content.isGone == Certainty::No &&
                 !isInStoreAlone(identifier))
            find("lost", identifier + " is nowhere");
    }

    // While an item is on its way to another file system it is in both, where an editor may find either. If it changes
    // one of them before the move is undone, or cleared up after, what it changed stays beside the other.
    [[nodiscard]] bool wasInTwoPlaces(const Content& content) const
    {
        return content.isSuperseded && std::ranges::any_of(operations_, [&](const auto& entry) {
                   const auto& move = entry.second;
                   const auto touches = [&](const std::string& path) {
                       return content.displacedAt == path || isBelow(content.displacedAt, path);
                   };
                   return move.words.size() >= 3 && !writes(move.words) && move.outcome != "done" &&
                          content.goneSince > move.first && content.goneSince < endOf(entry.first, move) &&
                          std::any_of(move.words.begin() + 1, move.words.end(), touches);
               });
    }

    // Of one that was killed: when its process has cleared up.
    [[nodiscard]] std::size_t endOf(const Key& key, const Operation& operation) const
    {
        if (operation.outcome)
            return operation.last;
        const auto next = operations_.upper_bound({std::get<0>(key), std::get<1>(key) + 1, -1});
        return next == operations_.end() || next->second.first == 0 ? lines_.size() : next->second.first;
    }

    bool isInStoreAlone(const std::string& identifier)
    {
        const bool isInStore = survey_.stored.contains(identifier);
        verdict_.inStoreAlone += isInStore ? 1 : 0;
        return isInStore;
    }

    // Of a file that is gone it may become another's: whoever takes its place is taken for its next content.
    void lookAtIdentifiers()
    {
        for (const auto& [number, answers] : answers_)
            for (auto later = answers.begin(); later != answers.end(); ++later)
                for (auto earlier = answers.begin(); earlier != later; ++earlier)
                    if (areTwo(*earlier, *later)) {
                        find("identifiers given twice", number + " for " + earlier->content +
                                                            ", and while it was there for " + later->content +
                                                            " in line " + std::to_string(later->place));
                        break;
                    }
    }

    [[nodiscard]] bool areTwo(const Answer& earlier, const Answer& later)
    {
        const auto& one = contents_[earlier.content];
        const auto& other = contents_[later.content];
        return one.document != other.document && !one.document.empty() && !other.document.empty() &&
               one.goneSince > later.place;
    }

    void lookAtRest()
    {
        for (const auto& [identifier, places] : survey_.places)
            if (!contents_.contains(identifier))
                find("unknown", identifier + " is at " + pathsOf(places));
        for (const auto& text : survey_.torn)
            find("torn", text);
        for (const auto& path : survey_.leftovers)
            find("left over", path);
        verdict_.emptyFolders = survey_.emptyFolders;
    }

    void find(const std::string& kind, const std::string& text) { verdict_.findings[kind].push_back(text); }

    static std::string pathsOf(const std::vector<URL>& places)
    {
        std::string paths;
        for (const auto& place : places)
            paths += (paths.empty() ? "" : " and ") + place.path();
        return paths;
    }

    const std::vector<LedgerLine>& lines_;
    const Survey& survey_;
    std::map<Key, Operation> operations_;
    std::map<std::string, Content> contents_;
    std::map<std::string, std::vector<Answer>> answers_; ///< by number, in the ledger's order
    Verdict verdict_;
};

} // namespace

Verdict judge(const std::vector<LedgerLine>& lines, const Survey& survey)
{
    return Trial(lines, survey).run();
}

} // namespace tessel
