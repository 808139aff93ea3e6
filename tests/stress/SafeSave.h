#pragma once

#include "platform/base/URL.h"

#include <optional>
#include <string>

namespace tessel {

class LedgerPen;
class Stage;

/// Saves as careful editors do: writes a hidden file beside the document, brings it to disk, and renames it over the
/// document. It does so by exchanging the two, so that it has what it displaced, and need not guess what that was: what
/// it was based on goes, and anything else, which came there at the last moment, is kept aside under another name.
class SafeSave {
public:
    /// @param owner whose hidden file it is
    /// @param identifier of the new content
    /// @param base of the content that it was made from
    SafeSave(LedgerPen& pen, std::string owner, std::string identifier, std::string base)
        : pen_(pen), owner_(std::move(owner)), identifier_(std::move(identifier)), base_(std::move(base))
    {
    }

    /// @param store where the contents lie that are in the cloud
    /// @returns "done", or why the new content came nowhere
    [[nodiscard]] std::string save(const URL& document, std::size_t length, const URL& store);

    /// Goes on with the saves of an owner that were interrupted, wherever in the drive their hidden files are now.
    static void recoverAll(LedgerPen&, const std::string& owner, const Stage&);

    /// What the names of an owner's hidden files begin with.
    [[nodiscard]] static std::string prefixOf(const std::string& owner) { return ".stress-" + owner + '-'; }

private:
    static void recover(LedgerPen&, const std::string& owner, const URL& hidden);
    [[nodiscard]] URL hiddenBeside(const URL& document) const;
    [[nodiscard]] std::string putInPlace(const URL& hidden, const URL& document, const URL& store);
    void settleDisplaced(const URL& hidden);
    void tellOfShadow(const URL& document, const URL& store);

    LedgerPen& pen_;
    const std::string owner_;
    const std::string identifier_;
    const std::string base_;
};

/// Writes a file that is not there, and brings it to disk. @returns false with errno set
[[nodiscard]] bool writeNewFile(const URL&, const std::string& bytes);

} // namespace tessel
