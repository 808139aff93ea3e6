#include "tests/stress/Editor.h"

#include "platform/linux/files/RenameWithoutReplacing.h"
#include "tests/stress/SafeSave.h"

#include <unistd.h>

#include <cerrno>

namespace tessel {

namespace {

constexpr const char* kOwner = "editor";

} // namespace

void Editor::recover()
{
    SafeSave::recoverAll(pen_, kOwner, stage_);
}

void Editor::operateOnce()
{
    choose({{15, [this] { createDocument(); }}, {70, [this] { saveDocument(); }}, {15, [this] { readSomething(); }}});
}

// Under a name that nobody else uses: the drive has documents that are not on the device, of which an editor sees
// nothing, and which it would put itself in the place of.
void Editor::createDocument()
{
    const auto identifier = newIdentifier();
    const auto folder = anyFolder();
    const auto document = folder.appending("Note " + identifier + ".txt");
    const auto hidden = folder.appending(SafeSave::prefixOf(kOwner) + identifier + "-new");
    const auto length = anyLength();
    operate({"create", document.path(), identifier}, [&]() -> Words {
        if (writeNewFile(hidden, makeContent(identifier, length)) && renameWithoutReplacing(hidden, document))
            return {"done"};
        const auto failure = "errno " + std::to_string(errno);
        ::unlink(hidden.path().c_str());
        return {failure};
    });
}

void Editor::saveDocument()
{
    const auto item = anyItem(Kind::Document);
    const auto length = anyLength();
    const auto reading = item ? readContent(item->url) : Reading{};
    if (reading.isThere && !reading.identifier)
        pen_.fact({"torn", item->url.path()});
    if (!reading.identifier)
        return pass("save");
    const auto identifier = newIdentifier();
    operate({"save", item->url.path(), identifier, *reading.identifier}, [&]() -> Words {
        return {SafeSave(pen_, kOwner, identifier, *reading.identifier).save(item->url, length, stage_.store())};
    });
}

void Editor::readSomething()
{
    const auto item = anyItem(Kind::Document);
    if (!item)
        return pass("read");
    operate({"read", item->url.path()}, [&]() -> Words {
        const auto reading = readContent(item->url);
        if (reading.isThere && !reading.identifier)
            pen_.fact({"torn", item->url.path()});
        return {reading.isThere ? "done" : "nothing there"};
    });
}

} // namespace tessel
