#include "platform/documents/PreviewController.h"
#include "platform/qt/preview/DocumentPlayer.h"
#include "tests/platform/qt/SceneFixture.h"
#include "tests/support/Media.h"

#include <QQuickWindow>

#include <cmath>

namespace tessel::qt {
namespace {

/// The page of sound and films, with the program that plays them.
class PreviewMediaTest : public SceneFixture, public PreviewControllerDataSource {
protected:
    void SetUp() override
    {
        if (std::string_view(TESSELDRIVE_PLAYER).empty())
            GTEST_SKIP() << "built without Qt Multimedia";
    }
    [[nodiscard]] std::size_t numberOfPreviewItemsInPreviewController(const PreviewController&) const override
    {
        return 1;
    }
    [[nodiscard]] URL previewControllerPreviewItemAtIndex(const PreviewController&, std::size_t) const override
    {
        return *document;
    }
    void openPreview(const URL& url)
    {
        document = url;
        preview->dataSource = this;
        preview->reloadData();
        push(preview, Animated::No);
        scene.emplace().open(shell);
        EXPECT_TRUE(QTest::qWaitForWindowExposed(scene->window()));
    }
    [[nodiscard]] DocumentPlayer* player() const { return qobject_cast<DocumentPlayer*>(item("player")); }
    bool isReady()
    {
        return becomes([&] { return player() && player()->isReady(); });
    }
    [[nodiscard]] QString text(const QString& name) const { return item(name)->property("text").toString(); }

    std::optional<URL> document;
    std::shared_ptr<PreviewController> preview = std::make_shared<PreviewController>();
};

TEST_F(PreviewMediaTest, AFilmIsSeenPlayedPausedAndMovedByHand)
{
    openPreview(platform.drive.file("Film.avi", media::film(100, 160, 120)));
    ASSERT_TRUE(isReady());
    EXPECT_EQ(text("elapsed"), "0:00");
    EXPECT_EQ(text("remaining"), "0:10");
    const auto colour = [&] {
        return scene->window()->grabWindow().pixelColor(middleOf(player()) * scene->window()->devicePixelRatio());
    };
    EXPECT_TRUE(becomes([&] { return std::abs(colour().red() - 0x80) < 8; })) << "its first picture";

    tap(item("playButton"));
    EXPECT_TRUE(player()->isPlaying());
    EXPECT_TRUE(becomes([&] { return text("elapsed") == "0:01"; }));
    EXPECT_EQ(text("remaining"), "0:09");
    key(Qt::Key_Space);
    EXPECT_FALSE(player()->isPlaying());

    tap(item("timeSlider"));
    EXPECT_NEAR(player()->position(), 5, 0.5);
    EXPECT_TRUE(becomes([&] { return colour().blue() >= 45; })) << "the picture of that time";
    key(Qt::Key_Home);
    EXPECT_EQ(player()->position(), 0);
}

TEST_F(PreviewMediaTest, SoundKeepsItsPlaceWhenItIsReadAnew)
{
    openPreview(platform.drive.file("Tone.wav", media::tone(20)));
    ASSERT_TRUE(isReady());
    EXPECT_FALSE(player()->isPictured());
    player()->seek(10);
    player()->toggle();
    EXPECT_TRUE(becomes([&] { return player()->position() > 10.2; }));
    const auto reading = preview->reading();
    preview->refreshCurrentPreviewItem();
    ASSERT_TRUE(becomes([&] { return preview->reading() != reading && isReady(); }));
    EXPECT_GT(player()->position(), 10);
    EXPECT_LT(player()->position(), 15);
    EXPECT_TRUE(player()->isPlaying());
}

TEST_F(PreviewMediaTest, BeginsPausedWhereTheUserWas)
{
    document = platform.drive.file("Tone.wav", media::tone(20));
    preview->dataSource = this;
    preview->reloadData();
    preview->setPlace(7);
    openPreview(*document);
    ASSERT_TRUE(isReady());
    EXPECT_EQ(text("elapsed"), "0:07");
    EXPECT_FALSE(player()->isPlaying());
    player()->seek(12);
    EXPECT_NEAR(preview->place(), 12, 0.1);
}

TEST_F(PreviewMediaTest, HowLoudItIsIsKeptForTheNextDocument)
{
    openPreview(platform.drive.file("Tone.wav", media::tone(20)));
    ASSERT_TRUE(isReady());
    const auto volume = [this] { return player() ? player()->property("volume").toDouble() : -1; };
    EXPECT_EQ(volume(), 1);
    key(Qt::Key_Down);
    EXPECT_NEAR(volume(), 0.9, 0.001);
    key(Qt::Key_M);
    EXPECT_EQ(volume(), 0);
    document = platform.drive.file("Film.avi", media::film(20, 160, 120));
    preview->reloadData();
    ASSERT_TRUE(becomes([&] { return player() && player()->isReady() && player()->isPictured(); }));
    EXPECT_EQ(volume(), 0);
    key(Qt::Key_M);
    EXPECT_NEAR(volume(), 0.9, 0.001);
    EXPECT_EQ(item("volumeControl") != nullptr, player()->isHeard());
}

TEST_F(PreviewMediaTest, WhatIsDamagedHasAPageThatSaysSo)
{
    openPreview(platform.drive.file("Film.avi", "no film at all"));
    EXPECT_TRUE(becomes([&] { return preview->state() == PreviewState::Failed && item("previewNotice"); }));
    EXPECT_EQ(preview->buttonTitle(), "Try Again");
}

} // namespace
} // namespace tessel::qt
