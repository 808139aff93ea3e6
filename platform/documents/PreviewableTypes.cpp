#include "platform/documents/PreviewableTypes.h"

#include "platform/base/Platform.h"
#include "platform/files/TypeRegistry.h"

#include <algorithm>

namespace tessel {

bool isPreviewable(const std::string& typeIdentifier)
{
    constexpr const char* kShown[] = {"public.text", "public.image", "com.adobe.pdf", "public.audiovisual-content",
                                      "public.package"};
    const auto& types = platform::installed().types;
    return typeIdentifier == TypeIdentifier::kData ||
           std::ranges::any_of(kShown, [&](const char* shown) { return types.conforms(typeIdentifier, shown); });
}

} // namespace tessel
