#include "platform/documents/DocumentIcon.h"

#include "platform/base/Platform.h"
#include "platform/files/TypeRegistry.h"

#include <algorithm>
#include <string>

namespace tessel {

namespace {

struct TypeIcon {
    std::string_view ancestor; ///< the type, or one that it derives from
    std::string_view names;
};

// The first that fits is taken.
constexpr TypeIcon kTypeIcons[] = {
    {TypeIdentifier::kFolder, "folder"},
    {TypeIdentifier::kPackage, "package-x-generic"},
    {TypeIdentifier::kSymbolicLink, "inode-symlink link"},
    {TypeIdentifier::kAliasFile, "inode-symlink link"},
    {"com.adobe.pdf", "application-pdf x-office-document"},
    {"public.svg-image", "image-svg+xml x-office-drawing image-x-generic"},
    {"public.image", "image-x-generic"},
    {"public.audio", "audio-x-generic"},
    {"public.audiovisual-content", "video-x-generic"},
    {"public.html", "text-html"},
    {"public.markdown", "text-markdown text-x-generic"},
    {"public.source-code", "text-x-script text-x-generic"},
    {"public.comma-separated-values-text", "text-csv x-office-spreadsheet"},
    {"public.rtf", "application-rtf x-office-document"},
    {"public.contact", "x-office-address-book text-vcard"},
    {"public.calendar-event", "x-office-calendar text-calendar"},
    {"public.xml", "text-xml text-html text-x-script"},
    {"public.json", "application-json text-x-script"},
    {"public.text", "text-x-generic"},
    {"public.spreadsheet", "x-office-spreadsheet"},
    {"public.presentation", "x-office-presentation"},
    {"public.archive", "package-x-generic"},
    {"public.font", "font-x-generic"},
    {"public.executable", "application-x-executable"},
    {"public.composite-content", "x-office-document"},
};

} // namespace

std::string_view documentIconNames(std::string_view typeIdentifier)
{
    const auto& types = platform::installed().types;
    const auto* const found = std::find_if(std::begin(kTypeIcons), std::end(kTypeIcons), [&](const TypeIcon& icon) {
        return types.conforms(typeIdentifier, icon.ancestor);
    });
    return found == std::end(kTypeIcons) ? "application-octet-stream" : found->names;
}

Image documentIcon(std::string_view name, std::string_view typeIdentifier, const Size& size)
{
    const bool saysNothing = typeIdentifier.empty() || typeIdentifier == TypeIdentifier::kData;
    const auto type =
        saysNothing ? platform::installed().types.identifierForFileName(name) : std::string(typeIdentifier);
    return Image::icon(std::string(documentIconNames(type)), size);
}

} // namespace tessel
