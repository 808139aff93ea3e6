#pragma once

#include <string>

namespace tessel {

/// Where an offer's button leads.
struct OfferLink {
    /// The action of a link that leads into the program's own upgrade flow. Others have no meaning but that of their
    /// URL.
    static constexpr int kUpgradeFlow = 3;

    int action = 0;
    std::string url = {}; ///< of a page on the web; may be empty

    friend bool operator==(const OfferLink&, const OfferLink&) = default;
};

/// The cloud's offer of more room, made while the account's own runs low. Its texts are the service's, UTF-8, in the
/// user's language.
struct StorageOffer {
    int level = 0; ///< how urgent it is; only told to the log
    std::string title = {};
    std::string message = {};
    OfferLink link = {};
    bool showsButton = false; ///< whether a button is to stand beneath the status of every list

    friend bool operator==(const StorageOffer&, const StorageOffer&) = default;
};

} // namespace tessel
