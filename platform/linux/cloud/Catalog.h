#pragma once

#include "platform/base/Value.h"
#include "platform/cloud/CloudContainer.h"
#include "platform/linux/cloud/Database.h"

#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tessel {

/// What the cloud service knows and no folder tells: accounts, and the containers of the synced root. It can be made
/// anew from the tree, but for the accounts. Safe to use from any thread; several programs may share the file.
class Catalog {
public:
    using Containers = std::vector<std::shared_ptr<const CloudContainer>>;

    using Opened = Result<std::unique_ptr<Catalog>>;

    /// Opens a catalogue and writes nothing, but that it extends one of an earlier version. One on a full disk, or in a
    /// folder that cannot be written, can be read; changes fail until there is room again.
    /// @returns a no-such-file error (4) when there is none, or only the beginning of one; a corrupt-file error (259)
    ///          when it is damaged
    static Opened open(const URL& file, const URL& syncedRoot);

    /// Makes a catalogue without containers in which `firstAccount` is signed in. No other instance may be doing so.
    static Opened make(const URL& file, const URL& syncedRoot, const std::string& firstAccount);

    /// In the order of their identifiers.
    Result<Containers> containers() const;
    /// Adds those whose identifiers are not known yet, all or none.
    /// @param containers their documents lie in the synced root
    [[nodiscard]] std::optional<Error> addContainers(const Containers&);

    /// The token of the account that is signed in, if one is.
    Result<std::optional<Data>> identityToken() const;
    /// Signs in, in place of whoever was. A new account gets a token of 128 random bits; a known one has its own.
    [[nodiscard]] std::optional<Error> signIn(const std::string& accountName);
    [[nodiscard]] std::optional<Error> signOut();

private:
    Catalog(Database database, URL file, URL syncedRoot)
        : database_(std::move(database)), file_(std::move(file)), syncedRoot_(std::move(syncedRoot))
    {
    }

    static Opened checked(Result<Database> database, const URL& file, const URL& syncedRoot);
    void prepareForChange();
    [[nodiscard]] int schemaVersion() const;
    void extendSchema();
    [[nodiscard]] std::optional<Error> makeSchema(const std::string& firstAccount);
    [[nodiscard]] bool replaceSignedIn(const std::string& accountName);
    [[nodiscard]] bool add(const CloudContainer&);
    [[nodiscard]] std::shared_ptr<const CloudContainer> containerIn(const Statement& row) const;

    mutable std::mutex mutex_;
    Database database_;
    const URL file_;
    const URL syncedRoot_;
};

} // namespace tessel
