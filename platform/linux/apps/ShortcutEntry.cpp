#include "platform/linux/apps/ShortcutEntry.h"

#include "platform/linux/base/KeyFile.h"
#include "platform/linux/files/SharedMimeTypesLines.h"

#include <charconv>

namespace tessel {

namespace {

constexpr std::string_view kMainGroup = "Desktop Entry";
constexpr std::string_view kOwnKey = "X-TesselDrive-Kept";
constexpr std::string_view kAction = "recent";
constexpr std::string_view kRemark = "# Tessel Drive keeps this file. It leaves one without the next line alone.\n";

/// A text as a value; blanks at its ends would be passed over.
std::string escaped(std::string_view text)
{
    std::string value;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (text[i] == ' ' && (i == 0 || i + 1 == text.size()))
            value += "\\s";
        else if (text[i] == '\n')
            value += "\\n";
        else if (text[i] == '\r')
            value += "\\r";
        else if (text[i] == '\t')
            value += "\\t";
        else if (text[i] == '\\')
            value += "\\\\";
        else
            value += text[i];
    return value;
}

std::string actionOf(const RecentDocument& document)
{
    return std::string(kAction) + std::to_string(document.identifier);
}

/// The command without the field code for documents, which ends it.
std::string commandOf(std::string_view exec)
{
    const auto percent = exec.find('%');
    auto command = exec.substr(0, percent);
    while (command.ends_with(' '))
        command.remove_suffix(1);
    return std::string(command);
}

/// What comes first in the main group.
std::string ownKeys(const KeyFile& file, const std::vector<RecentDocument>& documents)
{
    std::string keys(kRemark);
    keys += std::string(kOwnKey) + "=true\n";
    const auto command = commandOf(*file.value(kMainGroup, "Exec"));
    if (!file.value(kMainGroup, "TryExec") && command.find_first_of("\" \\") == std::string::npos)
        keys += "TryExec=" + command + "\n";
    keys += "Actions=";
    for (const auto& action : KeyFile::list(file.value(kMainGroup, "Actions").value_or("")))
        keys += action + ";";
    for (const auto& document : documents)
        keys += actionOf(document) + ";";
    return keys + "\n";
}

bool isKey(std::string_view line, std::string_view key)
{
    if (!line.starts_with(key))
        return false;
    line.remove_prefix(key.size());
    return line.substr(std::min(line.find_first_not_of(" \t"), line.size())).starts_with('=');
}

} // namespace

std::optional<std::string> shortcutEntry(std::string_view installed, const std::vector<RecentDocument>& documents)
{
    const KeyFile file(installed);
    if (commandOf(file.value(kMainGroup, "Exec").value_or("")).empty())
        return std::nullopt;
    std::string entry;
    bool isInMainGroup = false;
    while (!installed.empty()) {
        const auto line = nextField(installed, '\n');
        if (line.starts_with('['))
            isInMainGroup = line.substr(1).starts_with(std::string(kMainGroup) + "]");
        if (isInMainGroup && isKey(line, "Actions"))
            continue;
        entry += std::string(line) + "\n";
        if (isInMainGroup && line.starts_with('['))
            entry += ownKeys(file, documents);
    }
    const auto command = commandOf(*file.value(kMainGroup, "Exec"));
    for (const auto& document : documents)
        entry += "\n[Desktop Action " + actionOf(document) + "]\nName=" + escaped(document.name) + "\nExec=" + command +
                 " --shortcut recent:" + std::to_string(document.identifier) + "\n";
    return entry;
}

std::optional<std::vector<std::uint32_t>> documentsOfShortcutEntry(std::string_view entry)
{
    const KeyFile file(entry);
    if (file.value(kMainGroup, kOwnKey) != "true")
        return std::nullopt;
    std::vector<std::uint32_t> documents;
    for (const auto& action : KeyFile::list(file.value(kMainGroup, "Actions").value_or(""))) {
        std::uint32_t identifier = 0;
        const auto* const end = action.data() + action.size();
        if (action.starts_with(kAction) && std::from_chars(action.data() + kAction.size(), end, identifier).ptr == end)
            documents.push_back(identifier);
    }
    return documents;
}

} // namespace tessel
