#pragma once

#include "platform/files/GenerationalStorage.h"

namespace tessel {

class CloudService;
class DocumentIdentifiers;

/// Document identifiers by the drive's catalogue. A document's file identifier is its number there, never an inode's,
/// which may need more than the 32 bits that are opened by; the device stands for the whole drive, also where other
/// file systems are mounted in it.
class CatalogStorage final : public GenerationalStorage {
public:
    /// Both outlive this.
    CatalogStorage(const CloudService& cloud, DocumentIdentifiers& identifiers)
        : cloud_(cloud), identifiers_(identifiers)
    {
    }

    [[nodiscard]] std::optional<std::uint32_t> deviceOf(const URL&) const override;
    [[nodiscard]] std::uint64_t resolveDocumentIdentifier(std::uint64_t identifier, std::uint32_t device) override;
    [[nodiscard]] std::unique_ptr<OpenObject> openByIdentifier(const FileSystemIdentifier&, const ObjectIdentifier&,
                                                               std::uint32_t flags) override;

private:
    [[nodiscard]] bool isDriveDevice(std::uint32_t device) const;

    const CloudService& cloud_;
    DocumentIdentifiers& identifiers_;
};

} // namespace tessel
