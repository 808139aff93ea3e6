#pragma once

#include "platform/files/FileManager.h"
#include "platform/files/ResourceValues.h"
#include "platform/files/TypeRegistry.h"

namespace tessel {

class DocumentIdentifiers;

/// The attribute that says how an item is shared: one of SharedItemRole.
inline constexpr const char* kSharedAttribute = "user.tesseldrive.shared";

/// Values from the file itself or, for a document that is not on the device, from its placeholder. All file values of
/// one call come from one look at the file. The thumbnail of an image or a
/// PDF document is made of the document itself by whoever shows it.
class LinuxResourceValues final : public ResourceValues {
public:
    /// All outlive this.
    LinuxResourceValues(const FileManager& files, const TypeRegistry& types, DocumentIdentifiers& identifiers)
        : files_(files), types_(types), identifiers_(identifiers)
    {
    }

    /// A placeholder's own URL has the promised values of its document.
    Result<Values> values(std::span<const ResourceKey> keys, const URL&, ValueVariant) const override;
    [[nodiscard]] bool promisedItemIsReachable(const URL&) const override;
    [[nodiscard]] URL physicalURLOfPromisedItem(const URL&) const override;
    [[nodiscard]] std::optional<URL> logicalURLOfPromise(const URL&) const override;

    /// A plain file system opens to whoever may read it: access is never begun, so that there is none to end.
    [[nodiscard]] bool startAccessingSecurityScopedResource(const URL&) override { return false; }
    void stopAccessingSecurityScopedResource(const URL&) override {}

private:
    const FileManager& files_;
    const TypeRegistry& types_;
    DocumentIdentifiers& identifiers_;
};

} // namespace tessel
