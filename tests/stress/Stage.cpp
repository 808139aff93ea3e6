#include "tests/stress/Stage.h"

#include "platform/linux/cloud/ContainerDeclaration.h"
#include "platform/linux/files/ItemStamp.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace tessel {

namespace {

namespace fs = std::filesystem;

URL newFolderIn(const fs::path& parent)
{
    auto pattern = (parent / "tesseldrive-stress-XXXXXX").string();
    if (!::mkdtemp(pattern.data()))
        throw std::runtime_error("no temporary folder in " + parent.string());
    return URL::file(fs::canonical(pattern).string());
}

fs::path otherFileSystem()
{
    const fs::path candidate = "/dev/shm";
    std::error_code ignored;
    return fs::is_directory(candidate, ignored) ? candidate : fs::temp_directory_path();
}

URL containerIn(const URL& home, const char* identifier)
{
    return home.appending("Mobile Documents").appending(containerFolderName(identifier));
}

std::array<URL, 4> placesIn(const URL& home)
{
    const auto top = containerIn(home, kDefaultContainerIdentifier);
    return {top, containerIn(home, Stage::kNearLibrary).appending("Documents"),
            containerIn(home, Stage::kFarLibrary).appending("Documents"), top.appending(".Trash")};
}

} // namespace

Stage::Stage()
    : folder_(newFolderIn(fs::temp_directory_path())), far_(newFolderIn(otherFileSystem())),
      hasOtherFileSystem_(stampOf(folder_)->device != stampOf(far_)->device), places_(placesIn(home()))
{
    for (const auto place : {0U, 1U, 3U})
        fs::create_directories(places_.at(place).path());
    fs::create_directories(places_[kFarContainer].deletingLastPathComponent().path());
    fs::create_directory_symlink(far_.path(), places_[kFarContainer].path());
    for (const auto* library : {kNearLibrary, kFarLibrary}) {
        const auto container = containerIn(home(), library);
        if (writeContainerDeclaration({library, container, library, {}, {}, {}}, container))
            throw std::runtime_error("no library");
    }
}

Stage::~Stage()
{
    std::error_code ignored;
    if (isKept_)
        return;
    fs::remove_all(folder_.path(), ignored);
    fs::remove_all(far_.path(), ignored);
}

std::unique_ptr<LinuxPlatform> Stage::startPlatform() const
{
    const auto nowhere = folder_.appending("no desktop").path();
    const DesktopFolders desktop = {.configuration = {nowhere}, .data = {nowhere}, .programs = {}, .desktops = {}};
    auto platform = LinuxPlatform::create({home().path(), std::nullopt, nullptr, "en", desktop});
    if (!platform)
        throw std::runtime_error(platform.error().description);
    return std::move(platform.value());
}

} // namespace tessel
