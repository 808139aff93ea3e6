#include "app/common/TesselDriveApp_StrataAdditions.h"
#include "platform/linux/cloud/DocumentMark.h"
#include "platform/linux/files/ExtendedAttributes.h"
#include "tests/support/FailingCalls.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>

namespace tessel {
namespace {

namespace fs = std::filesystem;
using testing::AnyOf;

struct Change {
    const char* name;
    /// Does something to a document that has an identifier. @param free where nothing is or was. @returns where it is
    /// now
    URL (*make)(const URL& document, const URL& free);
    bool keepsIdentifier = true;
};

URL copyWithMark(const URL& from, const URL& to)
{
    fs::copy_file(from.path(), to.path(), fs::copy_options::overwrite_existing);
    const auto mark = extendedAttribute(from, kDocumentAttribute);
    EXPECT_EQ(setExtendedAttribute(to, kDocumentAttribute, mark->value_or("")), std::nullopt);
    return to;
}

URL made(const URL& url)
{
    std::ofstream(url.path()) << "new";
    return url;
}

const Change kChanges[] = {
    {"None", [](const URL& document, const URL&) { return document; }},
    {"New", [](const URL&, const URL& free) { return made(free); }, false},
    {"Renamed",
     [](const URL& document, const URL& free) {
         fs::rename(document.path(), free.path());
         return free;
     }},
    {"SavedByReplacing",
     [](const URL& document, const URL& free) {
         fs::rename(made(free).path(), document.path());
         return document;
     }},
    {"MovedThroughAnotherFileSystem",
     [](const URL& document, const URL& free) {
         copyWithMark(document, free);
         fs::remove(document.path());
         return free;
     }},
    {"Copied", [](const URL& document, const URL& free) { return copyWithMark(document, free); }, false},
};

class FailingIdentifiersTest : public testing::TestWithParam<Change> {
protected:
    const InstalledPlatform platform{std::initializer_list<InstalledPlatform::Library>{}};
};

// Whichever call fails while a document is asked for its identifier: it tells none, or the one that it keeps, and never
// another document's.
TEST_P(FailingIdentifiersTest, AreGivenOnceOrNotYet)
{
    if (!canMakeCallsFail())
        GTEST_SKIP() << "no system call filters here";
    std::set<std::int64_t> given;
    for (const int errorNumber : {EIO, ENOSPC, EDQUOT, EACCES, EXDEV, EINTR}) {
        bool wasReached = true;
        for (int n = 1; wasReached && !HasFailure(); ++n) {
            for (const auto& entry : fs::directory_iterator(platform.drive.url("orvane~Quillbox").path()))
                fs::remove(entry.path());
            const auto document = platform.drive.file("orvane~Quillbox/" + std::to_string(given.size()));
            const auto before = tsd_DocumentID(document);
            const auto now = GetParam().make(
                document, document.deletingLastPathComponent().appending("New " + std::to_string(before)));
            std::int64_t told = 0;
            wasReached = runWithFailingCall(n, errorNumber, [&] { told = tsd_DocumentID(now); });
            const auto kept = tsd_DocumentID(now);
            const auto where = "call " + std::to_string(n) + ", " + std::strerror(errorNumber);
            EXPECT_THAT(told, AnyOf(0, kept)) << where;
            EXPECT_EQ(kept == before, GetParam().keepsIdentifier) << where;
            EXPECT_EQ(tsd_URLFromDocumentID(std::to_string(kept)), now) << where;
            EXPECT_TRUE(given.insert(before).second) << where;
            EXPECT_TRUE(kept == before || given.insert(kept).second) << where;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, FailingIdentifiersTest, testing::ValuesIn(kChanges),
                         [](const auto& change) { return std::string(change.param.name); });

} // namespace
} // namespace tessel
