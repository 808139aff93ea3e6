#include "files/LaunchUtils.h"

#include "files/FileUtils.h"
#include "platform/base/Platform.h"
#include "platform/linux/cloud/Placeholder.h"
#include "tests/support/DesktopOfTest.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace tessel {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kChoosing = "(TSD)[DEBUG] +[LaunchUtils defaultAppForDocument:requireOpenIn:] (*) ";
constexpr const char* kListing = "(TSD)[DEBUG] +[LaunchUtils availableAppsForDoc:] (*) UTI public.plain-text: Found ";

class LaunchUtilsTest : public testing::Test {
protected:
    /// The identifier of the chosen application, or "none"; the log then tells of this choice alone.
    [[nodiscard]] std::string choice(const URL& document) const
    {
        platform.log->clear();
        const auto application = LaunchUtils::defaultAppForDocument(document, RequireOpenIn::Yes);
        return application ? application->bundleIdentifier : "none";
    }
    [[nodiscard]] URL inDrive(const std::string& name) const { return drive.file("orvane~Quillbox/" + name); }
    [[nodiscard]] URL inLibrary(const std::string& name) const { return drive.file("orvane~Pad/Documents/" + name); }

    InstalledPlatform platform{{"orvane.Pad", "Pad", {"gone", "viewer", "pad"}}};
    const DesktopOfTest desktop{platform.desktop};
    const TemporaryDrive& drive = platform.drive;
};

TEST_F(LaunchUtilsTest, TakesTheFirstOwnerThatOpensInPlace)
{
    const auto plan = inDrive("Plan.txt");
    EXPECT_EQ(choice(plan), "none");
    EXPECT_THAT(platform.log->lines(),
                ElementsAre(HasSubstr("isAudioVideoImageFile: Extension txt is public.plain-text which is not."),
                            kChoosing + ("No default app to open " + plan.absoluteString())));

    desktop.editor("second", "text/plain;");
    desktop.editor("anything", "application/octet-stream;");
    desktop.entry("first", "editor", "MimeType=text/plain;");
    EXPECT_EQ(choice(plan), "second");
    const auto folder = platform.desktop.url("data/applications").absoluteString();
    EXPECT_THAT(platform.log->lines(),
                ElementsAre(HasSubstr("isAudioVideoImageFile"),
                            std::string(kListing) + "non-OpenInPlace app first (first)",
                            std::string(kListing) + "*perfect* app: second (second)",
                            std::string(kListing) + "non-Owner 'Alternate' app anything (anything)",
                            kChoosing + ("App for " + plan.absoluteString() +
                                         ": second, second, second, (null), (null), second, editor, " + folder +
                                         ", 1, second.desktop, second (second)")));
    EXPECT_EQ(LaunchUtils::defaultAppNameForDocument(plan, RequireOpenIn::Yes), "second");
}

TEST_F(LaunchUtilsTest, LeavesMediaOfTheDriveToThePreview)
{
    desktop.editor("all", "image/jpeg;video/mp4;audio/mpeg;application/pdf;application/zip;");
    for (const auto* name : {"a.JPG", "a.mp4", "a.mp3", "a.pdf"}) {
        const auto document = inDrive(name);
        EXPECT_EQ(choice(document), "none") << name;
        EXPECT_EQ(platform.log->lines().back(),
                  kChoosing +
                      ("Preferring GL due to file type, over default app to open " + document.absoluteString()));
        EXPECT_EQ(choice(inLibrary(name)), "none") << name;
    }
    EXPECT_EQ(choice(inDrive("a.zip")), "all");
    desktop.entry("viewer", "editor %f");
    EXPECT_EQ(choice(inLibrary("a.pdf")), "all");
}

TEST_F(LaunchUtilsTest, NeverChoosesThisProgramInTheDrive)
{
    desktop.editor(kOwnBundleIdentifier, "text/plain;");
    EXPECT_EQ(choice(inDrive("Plan.txt")), "none");
    EXPECT_EQ(platform.log->lines().back(),
              std::string(kChoosing) + "Ignoring orvane.TesselDrive (orvane.TesselDrive) as default app");
    EXPECT_EQ(LaunchUtils::defaultAppNameForDocument(inDrive("Plan.txt"), RequireOpenIn::Yes), std::nullopt);
    desktop.entry("pad", "editor %f");
    EXPECT_EQ(choice(inLibrary("Plan.txt")), kOwnBundleIdentifier) << "only there";
}

TEST_F(LaunchUtilsTest, GoesByWhereAReferenceIsAndByWhatItLeadsTo)
{
    desktop.editor("editor", "text/plain;image/jpeg;");
    for (const auto* name : {"Cat.jpg", "Plan.txt"})
        drive.file(std::string("orvane~Pad/Documents/") + name);
    const auto reference = [&](const char* name) {
        return drive.file("orvane~Quillbox/a.tesselref",
                          std::string(R"({"path": "orvane~Pad/Documents/)") + name + "\"}");
    };
    EXPECT_EQ(choice(reference("Plan.txt")), "editor");
    EXPECT_EQ(choice(reference("Cat.jpg")), "none");
    EXPECT_THAT(platform.log->lines().back(), AllOf(HasSubstr("Preferring GL due to file type"), EndsWith("Cat.jpg")));
    EXPECT_EQ(choice(reference("Gone.txt")), "none");
}

TEST_F(LaunchUtilsTest, TreatsADocumentThatIsNotOnTheDeviceAlike)
{
    desktop.editor("editor", "text/plain;");
    const auto far = drive.url("orvane~Quillbox/Far.txt");
    ASSERT_EQ(writePlaceholder(far, {"Far.txt", 9, {}, {}, "public.plain-text", "id", {}}), std::nullopt);
    EXPECT_EQ(choice(far), "editor");
    EXPECT_EQ(platform.log->lines().front(), std::string(kChoosing) + "Assuming apps can open a promised document...");
}

TEST_F(LaunchUtilsTest, PrefersTheApplicationsOfALibrary)
{
    const auto note = inLibrary("Note.txt");
    EXPECT_EQ(choice(note), "none");
    EXPECT_THAT(platform.log->lines(),
                ElementsAre(std::string(kChoosing) + "Container Pad: Default app (gone) not installed",
                            std::string(kChoosing) + "Container Pad: Default app (viewer) not installed",
                            std::string(kChoosing) + "Container Pad: Default app (pad) not installed"));

    desktop.editor("pad", "application/zip;");
    desktop.entry("viewer", "editor", "MimeType=text/plain;");
    EXPECT_EQ(choice(note), "none");
    EXPECT_THAT(
        platform.log->lines(),
        ElementsAre(HasSubstr("non-OpenInPlace app viewer"),
                    std::string(kChoosing) + "Container Pad: Default app (gone) not installed",
                    std::string(kChoosing) + "Container Pad: Default app (viewer) doesn't support open in place",
                    std::string(kChoosing) + "Container Pad: Default app (pad) supports open in place",
                    std::string(kChoosing) + "Container Pad: Default app does NOT support/own this document type.",
                    std::string(kChoosing) + "No fallback app, using Glancia"));

    desktop.editor("another", "text/plain;");
    EXPECT_EQ(choice(note), "another");
    EXPECT_EQ(platform.log->lines().back(),
              std::string(kChoosing) + "Falling back to default open-in-place app instead: another (another)");

    desktop.editor("pad", "text/plain;");
    EXPECT_EQ(choice(note), "pad");
    EXPECT_EQ(choice(inDrive("Plan.txt")), "another");
}

TEST_F(LaunchUtilsTest, KnowsWhatLiesInTheDrivesOwnContainer)
{
    desktop.editor("editor", "text/plain;");
    EXPECT_TRUE(LaunchUtils::isUrlInDefaultContainer(inDrive("Plan.txt")));
    EXPECT_FALSE(LaunchUtils::isUrlInDefaultContainer(inLibrary("Plan.txt")));
    EXPECT_EQ(choice(drive.file("../Plan.txt")), "none");
    EXPECT_THAT(platform.log->lines(), IsEmpty());
}

TEST_F(LaunchUtilsTest, OpensTheDocumentItself)
{
    const auto plan = inDrive("Plan.txt");
    const auto answer = platform.desktop.url("answer").path();
    EXPECT_FALSE(LaunchUtils::openInDefaultApp(plan, nullptr, RequireOpenIn::Yes));
    // Ends badly, so that the log tells when it has run.
    desktop.script("bin/editor", "printf '%s' \"$1\" > '" + answer + "'; exit 9");
    desktop.entry("editor", "editor %f", "MimeType=text/plain;");
    platform.log->clear();
    EXPECT_TRUE(LaunchUtils::openInDefaultApp(plan, nullptr, RequireOpenIn::Yes));
    EXPECT_EQ(platform.log->lines().front(),
              "(TSD)[INFO] +[LaunchUtils openInDefaultApp:viewController:requireOpenIn:] (*) Opening document " +
                  plan.absoluteString() + " in default app");
    ASSERT_TRUE(platform.runUntil(
        [&] { return platform.log->lines().back() == "The application editor ended at once with status 9"; }));
    EXPECT_EQ(platform.desktop.read("answer"), plan.path());
}

TEST_F(LaunchUtilsTest, DownloadsADocumentBeforeItIsOpened)
{
    const auto plan = drive.file("orvane~Quillbox/Plan.txt", "content");
    ASSERT_TRUE(FileUtils::evictDocument(plan));
    ASSERT_FALSE(FileUtils::exists(plan));
    desktop.script("bin/editor", "cp \"$1\" '" + platform.desktop.url("answer").path() + "'; exit 9");
    desktop.entry("editor", "editor %f", "MimeType=text/plain;");
    auto& apps = platform::installed().apps;
    EXPECT_TRUE(LaunchUtils::openInDefaultApp(plan, nullptr, RequireOpenIn::Yes));
    EXPECT_TRUE(apps.isAwaitingDocuments());
    ASSERT_TRUE(platform.runUntil(
        [&] { return platform.log->lines().back() == "The application editor ended at once with status 9"; }));
    EXPECT_FALSE(apps.isAwaitingDocuments());
    EXPECT_EQ(platform.desktop.read("answer"), "content");
    EXPECT_EQ(drive.read("orvane~Quillbox/Plan.txt"), "content");

    ASSERT_TRUE(FileUtils::evictDocument(plan));
    std::filesystem::remove_all(drive.url("../cloud").path());
    EXPECT_TRUE(LaunchUtils::openInDefaultApp(plan, nullptr, RequireOpenIn::Yes));
    ASSERT_TRUE(platform.runUntil([&] { return !apps.isAwaitingDocuments(); }));
    EXPECT_THAT(platform.log->lines().back(), HasSubstr("The content of “Plan.txt” is not in the cloud."));
}

} // namespace
} // namespace tessel
