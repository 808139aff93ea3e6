#include "files/FileUtils.h"
#include "platform/files/FileCoordinator.h"
#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/files/NewFile.h"
#include "platform/linux/files/WriteAll.h"
#include "tests/stress/Member.h"
#include "tests/stress/SafeSave.h"

#include <unistd.h>

#include <cerrno>

namespace tessel {

namespace {

constexpr const char* kOwner = "agent";

std::string publishNew(const URL& url, const std::string& bytes, const UnfinishedWork& unfinished)
{
    auto file = NewFile::create(url, url, unfinished);
    if (!file)
        return "error " + std::to_string(file.error().code);
    const bool isWritten = writeAll(file.value().descriptor(), bytes) && ::fsync(file.value().descriptor()) == 0;
    return isWritten && file.value().publish() ? "done" : "errno " + std::to_string(errno);
}

bool isTaken(const URL& url)
{
    return FileUtils::exists(url) || ::access(placeholderURL(url).path().c_str(), F_OK) == 0;
}

} // namespace

void Agent::recover()
{
    SafeSave::recoverAll(pen_, kOwner, stage_);
}

void Agent::operateOnce()
{
    choose({{40, [this] { createDocument(); }},
            {18, [this] { saveDocument(); }},
            {14, [this] { evictDocument(); }},
            {12, [this] { readDocument(); }},
            {6, [this] { tagItem(); }},
            {8, [this] { identifyDocument(); }},
            {2, [this] { removeItem(); }}});
}

void Agent::createDocument()
{
    const auto document = anyFolder(number(Stage::kContainers)).appending(anyDocumentName());
    const auto identifier = newIdentifier();
    const auto length = anyLength();
    operate({"create in turn", document.path(), identifier}, [&]() -> Words {
        std::string outcome = "taken";
        const auto error = FileCoordinator().coordinateWriting(document, WritingOptions::None, [&](const URL& url) {
            if (!isTaken(url))
                outcome = publishNew(url, makeContent(identifier, length), unfinished_);
        });
        return error ? outcomeOf(error) : Words{outcome};
    });
}

// Based on what it finds when its turn has come, so that it knows what it replaces.
void Agent::saveDocument()
{
    const auto item = anyItem(Kind::Document);
    const auto length = anyLength();
    const auto before = item && !item->isInCloudOnly ? identifierAt(item->url) : std::nullopt;
    if (!before)
        return pass("save");
    const auto identifier = newIdentifier();
    operate({"save in turn", item->url.path(), identifier, *before}, [&]() -> Words {
        std::string outcome = "changed";
        const auto error = FileCoordinator().coordinateWriting(item->url, WritingOptions::None, [&](const URL& url) {
            if (readContent(url).identifier == before)
                outcome = SafeSave(pen_, kOwner, identifier, *before).save(url, length, stage_.store());
        });
        return error ? outcomeOf(error) : Words{outcome};
    });
}

} // namespace tessel
