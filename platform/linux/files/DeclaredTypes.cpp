#include "platform/linux/files/DeclaredTypes.h"

#include <algorithm>

namespace tessel {

namespace {

// clang-format off
constexpr DeclaredType kTypes[] = {
    {"public.item", "", "", "", "Item"},
    {"public.content", "", "", "", "Document"},
    {"public.data", "public.item", "application/octet-stream", "", "Document"},
    {"public.composite-content", "public.content", "", "", "Document"},
    {"public.folder", "public.item", "inode/directory", "", "Folder"},
    {"public.symlink", "public.item", "inode/symlink", "", "Symbolic link"},
    {"public.package", "public.item", "", "", "Package"},
    {"public.alias-file", "public.data", "", "", "Alias"},
    {"orvane.tesseldrive.reference", "public.data", "", "tesselref", "Reference"},
    {"public.executable", "public.data", "application/x-executable", "", "Program"},
    {"public.contact", "public.content", "", "", "Contact"},
    {"public.calendar-event", "public.content", "", "", "Calendar event"},

    {"public.image", "public.data public.content", "", "", "Image"},
    {"public.jpeg", "public.image", "image/jpeg", "jpg jpeg jpe", "JPEG image"},
    {"public.png", "public.image", "image/png", "png", "PNG image"},
    {"public.tiff", "public.image", "image/tiff", "tiff tif", "TIFF image"},
    {"public.gif", "public.image", "image/gif", "gif", "GIF image"},
    {"public.svg-image", "public.image public.xml", "image/svg+xml", "svg", "SVG image"},
    {"public.webp", "public.image", "image/webp", "webp", "WebP image"},
    {"public.heic", "public.image", "image/heif", "heic heif hif", "HEIF image"},
    {"public.avif", "public.image", "image/avif", "avif", "AVIF image"},
    {"public.bmp", "public.image", "image/bmp", "bmp dib", "Bitmap image"},
    {"public.icon", "public.image", "image/vnd.microsoft.icon", "ico", "Icon"},
    {"public.camera-raw-image", "public.image", "image/x-dcraw", "", "Raw image"},

    {"public.audiovisual-content", "public.data public.content", "", "", "Audio or video"},
    {"public.movie", "public.audiovisual-content", "", "", "Movie"},
    {"public.video", "public.movie", "", "", "Video"},
    {"public.mpeg-4", "public.movie", "video/mp4", "mp4 m4v", "MPEG-4 movie"},
    {"public.mpeg", "public.movie", "video/mpeg", "mpg mpeg mpe", "MPEG movie"},
    {"public.avi", "public.movie", "video/x-msvideo", "avi", "AVI movie"},
    {"public.matroska-video", "public.movie", "video/x-matroska", "mkv", "Matroska movie"},
    {"public.webm", "public.movie", "video/webm", "webm", "WebM movie"},
    {"public.audio", "public.audiovisual-content", "", "", "Audio"},
    {"public.mp3", "public.audio", "audio/mpeg", "mp3", "MP3 audio"},
    {"public.mpeg-4-audio", "public.audio", "audio/mp4", "m4a", "MPEG-4 audio"},
    {"public.aac-audio", "public.audio", "audio/aac", "aac", "AAC audio"},
    {"public.flac", "public.audio", "audio/flac", "flac", "FLAC audio"},
    {"public.ogg-audio", "public.audio", "audio/ogg", "oga", "Ogg audio"},
    {"public.wave-audio", "public.audio", "audio/x-wav", "wav", "WAV audio"},
    {"public.aiff-audio", "public.audio", "audio/x-aiff", "aiff aif", "AIFF audio"},
    {"public.midi-audio", "public.audio", "audio/midi", "mid midi", "MIDI audio"},

    {"public.text", "public.data public.content", "", "", "Text"},
    {"public.plain-text", "public.text", "text/plain", "txt text", "Plain text document"},
    {"public.source-code", "public.plain-text", "", "", "Source code"},
    {"public.c-source", "public.source-code", "text/x-csrc", "c", "C source"},
    {"public.c-header", "public.source-code", "text/x-chdr", "h", "C header"},
    {"public.c-plus-plus-source", "public.source-code", "text/x-c++src", "cpp cc cxx", "C++ source"},
    {"public.c-plus-plus-header", "public.source-code", "text/x-c++hdr", "hpp hh hxx", "C++ header"},
    {"public.python-script", "public.source-code", "text/x-python", "py", "Python script"},
    {"public.shell-script", "public.source-code", "application/x-shellscript", "sh", "Shell script"},
    {"public.javascript", "public.source-code", "application/javascript", "js", "JavaScript source"},
    {"public.css", "public.source-code", "text/css", "css", "Style sheet"},
    {"public.html", "public.text", "text/html", "html htm", "HTML document"},
    {"public.xml", "public.text", "application/xml", "xml", "XML document"},
    {"public.json", "public.text", "application/json", "json", "JSON document"},
    {"public.yaml", "public.text", "application/x-yaml", "yaml yml", "YAML document"},
    {"public.markdown", "public.plain-text", "text/markdown", "md markdown", "Markdown document"},
    {"public.log", "public.plain-text", "text/x-log", "log", "Log"},
    {"public.comma-separated-values-text", "public.plain-text", "text/csv", "csv", "CSV document"},
    {"public.rtf", "public.text", "application/rtf", "rtf", "RTF document"},
    {"public.vcard", "public.text public.contact", "text/vcard", "vcf vcard", "Contact card"},
    {"public.calendar", "public.text public.calendar-event", "text/calendar", "ics", "Calendar"},

    {"com.adobe.pdf", "public.data public.composite-content", "application/pdf", "pdf", "PDF document"},
    {"public.epub", "public.data public.composite-content", "application/epub+zip", "epub", "Electronic book"},
    {"public.word-processing", "public.data public.composite-content", "", "", "Text document"},
    {"public.spreadsheet", "public.data public.content", "", "", "Spreadsheet"},
    {"public.presentation", "public.data public.composite-content", "", "", "Presentation"},
    {"org.openxmlformats.wordprocessingml", "public.word-processing",
     "application/vnd.openxmlformats-officedocument.wordprocessingml.document", "docx", "Office Open XML text"},
    {"org.openxmlformats.spreadsheetml", "public.spreadsheet",
     "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet", "xlsx", "Office Open XML spreadsheet"},
    {"org.openxmlformats.presentationml", "public.presentation",
     "application/vnd.openxmlformats-officedocument.presentationml.presentation", "pptx", "Office Open XML presentation"},
    {"org.oasis-open.opendocument.text", "public.word-processing",
     "application/vnd.oasis.opendocument.text", "odt", "OpenDocument text"},
    {"org.oasis-open.opendocument.spreadsheet", "public.spreadsheet",
     "application/vnd.oasis.opendocument.spreadsheet", "ods", "OpenDocument spreadsheet"},
    {"org.oasis-open.opendocument.presentation", "public.presentation",
     "application/vnd.oasis.opendocument.presentation", "odp", "OpenDocument presentation"},

    {"public.archive", "public.data", "", "", "Archive"},
    {"public.zip-archive", "public.archive", "application/zip", "zip", "ZIP archive"},
    {"public.tar-archive", "public.archive", "application/x-tar", "tar", "TAR archive"},
    {"public.gzip-archive", "public.archive", "application/gzip", "gz", "Gzip archive"},
    {"public.tar-gzip-archive", "public.archive", "application/x-compressed-tar", "tgz", "Compressed TAR archive"},
    {"public.7z-archive", "public.archive", "application/x-7z-compressed", "7z", "7-Zip archive"},
    {"public.xz-archive", "public.archive", "application/x-xz", "xz", "XZ archive"},
    {"public.disk-image", "public.archive", "application/x-cd-image", "iso", "Disk image"},
    {"public.font", "public.data", "", "", "Font"},
    {"public.truetype-font", "public.font", "font/ttf", "ttf", "TrueType font"},
    {"public.opentype-font", "public.font", "font/otf", "otf", "OpenType font"},
};

constexpr DeclaredType kPackages[] = {
    {"orvane.lookbook.album", "public.package public.composite-content", "", "lookbook", "Lookbook album"},
    {"orvane.quillpad.document", "public.package public.composite-content", "", "quillpad", "Quillpad document"},
    {"public.rtfd", "public.package public.composite-content", "", "rtfd", "RTF document with attachments"},
    {"public.application", "public.package public.executable", "", "app", "Application"},
    {"public.bundle", "public.package", "", "bundle", "Bundle"},
};
// clang-format on

bool equalsLowered(std::string_view text, std::string_view lower)
{
    return std::equal(text.begin(), text.end(), lower.begin(), lower.end(),
                      [](char left, char right) { return (left >= 'A' && left <= 'Z' ? left | 0x20 : left) == right; });
}

bool hasExtension(const DeclaredType& type, std::string_view extension)
{
    return anyWord(type.extensions, [&](std::string_view own) { return equalsLowered(extension, own); });
}

template <typename Predicate>
const DeclaredType* find(Predicate&& predicate)
{
    if (const auto* found = std::find_if(std::begin(kTypes), std::end(kTypes), predicate); found != std::end(kTypes))
        return found;
    const auto* found = std::find_if(std::begin(kPackages), std::end(kPackages), predicate);
    return found == std::end(kPackages) ? nullptr : found;
}

} // namespace

const DeclaredType* declaredType(std::string_view identifier)
{
    return find([&](const DeclaredType& type) { return type.identifier == identifier; });
}

const DeclaredType* declaredTypeForExtension(std::string_view extension)
{
    return find([&](const DeclaredType& type) { return hasExtension(type, extension); });
}

const DeclaredType* declaredTypeForMimeType(std::string_view mimeType)
{
    if (mimeType.empty())
        return nullptr;
    return find([&](const DeclaredType& type) { return type.mimeType == mimeType; });
}

bool isDeclaredPackageExtension(std::string_view extension)
{
    return std::any_of(std::begin(kPackages), std::end(kPackages),
                       [&](const DeclaredType& type) { return hasExtension(type, extension); });
}

} // namespace tessel
