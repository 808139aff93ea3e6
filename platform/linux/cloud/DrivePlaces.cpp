#include "platform/linux/cloud/DrivePlaces.h"

#include "platform/files/FileManager.h"

#include <algorithm>

namespace tessel {

namespace {

bool isPlain(const URL& relative)
{
    const auto& path = relative.path();
    if (path.starts_with('/') || path.find('\0') != std::string::npos)
        return false;
    const auto components = relative.pathComponents();
    return std::find(components.begin(), components.end(), "..") == components.end();
}

std::string_view below(const URL& folder, const URL& url)
{
    return std::string_view(url.path()).substr(std::min(folder.path().size(), url.path().size()));
}

} // namespace

void DrivePlaces::add(CloudContainer container, std::string pathInRoot)
{
    auto resolved = files_.resolvingSymbolicLinks(container.documentsURL);
    places_.push_back(
        {std::make_shared<const CloudContainer>(std::move(container)), std::move(resolved), std::move(pathInRoot)});
}

const DrivePlaces::Place* DrivePlaces::holding(const URL& resolved) const
{
    const auto holdsIt = [&](const Place& place) { return place.realDocumentsURL.contains(resolved); };
    const auto found = std::find_if(places_.begin(), places_.end(), holdsIt);
    return found == places_.end() ? nullptr : &*found;
}

URL DrivePlaces::withFolderResolved(const URL& url) const
{
    if (url.lastPathComponent() == "..")
        return files_.resolvingSymbolicLinks(url);
    return files_.resolvingSymbolicLinks(url.deletingLastPathComponent()).appending(url.lastPathComponent());
}

std::optional<std::string> DrivePlaces::pathInRoot(const URL& url) const
{
    const auto location = withFolderResolved(url);
    const auto* place = holding(location);
    if (!place)
        return std::nullopt;
    return URL::file(place->pathInRoot).appending(below(place->realDocumentsURL, location)).path();
}

std::optional<URL> DrivePlaces::urlAt(std::string_view pathInRoot) const
{
    const auto relative = URL::file(pathInRoot);
    if (!isPlain(relative))
        return std::nullopt;
    for (const auto& place : places_) {
        const auto top = URL::file(place.pathInRoot);
        if (top.contains(relative))
            return place.container->documentsURL.appending(below(top, relative));
    }
    return std::nullopt;
}

} // namespace tessel
