#pragma once

#include "tests/stress/Actor.h"
#include "tests/support/Program.h"

namespace tessel {

/// A person who uses the whole program, through its console, and arranges documents with it. Ends with its program when
/// its process group is killed.
///
/// What the program deletes, it looks at before. From outside nobody can tell at which moment, so the person deletes
/// only what lies in a folder of its own, which the others leave alone.
class ConsoleUser final : public Actor {
public:
    /// Starts the program.
    ConsoleUser(const Part&, const Stage&, int ledger);

private:
    using Lines = std::vector<std::string>;

    void operateOnce() override;
    void makeFolder();
    void renameItem();
    void moveItems();
    void collectItems();
    void moveItemsTo(const URL& from, const URL& to);
    void removeOwnFolder();
    void removeOwnItems();
    void lookAtDocument();

    [[nodiscard]] URL ownFolder() const;
    [[nodiscard]] std::size_t anyContainer() { return number(Stage::kContainers); }
    /// Makes the folder's list the top one. @returns whether the program shows it
    [[nodiscard]] bool goTo(const URL& folder);
    /// From a folder's list in the picker to another's.
    [[nodiscard]] bool pick(const URL& from, const URL& to);
    /// Selects some of the rows. @returns their names
    [[nodiscard]] Lines selectSome();
    void tellIntent(const URL& folder, const Lines& names);
    /// Presses something that ends an operation. @returns its outcome
    [[nodiscard]] Words press(const std::string& name);
    /// Leaves whatever question, document or mode is left.
    void leave();

    [[nodiscard]] bool does(const std::string& command) { return program_.send(command).answer == "ok"; }
    [[nodiscard]] bool taps(const std::string& name);
    /// The screen's lines that begin with a key, without it.
    [[nodiscard]] Lines lines(const std::string& key);
    [[nodiscard]] Lines rows(const std::string& kind);

    Program program_;
};

} // namespace tessel
