#include "tests/fuzz/Targets.h"

#include "app/entry/AppDelegate.h"
#include "browser/NavController.h"
#include "files/DRItem.h"
#include "platform/base/KeyedArchive.h"
#include "platform/base/PercentEncoding.h"
#include "platform/base/Platform.h"
#include "platform/base/URLComponents.h"
#include "platform/cloud/CloudService.h"
#include "platform/cloud/OfferManager.h"
#include "platform/cloud/QuotaService.h"
#include "platform/console/CommandWords.h"
#include "platform/files/FileManager.h"
#include "platform/linux/apps/ExecLine.h"
#include "platform/linux/base/KeyFile.h"
#include "platform/linux/cloud/AccountSize.h"
#include "platform/linux/cloud/ContainerDeclaration.h"
#include "platform/linux/cloud/ExternalReference.h"
#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/files/StoredDictionary.h"
#include "platform/linux/instance/RequestText.h"
#include "platform/linux/text/StringTables.h"
#include "platform/log/UnifiedLog.h"
#include "preview/PreviewItemManager.h"
#include "tests/support/InstalledPlatform.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sys/xattr.h>

namespace tessel::fuzz {

namespace {

void require(bool holds, const char* promise)
{
    if (holds)
        return;
    std::fprintf(stderr, "broken promise: %s\n", promise);
    std::abort();
}

/// A file with this content.
class WrittenFile {
public:
    WrittenFile(std::string_view name, std::string_view content) : url_(folder().file(name, content)) {}

    [[nodiscard]] const URL& url() const { return url_; }
    [[nodiscard]] static const TemporaryDrive& folder()
    {
        static const TemporaryDrive drive;
        return drive;
    }

private:
    const URL url_;
};

void readURL(std::string_view input)
{
    const auto components = URLComponents::parse(input);
    require(!components || components->path.size() <= input.size(), "no path is longer than its URL");
    require(percentDecoded(percentEncodedPath(input)) == std::string(input), "what was encoded is decoded");
}

/// The whole program, which opens the URL and shows nothing from outside the drive.
void openURL(std::string_view input)
{
    struct Program {
        Program()
        {
            platform.drive.tree("Work/Plan.txt Work/Notes.txt .Trash/Old.txt");
            platform.drive.link("escape", "/etc");
            application.launch({});
            platform.settle();
        }

        InstalledPlatform platform;
        AppDelegate delegate;
        Application application{delegate, platform.stateStore()};
    };
    static Program program;
    constexpr std::string_view kHere = "@"; // stands for the drive's path
    std::string url(input);
    if (const auto at = url.find(kHere); at != std::string::npos)
        url.replace(at, kHere.size(), program.platform.drive.url().path());
    static_cast<void>(program.application.openURL("tesseldriveapp:" + url));
    const auto navigation = std::dynamic_pointer_cast<NavController>(program.delegate.rootWindow->rootViewController());
    const auto& manager = navigation->itemManager;
    const auto item = manager ? manager->item() : nullptr;
    const auto& cloud = platform::installed().cloud;
    require(!item || (cloud.isInDrive(*item->url()) && !cloud.isInTrash(*item->url())), "only the drive is shown");
}

void readArchive(std::string_view input)
{
    const auto value = keyedArchive::unarchived(input);
    if (!value)
        return;
    const auto again = keyedArchive::unarchived(keyedArchive::archived(*value));
    require(again && keyedArchive::archived(*again) == keyedArchive::archived(*value), "a value is kept as it is");
}

void readRequest(std::string_view input)
{
    const auto request = requestIn(input);
    require(!request || textOf(*requestIn(textOf(*request))) == textOf(*request), "a request is given on as it is");
}

/// Settings, restored state, session and key-value store: a damaged file is set aside, and nothing lost.
void readStoredDictionary(std::string_view input)
{
    static InstalledPlatform platform;
    const WrittenFile file("state.json", input);
    const StoredDictionary stored(file.url(), platform::installed().log);
    const auto content = stored.load();
    require(content || !std::ifstream(file.url().path()).good() || !stored.isReadable(),
            "what is damaged is set aside");
    require(!stored.store({{"key", "value"}}) || !stored.isReadable(), "a new state can be stored");
    for (const auto& entry : std::filesystem::directory_iterator(WrittenFile::folder().url().path()))
        std::filesystem::remove_all(entry.path());
}

void readDesktopEntry(std::string_view input)
{
    const KeyFile file(input);
    for (const auto& [key, value] : file.group("Desktop Entry")) {
        static_cast<void>(KeyFile::list(value));
        if (const auto exec = ExecLine::parse(KeyFile::text(value)))
            for (const auto& word : exec->arguments({URL::file("/a b"), "name", "icon", "/entry", {}}))
                require(word.find('\0') == std::string::npos, "no argument holds a NUL");
    }
}

void readAlias(std::string_view input)
{
    static InstalledPlatform platform;
    const WrittenFile file("alias.desktop", input);
    static_cast<void>(platform::installed().files.resolvingAliasFile(file.url()));
}

void readRecords(std::string_view input)
{
    const WrittenFile placeholder(".tsd-0.cloud", input);
    static_cast<void>(readPlaceholder(placeholder.url()));
    const WrittenFile reference("a.tesselref", input);
    if (const auto found = readExternalReference(reference.url()))
        require(found->documentIdentifier || found->path, "a reference leads somewhere");
}

void readAccountFiles(std::string_view input)
{
    const WrittenFile quota("quota.json", input);
    static_cast<void>(readAccountSize(quota.url()));
    WrittenFile::folder().folder("root/orvane~Odd/Documents");
    const WrittenFile declaration("root/orvane~Odd/.container.json", input);
    require(librariesInFolder(WrittenFile::folder().url("root")).size() == 1, "a library stays one");
}

void readOffers(std::string_view input)
{
    static InstalledPlatform platform{{.identifier = "orvane.Odd", .localizedName = "Odd"}};
    auto& offers = platform::installed().quota.offers();
    platform.drive.file("../offers.json", input);
    static_cast<void>(offers.fetchOfferIfNeeded());
    static_cast<void>(offers.currentOffer());
}

void readTags(std::string_view input)
{
    static InstalledPlatform platform;
    const auto file = platform.drive.file("tagged.txt");
    const std::string value(input.substr(0, 4000));
    if (::setxattr(file.path().c_str(), "user.xdg.tags", value.data(), value.size(), 0) != 0)
        return;
    const auto tags = platform::installed().cloud.tagNames(file);
    require(tags && tags->size() <= 64, "no more than 64 tags");
}

void readWords(std::string_view input)
{
    static_cast<void>(CommandWords::parse(input));
    const StringTable table("en", input);
    static_cast<void>(table.text("Select", 1.5));
}

const std::array kTargets = {
    Target{"url", readURL},
    Target{"open", openURL},
    Target{"archive", readArchive},
    Target{"request", readRequest},
    Target{"stored", readStoredDictionary},
    Target{"entry", readDesktopEntry},
    Target{"alias", readAlias},
    Target{"records", readRecords},
    Target{"account", readAccountFiles},
    Target{"offers", readOffers},
    Target{"tags", readTags},
    Target{"words", readWords},
};

} // namespace

std::span<const Target> targets()
{
    return kTargets;
}

const Target* targetNamed(std::string_view name)
{
    const auto found = std::ranges::find_if(kTargets, [&](const Target& target) { return target.name == name; });
    return found == kTargets.end() ? nullptr : &*found;
}

} // namespace tessel::fuzz
