#include "platform/linux/cloud/ExampleDrive.h"

#include "platform/base/KeyedArchive.h"
#include "platform/files/ResourceValues.h"
#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/cloud/ContainerDeclaration.h"
#include "platform/linux/cloud/ExampleBuilder.h"
#include "platform/linux/cloud/ExampleDocuments.h"
#include "platform/linux/cloud/FileKeyValueStore.h"
#include "platform/linux/files/AtomicFile.h"
#include "platform/linux/files/FileDescriptor.h"

#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <system_error>

namespace tessel {

namespace {

constexpr Landscape kHarbour = {{90, 150, 210}, {220, 230, 240}, {40, 90, 120}, {255, 245, 200}, 70, 14};
constexpr Landscape kDunes = {{240, 180, 110}, {255, 225, 180}, {200, 150, 90}, {255, 250, 230}, 48, 24};
constexpr Landscape kNightSky = {{10, 14, 40}, {40, 44, 90}, {15, 20, 25}, {235, 235, 220}, 22, 16};
constexpr Landscape kForest = {{150, 200, 220}, {230, 240, 220}, {35, 95, 50}, {255, 250, 210}, 80, 20};

void addDesktop(ExampleBuilder& drive, const URL& finalDrive)
{
    const auto photos = finalDrive.appending("Documents/Photos");
    drive.folder("Desktop");
    drive.file("Desktop/To Do.txt", "- call the plumber\n- renew the library card\n- water the tomatoes\n");
    drive.link("Desktop/Plan", "../Documents/Plan.txt");
    drive.file("Desktop/Holiday Photos.desktop",
               "[Desktop Entry]\nType=Link\nName=Holiday Photos\nURL=" + photos.absoluteString() + "\n");
    drive.setTags("Desktop/To Do.txt", "Important");
}

void addReference(ExampleBuilder& drive)
{
    constexpr std::uint32_t kShed = 20'260'105;
    drive.reference("Desktop/Shed.tesselref", kDefaultContainerIdentifier, "Documents/Projects/Garden/Shed.md", kShed);
}

void addDocuments(ExampleBuilder& drive)
{
    drive.folder("Documents");
    drive.file("Documents/Report.pdf", pdfDocument("Allotment Report 2026\nThe year began cold and dry.\n"
                                                   "Potatoes did well (12 kg), tomatoes less so.\n"));
    drive.file("Documents/Plan.txt", "Spring: clear the beds.\nSummer: build the shed.\nAutumn: plant two trees.\n");
    drive.file("Documents/Notes.md", "# Notes\n\n* The shed needs **eight** posts.\n* Ask Mira about the saw.\n");
    drive.file("Documents/Budget.csv", "Item,Amount\nTimber,312.50\nSeeds,48.20\nPaint,27.90\n");
    drive.notDownloaded("Documents/Contract.pdf", pdfDocument("Contract\nBetween the tenant and the association.\n"),
                        SharedItemRole::kOwner);
    drive.setSharedRole("Documents/Budget.csv", SharedItemRole::kParticipant);
    drive.setTags("Documents/Report.pdf", "Work,Important");
    drive.setTags("Documents/Contract.pdf", "Work");
}

void addProjects(ExampleBuilder& drive)
{
    drive.folder("Documents/Projects");
    drive.folder("Documents/Projects/Garden");
    drive.folder("Documents/Projects/Garden/Beds");
    drive.file("Documents/Projects/Garden/Beds/Spring 2.txt", "Peas, radishes, lettuce\n");
    drive.file("Documents/Projects/Garden/Beds/Spring 10.txt", "Beans, courgettes\n");
    drive.file("Documents/Projects/Garden/Shed.md", "# Shed\n\n2.4 m by 1.8 m, door to the south.\n");
    drive.folder("Documents/Projects/Kitchen");
    drive.file("Documents/Projects/Kitchen/Quotes.csv", "Firm,Price\nNorth,4200\nHarbour,3950\n");
    drive.link("Documents/Current Project", "Projects/Garden");
    drive.link("Documents/Old Report", "Archive/Report 2019.pdf");
    drive.setTags("Documents/Projects/Garden", "Home,Green");
}

void addPictures(ExampleBuilder& drive)
{
    drive.folder("Documents/Photos");
    drive.file("Documents/Photos/Harbour.png", pngPicture(kHarbour));
    drive.file("Documents/Photos/Dunes.png", pngPicture(kDunes));
    drive.file("Documents/Photos/Night Sky.png", pngPicture(kNightSky));
    drive.notDownloaded("Documents/Photos/Forest 🌲.png", pngPicture(kForest));
    drive.setTags("Documents/Photos/Harbour.png", "Blue");
}

void addAlbum(ExampleBuilder& drive, const std::string& path, const char* title)
{
    drive.folder(path);
    drive.folder(path + "/pages");
    drive.file(path + "/album.json", std::string("{\"title\": \"") + title + "\", \"pages\": 2}\n");
    drive.file(path + "/pages/1.png", pngPicture(kDunes));
    drive.file(path + "/pages/2.png", pngPicture(kHarbour));
}

void addOtherScripts(ExampleBuilder& drive)
{
    drive.folder("Documents/Рецепты");
    drive.file("Documents/Рецепты/Борщ.txt", "Свёкла, капуста, картофель\n");
    drive.file("Documents/旅行の計画.txt", "四月: 京都\n");
    drive.file("Documents/رحلة إلى البحر.txt", "الإسكندرية\n");
    drive.file("Documents/Grüße 🎉.md", "# Alles Gute!\n");
}

std::optional<Error> buildDrive(const URL& folder, const URL& finalDrive, const URL& store, const TypeRegistry& types)
{
    ExampleBuilder drive(folder, store, types, "drive");
    drive.file("Welcome.txt", "This is your drive. What you put here is on all your devices.\n");
    addDesktop(drive, finalDrive);
    addDocuments(drive);
    addProjects(drive);
    addPictures(drive);
    addAlbum(drive, "Documents/Album.lookbook", "Album");
    addOtherScripts(drive);
    addReference(drive);
    drive.folder(".Trash");
    drive.file(".Trash/Old Draft.txt", "Dear association,\n");
    return drive.finish();
}

std::optional<Error> buildLookbook(const URL& root, const URL& store, const TypeRegistry& types)
{
    ExampleBuilder library(root.appending("orvane~Lookbook"), store, types, "lookbook");
    library.folder("Documents");
    addAlbum(library, "Documents/Summer.lookbook", "Summer");
    library.declare({"orvane.Lookbook", root, "Lookbook", "None", {"orvane.lookbook.album"}, {"orvane.Lookbook"}});
    return library.finish();
}

std::optional<Error> buildQuillpad(const URL& root, const URL& store, const TypeRegistry& types)
{
    ExampleBuilder library(root.appending("orvane~Quillpad"), store, types, "quillpad");
    library.folder("Documents");
    library.file("Documents/Ideas.txt", "A bench under the old pear tree.\n");
    library.folder("Documents/Meetings");
    library.file("Documents/Meetings/March.md", "# March\n\nPresent: Mira, Tom, Ayşe\n");
    library.notDownloaded("Documents/Shopping.txt", "Nails, twine, coffee\n");
    library.declare({"orvane.Quillpad",
                     root,
                     "Quillpad",
                     "One",
                     {"orvane.quillpad.document", "public.plain-text"},
                     {"orvane.Quillpad"}});
    return library.finish();
}

std::optional<Error> fileError(const std::error_code& code, const URL& url)
{
    return code ? std::optional(errnoError(code.value(), url)) : std::nullopt;
}

// A loss of power must not leave an example of empty files.
void syncFileSystem(const URL& folder)
{
    const FileDescriptor descriptor(::open(folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor.isOpen())
        ::syncfs(descriptor.get());
}

// As the user's desktop writes it. A file that is there already is the user's own.
std::optional<Error> writeTagColors(const URL& file)
{
    constexpr std::int64_t kVersion = 2;
    constexpr std::pair<const char*, std::int64_t> kTags[] = {
        {"Red", 6},    {"Orange", 7}, {"Yellow", 5},    {"Green", 2}, {"Blue", 4},
        {"Purple", 3}, {"Gray", 1},   {"Important", 7}, {"Work", 4},  {"Home", 2}};
    if (std::filesystem::exists(file.path()))
        return std::nullopt;
    Value::Array tags;
    for (const auto& [name, label] : kTags)
        tags.emplace_back(Value::Dictionary{{"n", name}, {"l", label}});
    const Value::Dictionary dictionary = {{"TrovelTagDictVersion", kVersion}, {"TrovelTags", tags}};
    return writeFileAtomically(file, keyedArchive::archived(Value::Dictionary{{"TrovelTagDict", dictionary}}));
}

} // namespace

URL cloudStoreIn(const URL& home)
{
    return home.appending("cloud");
}

std::optional<Error> makeExampleDrive(const URL& home, const URL& syncedRoot, const TypeRegistry& types)
{
    const auto unfinished = home.appending(".example-drive");
    const auto store = cloudStoreIn(home);
    const auto driveName = containerFolderName(kDefaultContainerIdentifier);
    std::error_code failure;
    std::filesystem::remove_all(unfinished.path(), failure);
    if (!failure)
        std::filesystem::create_directory(unfinished.path(), failure);
    auto error = fileError(failure, unfinished);
    if (!error)
        error = buildDrive(unfinished.appending(driveName), syncedRoot.appending(driveName), store, types);
    if (!error)
        error = buildLookbook(unfinished, store, types);
    if (!error)
        error = buildQuillpad(unfinished, store, types);
    if (!error)
        error = writeTagColors(keyValueFileIn(home));
    if (error)
        return error;
    syncFileSystem(unfinished);
    std::filesystem::rename(unfinished.path(), syncedRoot.path(), failure);
    return fileError(failure, syncedRoot);
}

} // namespace tessel
