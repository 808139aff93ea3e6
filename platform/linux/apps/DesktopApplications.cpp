#include "platform/linux/apps/DesktopApplications.h"

#include "platform/linux/files/SharedMimeTypes.h"
#include "platform/text/TextServices.h"

#include <algorithm>

namespace tessel {

namespace {

constexpr const char* kPlainText = "text/plain";
constexpr const char* kAnything = "application/octet-stream";

bool contains(const std::vector<const DesktopEntry*>& entries, const DesktopEntry* entry)
{
    return std::find(entries.begin(), entries.end(), entry) != entries.end();
}

void addNew(const std::vector<const DesktopEntry*>& entries, std::vector<const DesktopEntry*>& into)
{
    for (const auto* entry : entries)
        if (!contains(into, entry))
            into.push_back(entry);
}

/// Entries may claim a whole medium: "image/*".
std::string anyOfMedium(const std::string& mimeType)
{
    return mimeType.substr(0, mimeType.find('/')) + "/*";
}

void addRank(const char* name, ApplicationRegistry::Applications applications,
             ApplicationRegistry::RankedApplications& into)
{
    if (!applications.empty())
        into.push_back({name, std::move(applications)});
}

} // namespace

DesktopApplications::DesktopApplications(DesktopFolders folders, std::string locale, const DesktopServices& services)
    : folders_(std::move(folders)), services_(services),
      catalog_(folders_, {std::move(locale), folders_.desktops},
               [&types = services.types](std::string_view mimeType) { return types.canonicalMimeType(mimeType); })
{
}

std::shared_ptr<const ApplicationRecord> DesktopApplications::application(std::string_view bundleIdentifier) const
{
    catalog_.refresh();
    const auto* entry = catalog_.entry(std::string(bundleIdentifier));
    return entry ? recordOf(*entry) : nullptr;
}

ApplicationRegistry::RankedApplications DesktopApplications::applicationsForDocument(const URL& url) const
{
    catalog_.refresh();
    const auto identifier = services_.types.identifierForFileName(url.lastPathComponent());
    auto types = services_.types.mimeTypes(identifier);
    const auto owners = ownersOfDocument(identifier, types.own);
    Entries defaults;
    Entries others;
    if (types.own == kAnything)
        addNew(ownersOfType(kAnything), others);
    if (!types.own.empty())
        types.ancestors.push_back(anyOfMedium(types.own));
    for (const auto& ancestor : types.ancestors) {
        addNew(defaultsOfType(ancestor), defaults);
        addNew(ownersOfType(ancestor), others);
    }
    const auto isRemoved = [&](const DesktopEntry* entry) { return catalog_.isRemoved(*entry, types.own); };
    std::erase_if(defaults, [&](const auto* entry) { return contains(owners, entry) || isRemoved(entry); });
    std::erase_if(others, [&](const auto* entry) {
        return contains(owners, entry) || contains(defaults, entry) || isRemoved(entry);
    });
    RankedApplications ranks;
    addRank(HandlerRank::kOwner, recordsOf(owners), ranks);
    addRank(HandlerRank::kDefault, recordsOf(defaults), ranks);
    addRank(HandlerRank::kAlternate, recordsOf(others), ranks);
    return ranks;
}

DesktopApplications::Entries DesktopApplications::ownersOfDocument(const std::string& identifier,
                                                                   const std::string& mimeType) const
{
    if (mimeType == kAnything)
        return defaultsOfType(kAnything);
    auto owners = mimeType.empty() ? Entries() : ownersOfType(mimeType);
    if (owners.empty() && services_.types.conforms(identifier, "public.plain-text")) {
        owners = ownersOfType(kPlainText);
        std::erase_if(owners, [&](const auto* entry) { return catalog_.isRemoved(*entry, mimeType); });
    }
    return owners;
}

DesktopApplications::Entries DesktopApplications::ownersOfType(const std::string& mimeType) const
{
    auto owners = defaultsOfType(mimeType);
    addInstalled(catalog_.associations().added(mimeType), owners);
    auto claimants = catalog_.claimants(mimeType);
    std::erase_if(claimants, [this](const auto* entry) { return !programOf(*entry); });
    std::sort(claimants.begin(), claimants.end(), [this](const auto* left, const auto* right) {
        const auto order = services_.text.compareNames(left->localizedName, right->localizedName);
        return order != 0 ? order < 0 : left->identifier < right->identifier;
    });
    addNew(claimants, owners);
    return owners;
}

DesktopApplications::Entries DesktopApplications::defaultsOfType(const std::string& mimeType) const
{
    Entries defaults;
    addInstalled(catalog_.associations().defaults(mimeType), defaults);
    return defaults;
}

void DesktopApplications::addInstalled(const std::vector<std::string>& identifiers, Entries& into) const
{
    for (const auto& identifier : identifiers)
        if (const auto* entry = catalog_.entry(identifier); entry && programOf(*entry) && !contains(into, entry))
            into.push_back(entry);
}

ApplicationRegistry::Applications DesktopApplications::recordsOf(const Entries& entries) const
{
    Applications records;
    for (const auto* entry : entries)
        records.push_back(recordOf(*entry));
    return records;
}

std::shared_ptr<const ApplicationRecord> DesktopApplications::recordOf(const DesktopEntry& entry) const
{
    const auto program = programOf(entry);
    const bool canBeShown = !entry.isInTerminal || !terminalCommand().empty();
    return std::make_shared<const ApplicationRecord>(ApplicationRecord{
        .bundleIdentifier = entry.identifier,
        .itemName = entry.name,
        .localizedName = entry.localizedName,
        .localizedShortName = entry.localizedName,
        .shortVersionString = entry.version,
        .vendorName = std::nullopt,
        .bundleExecutable =
            entry.exec ? std::string(URL::file(entry.exec->program()).lastPathComponent()) : std::string(),
        .bundleContainerURL = entry.file.deletingLastPathComponent(),
        .itemIdentifier = std::string(entry.file.lastPathComponent()),
        .isInstalled = program.has_value(),
        .supportsOpenInPlace = program && entry.exec->takesDocument() && canBeShown,
    });
}

std::optional<std::string> DesktopApplications::programOf(const DesktopEntry& entry) const
{
    if (!entry.exec || (!entry.tryExec.empty() && !folders_.findProgram(entry.tryExec)))
        return std::nullopt;
    return folders_.findProgram(entry.exec->program());
}

} // namespace tessel
