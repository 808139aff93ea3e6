#include "platform/linux/apps/DesktopEntry.h"

#include "platform/linux/base/KeyFile.h"
#include "platform/linux/base/UTF8.h"
#include "platform/linux/files/SharedMimeTypesLines.h"

#include <algorithm>

namespace tessel {

namespace {

/// The main group; actions have groups of their own.
class MainGroup {
public:
    explicit MainGroup(std::string_view text) : file_(text) {}

    [[nodiscard]] std::optional<std::string> text(std::string_view key) const
    {
        const auto value = file_.value("Desktop Entry", key);
        return value ? std::optional(KeyFile::text(*value)) : std::nullopt;
    }
    [[nodiscard]] std::vector<std::string> list(std::string_view key) const
    {
        return KeyFile::list(file_.value("Desktop Entry", key).value_or(""));
    }
    [[nodiscard]] bool flag(std::string_view key) const { return file_.value("Desktop Entry", key) == "true"; }

private:
    KeyFile file_;
};

/// What may stand in the brackets behind a key, the best first ("Localized values for keys"): "sr_RS@latin",
/// "sr@latin", "sr_RS", "sr".
std::vector<std::string> languageTags(std::string_view locale)
{
    const std::string language(nextField(locale, '_'));
    std::string country;
    std::string modifier;
    while (!locale.empty())
        if (const auto part = nextField(locale, '_'); part == "Latn")
            modifier = "@latin";
        else if (part == "Cyrl")
            modifier = "@cyrillic";
        else if (part.size() == 2)
            country = "_" + std::string(part);
    return {language + country + modifier, language + modifier, language + country, language};
}

std::string localizedName(const MainGroup& group, const std::string& name, std::string_view locale)
{
    for (const auto& tag : languageTags(locale))
        if (const auto text = group.text("Name[" + tag + "]"); text && !text->empty() && isValidUTF8(*text))
            return *text;
    return name;
}

/// The first desktop that either list names decides; else there must be no list of those that it is meant for.
bool isShown(const MainGroup& group, const std::vector<std::string>& desktops)
{
    const auto only = group.list("OnlyShowIn");
    const auto never = group.list("NotShowIn");
    for (const auto& desktop : desktops) {
        if (std::find(only.begin(), only.end(), desktop) != only.end())
            return true;
        if (std::find(never.begin(), never.end(), desktop) != never.end())
            return false;
    }
    return only.empty();
}

} // namespace

std::optional<DesktopEntry> parsedDesktopEntry(std::string_view text, const URL& file, std::string identifier,
                                               const DesktopEntryOptions& options)
{
    const MainGroup group(text);
    auto name = group.text("Name").value_or("");
    if (group.text("Type") != "Application" || group.flag("Hidden") || name.empty() || !isValidUTF8(name))
        return std::nullopt;
    auto shownName = localizedName(group, name, options.locale);
    return DesktopEntry{.file = file,
                        .identifier = std::move(identifier),
                        .name = std::move(name),
                        .localizedName = std::move(shownName),
                        .exec = ExecLine::parse(group.text("Exec").value_or("")),
                        .tryExec = group.text("TryExec").value_or(""),
                        .icon = group.text("Icon").value_or(""),
                        .workingFolder = group.text("Path").value_or(""),
                        .version = group.text("X-AppImage-Version"),
                        .mimeTypes = group.list("MimeType"),
                        .isInTerminal = group.flag("Terminal"),
                        .isShownHere = isShown(group, options.desktops)};
}

} // namespace tessel
