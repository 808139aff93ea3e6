#pragma once

#include "platform/base/Error.h"
#include "platform/base/URL.h"
#include "tests/stress/Content.h"
#include "tests/stress/Ledger.h"
#include "tests/stress/Stage.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace tessel {

/// Damage that a process does behind the ledger's back, to show that it is found.
enum class Sabotage { None, Lose, Tear, Double, Leave };

/// Which process of a run this is, and what it is to do.
struct Part {
    std::uint64_t seed = 0;
    int process = 0;
    int generation = 0;
    int firstOperation = 0;
    int endOperation = 0;
    Sabotage sabotage = Sabotage::None;
};

/// What every process of a run has: decisions that depend on nothing but seed, process and generation and what it finds
/// in the drive, and a pen for the ledger.
class Actor {
public:
    using Words = std::vector<std::string>;

    Actor(const Part&, const Stage&, int ledger);
    virtual ~Actor() = default;
    Actor(const Actor&) = delete;
    Actor& operator=(const Actor&) = delete;

    void run();
    /// Clears up what an earlier generation was about when it was killed. Part of `run`.
    virtual void recover() {}

protected:
    struct Item {
        URL url;
        bool isFolder = false;
        bool isInCloudOnly = false;
    };
    enum class Kind { Document, Folder, Any };

    struct Choice {
        int weight;
        std::function<void()> work;
    };

    /// One operation, chosen by `choose`, told to the ledger by `operate`.
    virtual void operateOnce() = 0;
    void choose(const std::vector<Choice>&);
    /// Tells the ledger that an operation begins, does it, and tells its outcome.
    void operate(Words words, const std::function<Words()>& work);
    /// An operation for which nothing was found.
    void pass(const std::string& what);

    [[nodiscard]] std::size_t number(std::size_t below);
    [[nodiscard]] bool chance(int percent) { return number(100) < static_cast<std::size_t>(percent); }
    [[nodiscard]] std::string newIdentifier();
    [[nodiscard]] std::size_t anyLength();
    [[nodiscard]] std::string anyDocumentName();
    [[nodiscard]] std::string anyFolderName();
    [[nodiscard]] std::size_t anyPlace();
    /// A folder at a place or somewhere below it.
    [[nodiscard]] URL anyFolder(std::size_t place);
    [[nodiscard]] URL anyFolder() { return anyFolder(anyPlace()); }
    [[nodiscard]] std::optional<Item> anyItem(Kind, std::size_t place);
    [[nodiscard]] std::optional<Item> anyItem(Kind kind) { return anyItem(kind, anyPlace()); }

    /// How the names of folders begin that only one process puts anything into, or takes anything out of.
    static constexpr const char* kOwnFolders = "Own ";

    /// What people see in a folder, but for folders that are another one's own, in a fixed order.
    [[nodiscard]] static std::vector<Item> itemsIn(const URL& folder);
    /// Of a document, told to the ledger when it is torn.
    [[nodiscard]] std::optional<std::string> identifierAt(const URL& document);
    /// Of all that a folder holds, hidden files included, or a document.
    [[nodiscard]] Words identifiersBelow(const URL&);
    [[nodiscard]] static Words outcomeOf(const std::optional<Error>&);

    const Part part_;
    const Stage& stage_;
    LedgerPen pen_;

private:
    void damageSomething();

    std::mt19937_64 random_;
    int operation_ = 0;
    int contents_ = 0;
};

} // namespace tessel
