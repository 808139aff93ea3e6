#include "tests/stress/Member.h"

#include "app/common/TesselDriveApp_StrataAdditions.h"
#include "files/FileUtils.h"
#include "platform/cloud/CloudService.h"
#include "platform/files/FileCoordinator.h"
#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/cloud/TagAttribute.h"
#include "platform/linux/files/ExtendedAttributes.h"
#include "tests/support/InstalledPlatform.h"

namespace tessel {

Member::Member(const Part& part, const Stage& stage, int ledger)
    : Actor(part, stage, ledger), platform_(stage.startPlatform()),
      coordination_(platform_->services().coordination,
                    [this](const URL& url) { tellIntent(url, FileKind::RegularFile); }),
      files_(platform_->services().files, [this](const URL& url) { tellIntent(url, FileKind::Directory); }),
      scope_(platform_->services()), scopeOfFiles_(servicesWith(files_)),
      scopeOfCoordination_(servicesWith(coordination_))
{
}

void Member::tellIntent(const URL& url, FileKind kind)
{
    const bool isFolder = platform_->services().files.kindOfItem(url.path()) == FileKind::Directory;
    if (isFolder != (kind == FileKind::Directory))
        return;
    pen_.fact({"looks"});
    Words words = {"intends"};
    for (auto& identifier : identifiersBelow(url))
        words.push_back(std::move(identifier));
    pen_.fact(std::move(words));
}

void Member::removeItem()
{
    const auto item = anyItem(chance(85) ? Kind::Document : Kind::Folder);
    if (!item)
        return pass("remove");
    operate({"remove", item->url.path()}, [&] { return outcomeOf(FileUtils::remove(item->url)); });
}

void Member::tagItem()
{
    const auto item = anyItem(Kind::Any);
    if (!item)
        return pass("tag");
    const auto* tag = chance(50) ? "red" : "blue,green";
    operate({"tag", item->url.path()}, [&] {
        std::optional<Error> failure;
        auto error = FileCoordinator().coordinateWriting(item->url, WritingOptions::None, [&](const URL& url) {
            const auto file = FileUtils::exists(url) ? url : placeholderURL(url);
            failure = setExtendedAttribute(file, kTagAttribute, tag);
        });
        return outcomeOf(error ? error : failure);
    });
}

void Member::evictDocument()
{
    const auto item = anyItem(Kind::Document);
    if (!item)
        return pass("evict");
    operate({"evict", item->url.path()},
            [&] { return outcomeOf(platform::installed().cloud.evictDocument(item->url)); });
}

void Member::readDocument()
{
    const auto item = anyItem(Kind::Document);
    if (!item)
        return pass("download");
    operate({"download", item->url.path()}, [&]() -> Words {
        Reading reading;
        const auto error = FileCoordinator().coordinateReading(item->url, ReadingOptions::None,
                                                               [&](const URL& url) { reading = readContent(url); });
        if (reading.isThere && !reading.identifier)
            pen_.fact({"torn", item->url.path()});
        return error || reading.isThere ? outcomeOf(error) : Words{"nothing there"};
    });
}

void Member::identifyDocument()
{
    const auto item = anyItem(Kind::Document);
    if (!item)
        return pass("identify");
    operate({"identify", item->url.path()}, [&]() -> Words {
        const auto before = identifierAt(item->url);
        const auto number = tsd_DocumentID(item->url);
        const auto after = identifierAt(item->url);
        if (!before || before != after || number == 0)
            return {"nothing there"};
        return {"done", std::to_string(number), *before};
    });
}

} // namespace tessel
