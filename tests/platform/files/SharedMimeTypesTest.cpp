#include "platform/linux/files/SharedMimeTypes.h"
#include "tests/support/TemporaryDrive.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

namespace tessel {

namespace {

std::string pathOf(const TemporaryDrive& drive, const char* folder)
{
    return drive.url(folder).path();
}

/// A small database of two folders, the user's before the system's.
class SharedMimeTypesTest : public testing::Test {
protected:
    SharedMimeTypesTest()
    {
        drive.file("system/mime/globs2", "# A comment\n"
                                         "50:application/x-compressed-tar:*.tar.gz\n"
                                         "50:application/gzip:*.gz\n"
                                         "60:application/x-strong:*.strong\n"
                                         "50:application/x-long:*.very.strong\n"
                                         "50:text/x-c++src:*.C:cs\n"
                                         "50:text/x-csrc:*.c:cs\n"
                                         "50:text/x-makefile:makefile\n"
                                         "10:text/x-readme:readme*\n"
                                         "50:text/plain:*.txt\n"
                                         "50:application/x-sharedlib:*.so.[0-9]*\n"
                                         "50:application/x-game:*.lev\n"
                                         "50:application/x-closed:*.closed\n"
                                         "50:application/x-pdf:*.acro\n"
                                         "50:application/x-other:*.shared\n"
                                         "50:font/otf:*.shared\n"
                                         "50:video/x-reel:*.reel\n");
        drive.file("user/mime/globs2", "50:application/x-mine:*.lev\n"
                                       "0:application/x-closed:__NOGLOBS__\n"
                                       "50:application/x-closed:*.own\n");
        drive.file("system/mime/subclasses", "application/x-mine application/x-game\n"
                                             "application/x-game application/zip\n"
                                             "application/x-loop application/x-pool\n"
                                             "application/x-pool application/x-loop\n");
        drive.file("system/mime/aliases", "application/x-pdf application/pdf\n");
        drive.file("system/mime/application/x-game.xml",
                   "<mime-type type=\"application/x-game\">\n  <comment>Level &amp; map</comment>\n"
                   "  <comment xml:lang=\"de\">Spielebene</comment>\n"
                   "  <comment xml:lang=\"de_CH\">Spielebeni</comment>\n</mime-type>\n");
        drive.file("system/mime/application/pdf.xml",
                   "<comment>PDF</comment><comment xml:lang=\"de\">PDF-Dokument</comment>");
        drive.file("system/secret.xml", "<comment>secret</comment>");
    }

    SharedMimeTypes types(const char* locale = "en") const
    {
        return {locale, {pathOf(drive, "user"), pathOf(drive, "system"), pathOf(drive, "missing")}};
    }

    TemporaryDrive drive;
};

} // namespace

TEST_F(SharedMimeTypesTest, FindsTheBestPatternForAName)
{
    const auto registry = types();
    const std::pair<const char*, const char*> cases[] = {
        {"backup.TAR.gz", "public.tar-gzip-archive"}, // The longest suffix.
        {"backup.gz", "public.gzip-archive"},
        {"a.very.strong", "mime:application/x-strong"}, // The weight before the length.
        {"main.C", "public.c-plus-plus-source"},        // The very case, where a pattern asks for it.
        {"main.c", "public.c-source"},
        {"Makefile", "mime:text/x-makefile"},
        {"README", "mime:text/x-readme"},
        {"readme.txt", "public.plain-text"},
        {"libc.so.6", "mime:application/x-sharedlib"},
        {"world.lev", "mime:application/x-mine"}, // The user's folder comes first,
        {"a.closed", "public.data"},              // and can end what others say.
        {"a.own", "mime:application/x-closed"},
        {"form.acro", "com.adobe.pdf"},       // One name per type, aliases included.
        {"a.shared", "public.opentype-font"}, // A declared type before one that nobody here knows.
        {"IMG_0001.JPG", "public.jpeg"},
        {"none", "public.data"},
        {"", "public.data"},
        {"a.", "public.data"},
        {"\xff.png", "public.png"},
    };
    for (const auto& [name, identifier] : cases)
        EXPECT_EQ(registry.identifierForFileName(name), identifier) << name;

    EXPECT_EQ(registry.identifierForExtension("JPEG"), "public.jpeg");
    EXPECT_EQ(registry.identifierForExtension("lev"), "mime:application/x-mine");
    EXPECT_EQ(registry.identifierForExtension("unheard"), std::nullopt);
    EXPECT_EQ(registry.identifierForExtension(""), std::nullopt);
}

TEST_F(SharedMimeTypesTest, ConformsOverSeveralSteps)
{
    const auto registry = types();
    for (const auto* ancestor :
         {"mime:application/x-game", "public.zip-archive", "public.archive", "public.data", "public.item"})
        EXPECT_TRUE(registry.conforms("mime:application/x-mine", ancestor)) << ancestor;
    EXPECT_TRUE(registry.conforms("public.jpeg", "public.image"));
    EXPECT_TRUE(registry.conforms("mime:video/x-reel", "public.movie"));
    EXPECT_TRUE(registry.conforms("mime:text/x-unknown", "public.text"));
    EXPECT_TRUE(registry.conforms("mime:application/x-pdf", "com.adobe.pdf"));
    EXPECT_TRUE(registry.conforms("orvane.lookbook.album", "public.package"));
    EXPECT_TRUE(registry.conforms("never.heard.of", "never.heard.of"));
    EXPECT_FALSE(registry.conforms("public.image", "public.jpeg"));
    EXPECT_FALSE(registry.conforms("public.folder", "public.data"));
    EXPECT_FALSE(registry.conforms("mime:application/x-loop", "public.image"));
    EXPECT_FALSE(registry.conforms("never.heard.of", "public.data"));
}

TEST_F(SharedMimeTypesTest, DescribesTypesInTheUsersLanguage)
{
    EXPECT_EQ(types().description("mime:application/x-game"), "Level & map");
    EXPECT_EQ(types("de_CH").description("mime:application/x-game"), "Spielebeni");
    EXPECT_EQ(types("de_AT").description("mime:application/x-game"), "Spielebene");
    EXPECT_EQ(types("fr").description("mime:application/x-game"), "Level & map");
    EXPECT_EQ(types().description("com.adobe.pdf"), "PDF document");
    EXPECT_EQ(types("de").description("com.adobe.pdf"), "PDF-Dokument");
    EXPECT_EQ(types().description("public.data"), "Document");
    EXPECT_EQ(types().description("orvane.lookbook.album"), "Lookbook album");
    EXPECT_EQ(types().description("mime:application/x-unknown"), std::nullopt);
    EXPECT_EQ(types().description("mime:application/../../secret"), std::nullopt);
    EXPECT_EQ(types().description("mime:../secret"), std::nullopt);
}

// What is damaged or meant to hurt costs its own lines, not the rest.
TEST_F(SharedMimeTypesTest, SurvivesADamagedDatabase)
{
    drive.file("user/mime/globs2", "50:application/x-huge:*." + std::string(5'000, 'a') +
                                       "\n50:\n:::\nx:y:z\n50:a/b:" + std::string(40, '*') +
                                       "z\n99999999999999999999:a/b:*.b\n50:application/x-fine:*.fine");
    drive.file("user/mime/subclasses", "one\n\n two\n");
    drive.file("user/mime/aliases", std::string(17 << 20, 'a'));
    drive.file("user/mime/application/x-fine.xml", "<comment<comment>no end");
    const auto registry = types();
    EXPECT_EQ(registry.identifierForFileName("a.fine"), "mime:application/x-fine");
    EXPECT_EQ(registry.identifierForFileName("a." + std::string(5'000, 'a')), "public.data");
    EXPECT_EQ(registry.identifierForFileName(std::string(255, 'y') + "z"), "public.data");
    EXPECT_EQ(registry.identifierForFileName("a.b"), "public.data");
    EXPECT_EQ(registry.description("mime:application/x-fine"), std::nullopt);

    const SharedMimeTypes alone("en", {});
    EXPECT_EQ(alone.identifierForFileName("Plan.pdf"), "com.adobe.pdf");
    EXPECT_TRUE(alone.conforms("com.adobe.pdf", "public.composite-content"));
}

TEST_F(SharedMimeTypesTest, KnowsPackagesByTheirNamesAlone)
{
    const SharedMimeTypes registry("en", {});
    for (const auto* name : {"Summer.lookbook", "Notes.QuillPad", "a.b.rtfd", "Clock.app"})
        EXPECT_TRUE(registry.isPackageName(name)) << name;
    for (const auto* name :
         {"", "lookbook", ".lookbook", "Summer.lookbook.old", "Summer.lookbooks", "Summer.", "photo.jpg"})
        EXPECT_FALSE(registry.isPackageName(name)) << name;
}

TEST_F(SharedMimeTypesTest, MayBeAskedByTwoThreadsFirst)
{
    const auto registry = types();
    const auto ask = [&](std::string& answer) {
        answer = registry.identifierForFileName("world.lev") + *registry.description("mime:application/x-game");
    };
    std::string first, second;
    std::thread other(ask, std::ref(first));
    ask(second);
    other.join();
    EXPECT_EQ(first, second);
    EXPECT_EQ(first, "mime:application/x-mineLevel & map");
}

// The desktop's own database and the declared table must name common documents alike.
TEST(SharedMimeTypesOfThisSystem, AgreeWithTheDeclaredTypes)
{
    const SharedMimeTypes registry("en", SharedMimeTypes::userDataFolders());
    if (registry.identifierForFileName("a.blend") == TypeIdentifier::kData)
        GTEST_SKIP() << "no MIME database here";
    EXPECT_EQ(registry.identifierForFileName("backup.tar.gz"), "public.tar-gzip-archive");
    EXPECT_TRUE(registry.conforms(registry.identifierForFileName("clip.ogv"), "public.movie"));
    EXPECT_TRUE(registry.conforms(registry.identifierForFileName("main.rs"), "public.text"));
    EXPECT_TRUE(registry.conforms(registry.identifierForFileName("photo.cr2"), "public.image"));
    EXPECT_EQ(registry.description(registry.identifierForFileName("book.djvu")), "DjVu image");
}

} // namespace tessel
