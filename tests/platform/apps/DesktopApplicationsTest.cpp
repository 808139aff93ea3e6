#include "platform/apps/DocumentRecord.h"
#include "platform/base/Platform.h"
#include "tests/support/DesktopOfTest.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

namespace tessel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DesktopApplicationsTest : public testing::Test {
protected:
    /// "Owner: one two", in the registry's order.
    [[nodiscard]] std::vector<std::string> ranks(std::string_view name) const
    {
        std::vector<std::string> result;
        for (const auto& [rank, applications] :
             DocumentRecord(platform.drive.url(name)).applicationsAvailableForOpening()) {
            result.push_back(rank + ":");
            for (const auto& application : applications)
                result.back() += " " + application->bundleIdentifier;
        }
        return result;
    }
    [[nodiscard]] static std::shared_ptr<const ApplicationRecord> application(std::string_view identifier)
    {
        return platform::installed().apps.application(identifier);
    }

    InstalledPlatform platform;
    const DesktopOfTest desktop{platform.desktop};
};

TEST_F(DesktopApplicationsTest, OrdersOwnersByChoiceThenByName)
{
    EXPECT_THAT(ranks("Plan.txt"), IsEmpty());
    for (const auto* name : {"zed", "alpha", "Beta", "chosen", "added"})
        desktop.editor(name, name == std::string("chosen") ? "" : "text/plain;");
    desktop.editor("pictures", "image/png;");
    desktop.associations("[Default Applications]\ntext/plain=gone.desktop;chosen.desktop;\n"
                         "[Added Associations]\ntext/plain=added.desktop;\n"
                         "[Removed Associations]\ntext/plain=alpha.desktop;\n");
    EXPECT_THAT(ranks("Plan.txt"), ElementsAre("Owner: chosen added Beta zed"));
    EXPECT_THAT(ranks("Plan.TXT"), ElementsAre("Owner: chosen added Beta zed"));
    desktop.entry("zed", "gone %f", "MimeType=text/plain;");
    EXPECT_THAT(ranks("Plan.txt"), ElementsAre("Owner: chosen added Beta"));
}

TEST_F(DesktopApplicationsTest, KeepsApplicationsOfMoreGeneralTypesBehind)
{
    desktop.editor("anything", "application/octet-stream;");
    desktop.editor("images", "image/*;");
    desktop.editor("editor", "text/plain;");
    desktop.editor("archives", "application/zip;");
    EXPECT_THAT(ranks("Table.odt"), ElementsAre("Alternate: anything"));
    EXPECT_THAT(ranks("Cat.png"), ElementsAre("Alternate: anything images"));
    EXPECT_THAT(ranks("Unknown.qqq"), ElementsAre("Alternate: anything"));
    EXPECT_THAT(ranks("Notes.md"), ElementsAre("Owner: editor", "Alternate: anything"));

    desktop.editor("markdown", "TEXT/Markdown;");
    desktop.associations("[Default Applications]\napplication/octet-stream=anything.desktop\n"
                         "text/plain=editor.desktop\n");
    EXPECT_THAT(ranks("Notes.md"), ElementsAre("Owner: markdown", "Default: editor anything"));
    EXPECT_THAT(ranks("Unknown.qqq"), ElementsAre("Owner: anything"));
}

// Each list takes away what is claimed in its own folder and below, never what a list above it adds.
TEST_F(DesktopApplicationsTest, ReadsAssociationListsInTheirOrder)
{
    desktop.editor("one", "text/plain;");
    desktop.editor("two", "text/plain;");
    platform.desktop.file("data/applications/mimeapps.list",
                          "[Default Applications]\ntext/plain=two.desktop\n[Removed Associations]\n"
                          "text/plain=one.desktop\n[Added Associations]\ntext/plain=three.desktop\n");
    desktop.editor("three", "");
    EXPECT_THAT(ranks("Plan.txt"), ElementsAre("Owner: two three"));
    desktop.associations("[Added Associations]\ntext/plain=one.desktop\n[Removed Associations]\n"
                         "text/plain=three.desktop\n");
    EXPECT_THAT(ranks("Plan.txt"), ElementsAre("Owner: two one"));
    desktop.associations("[Default Applications]\ntext/plain=one.desktop\n[Removed Associations]\n"
                         "text/plain=two.desktop;three.desktop\n");
    EXPECT_THAT(ranks("Plan.txt"), ElementsAre("Owner: one two"));
}

TEST_F(DesktopApplicationsTest, OffersEntriesForOtherDesktopsOnlyWhereAListNamesThem)
{
    desktop.editor("one", "text/plain;\nOnlyShowIn=KDE;");
    EXPECT_THAT(ranks("Plan.txt"), IsEmpty());
    desktop.associations("[Default Applications]\ntext/plain=one.desktop\n");
    EXPECT_THAT(ranks("Plan.txt"), ElementsAre("Owner: one"));
}

TEST_F(DesktopApplicationsTest, FindsEntriesInFoldersAndHidesTheirs)
{
    desktop.editor("one", "");
    desktop.entryAt("data/applications/kde/paint.desktop", "Paint", "editor %u", "MimeType=image/png;");
    platform.desktop.link("data/applications/kde/circle", "..");
    platform.desktop.link("data/applications/dangling.desktop", "nowhere");
    platform.desktop.file("data/applications/folder.desktop/inside.txt");
    EXPECT_THAT(ranks("Cat.png"), ElementsAre("Owner: kde-paint"));
    EXPECT_EQ(application("kde-circle-kde-paint"), nullptr);
    EXPECT_EQ(application("one")->description(), "one (one)");
    desktop.entry("one", "editor %f", "Hidden=true");
    EXPECT_EQ(application("one"), nullptr);
}

TEST_F(DesktopApplicationsTest, TellsWhatCanBeRunAndGivenADocument)
{
    const auto state = [this](std::string_view exec, std::string_view keys) {
        desktop.entry("it", exec, keys);
        const auto record = application("it");
        return std::pair(record->isInstalled, record->supportsOpenInPlace);
    };
    desktop.script("bin/editor", "exit 0");
    platform.desktop.file("bin/data.txt");
    EXPECT_EQ(state("editor --file=%f", ""), std::pair(true, true));
    EXPECT_EQ(state("editor", ""), std::pair(true, false));
    EXPECT_EQ(state("editor %f", "TryExec=gone"), std::pair(false, false));
    EXPECT_EQ(state("editor %f", "NoDisplay=true"), std::pair(true, true));
    EXPECT_EQ(state("data.txt %f", ""), std::pair(false, false));
    EXPECT_EQ(state("../bin/editor %f", ""), std::pair(false, false));
    EXPECT_EQ(state("sh -c \"editor '%f'\"", ""), std::pair(false, false));
    EXPECT_EQ(state("editor %f", "Terminal=true"), std::pair(true, false));
    desktop.script("bin/x-terminal-emulator", "exit 0");
    EXPECT_EQ(state("editor %f", "Terminal=true"), std::pair(true, true));
}

TEST_F(DesktopApplicationsTest, PassesOverWhatIsDamaged)
{
    const std::string huge(2 * 1024 * 1024, '#');
    platform.desktop.file("data/applications/huge.desktop", "[Desktop Entry]\nType=Application\nName=Huge\n" + huge);
    platform.desktop.file("data/applications/empty.desktop");
    platform.desktop.file("data/applications/bytes.desktop", std::string_view("\xff\0[\n]\n=\n[=]\n\\", 12));
    platform.desktop.file("data/applications/nameless.desktop", "[Desktop Entry]\nType=Application\nExec=editor %f\n");
    platform.desktop.file("data/applications/link.desktop", "[Desktop Entry]\nType=Link\nName=a\nURL=file:///\n");
    platform.desktop.file("config/mimeapps.list", "text/plain=lost.desktop\n[Default Applications]\n=\ntext/plain\n"
                                                  "text/plain=../../evil;.desktop;editor.desktop\\");
    desktop.editor("editor", "text/plain;;;text/plain;\\");
    EXPECT_THAT(ranks("Plan.txt"), ElementsAre("Owner: editor"));
    for (const auto* identifier : {"huge", "empty", "bytes", "nameless", "link", "", "../editor"})
        EXPECT_EQ(application(identifier), nullptr) << identifier;
}

} // namespace
} // namespace tessel
