#include "platform/documents/PreviewController.h"
#include "platform/qt/preview/DocumentPicture.h"
#include "platform/ui/Application.h"
#include "tests/platform/qt/SceneFixture.h"
#include "tests/support/PaintedDocuments.h"

namespace tessel::qt {
namespace {

class PreviewPageTest : public SceneFixture, public PreviewControllerDataSource {
protected:
    [[nodiscard]] std::size_t numberOfPreviewItemsInPreviewController(const PreviewController&) const override
    {
        return 1;
    }
    [[nodiscard]] URL previewControllerPreviewItemAtIndex(const PreviewController&, std::size_t) const override
    {
        return *document;
    }

    /// A document's preview in the window, with the item of this name in it.
    QQuickItem* openPreview(const URL& url, const QString& itemName)
    {
        document = url;
        preview->dataSource = this;
        preview->reloadData();
        push(preview, Animated::No);
        scene.emplace().open(shell);
        EXPECT_TRUE(QTest::qWaitForWindowExposed(scene->window()));
        EXPECT_TRUE(becomes([&] { return item(itemName) != nullptr; }));
        scene->window()->grabWindow();
        return item(itemName);
    }
    /// The row at the top of the list.
    [[nodiscard]] QString topLine(QQuickItem* list) const
    {
        QVariant row;
        QMetaObject::invokeMethod(list, "firstRow", Q_RETURN_ARG(QVariant, row));
        QQuickItem* found = nullptr;
        QMetaObject::invokeMethod(list, "itemAtIndex", Q_RETURN_ARG(QQuickItem*, found), Q_ARG(int, row.toInt()));
        return found ? found->property("text").toString() : "";
    }
    [[nodiscard]] DocumentPicture* picture() const { return qobject_cast<DocumentPicture*>(item("picture")); }
    bool isPainted()
    {
        return becomes([&] { return picture() && picture()->isPainted(); });
    }

    int saves = 0;
    PaintedDocuments decoder{platform.services().mainQueue};
    platform::Scope decoderScope{servicesWith(decoder)};
    std::optional<URL> document;
    std::shared_ptr<PreviewController> preview = std::make_shared<PreviewController>();
};

std::string numberedLines(int count, const std::string& word)
{
    std::string lines;
    for (int line = 0; line < count; ++line)
        lines += word + " " + std::to_string(line) + "\n";
    return lines;
}

TEST_F(PreviewPageTest, ATextIsReadWhereItIsLookedAtAndKeepsItsPlaceWhenItChanges)
{
    const auto url = platform.drive.file("Log.txt", numberedLines(300'000, "line"));
    auto* const list = openPreview(url, "previewText");
    EXPECT_TRUE(becomes([&] { return list->property("total") == 300'000; }));
    EXPECT_EQ(topLine(list), "line 0");
    EXPECT_EQ(list->property("count").toInt(), TextRowList::kWindow);

    QMetaObject::invokeMethod(list, "go", Q_ARG(QVariant, 200'000));
    EXPECT_TRUE(becomes([&] { return topLine(list) == "line 200000"; }));
    platform.drive.file("Log.txt", numberedLines(300'000, "new line"));
    preview->refreshCurrentPreviewItem();
    bool wasEmpty = false;
    EXPECT_TRUE(becomes([&] {
        wasEmpty = wasEmpty || topLine(list).isEmpty();
        return topLine(list) == "new line 200000";
    }));
    EXPECT_FALSE(wasEmpty) << "what was there stays until the new one is read";

    key(Qt::Key_End);
    EXPECT_TRUE(becomes([&] { return list->property("base") == 200'000; }));
    EXPECT_TRUE(becomes([&] { return topLine(list).startsWith("new line 2999"); }));
    key(Qt::Key_Home);
    EXPECT_TRUE(becomes([&] { return topLine(list) == "new line 0"; }));

    platform.drive.file("Log.txt", "short");
    preview->refreshCurrentPreviewItem();
    EXPECT_TRUE(becomes([&] { return list->property("count") == 1 && topLine(list) == "short"; }));
}

TEST_F(PreviewPageTest, ScrollingOnGoesBeyondThePartThatTheListHolds)
{
    auto* const list = openPreview(platform.drive.file("Log.txt", numberedLines(300'000, "line")), "previewText");
    ASSERT_TRUE(becomes([&] { return list->property("total") == 300'000; }));
    QMetaObject::invokeMethod(list, "positionViewAtIndex", Q_ARG(int, 95'000), Q_ARG(int, 0));
    ASSERT_TRUE(becomes([&] { return topLine(list) == "line 95000"; }));
    QMetaObject::invokeMethod(list, "follow");
    EXPECT_EQ(list->property("base"), 45'000);
    EXPECT_TRUE(becomes([&] { return topLine(list) == "line 95000"; }));
}

TEST_F(PreviewPageTest, AnImageFitsAndIsSharpWhereItIsLargerThanThat)
{
    decoder.known["Photo.jpg"] = {ContentKind::Image, {}, {4000, 3000}, 1, 0};
    auto* const view = openPreview(platform.drive.file("Photo.jpg", "photo"), "previewImage");
    ASSERT_TRUE(isPainted());
    EXPECT_EQ(picture()->size(), QSizeF(view->width(), view->width() * 3 / 4));
    ASSERT_EQ(decoder.wishes.size(), 1U) << "painted once, and nothing sharper than that";
    EXPECT_EQ(decoder.wishes[0].width, qRound(view->width()));

    QMetaObject::invokeMethod(view, "zoomTo", Q_ARG(QVariant, 4),
                              Q_ARG(QVariant, QPointF(view->width(), view->height() / 2)));
    ASSERT_TRUE(becomes([&] { return decoder.wishes.size() == 2; }));
    const auto& sharp = decoder.wishes[1];
    ASSERT_TRUE(sharp.part);
    EXPECT_EQ(sharp.width, qRound(view->width() * 4));
    EXPECT_NEAR(sharp.part->width, 0.25, 0.001);
    EXPECT_NEAR(sharp.part->x, 0.75, 0.001) << "the point stays where it is";
    view->setProperty("zoom", 1);
    EXPECT_TRUE(becomes([&] { return picture()->width() == view->width(); }));

    preview->refreshCurrentPreviewItem();
    EXPECT_TRUE(becomes([&] {
        EXPECT_TRUE(picture()->isPainted());
        return !decoder.wishes.back().part && decoder.wishes.size() > 2;
    })) << "painted anew, the old picture in sight until then";
}

TEST_F(PreviewPageTest, FingersAndAWheelMakeAnImageLarger)
{
    decoder.known["Photo.jpg"] = {ContentKind::Image, {}, {4000, 3000}, 1, 0};
    auto* const view = openPreview(platform.drive.file("Photo.jpg", "photo"), "previewImage");
    ASSERT_TRUE(isPainted());
    const auto zoom = [&] { return view->property("zoom").toDouble(); };
    const auto middle = middleOf(picture());
    tap(middle);
    tap(middle);
    EXPECT_TRUE(becomes([&] { return zoom() > 2; })) << "a double tap";
    key(Qt::Key_0);
    EXPECT_TRUE(becomes([&] { return zoom() == 1; }));

    auto* const fingers = QTest::createTouchDevice();
    auto* const window = scene->window();
    QTest::touchEvent(window, fingers)
        .press(0, middle - QPoint(20, 0), window)
        .press(1, middle + QPoint(20, 0), window);
    for (int apart = 30; apart <= 120; apart += 10)
        QTest::touchEvent(window, fingers)
            .move(0, middle - QPoint(apart, 0), window)
            .move(1, middle + QPoint(apart, 0), window);
    QTest::touchEvent(window, fingers)
        .release(0, middle - QPoint(120, 0), window)
        .release(1, middle + QPoint(120, 0), window);
    const auto pinched = zoom();
    EXPECT_GT(pinched, 2);

    QWheelEvent wheel(middle, middle, {}, {0, 240}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(window, &wheel);
    EXPECT_TRUE(becomes([&] { return zoom() > pinched; }));
}

TEST_F(PreviewPageTest, AnImageMovesOnlyWhileItCanBeSeen)
{
    decoder.known["Moving.gif"] = {ContentKind::Image, {}, {100, 100}, 5, 0};
    openPreview(platform.drive.file("Moving.gif", "gif"), "previewImage");
    ASSERT_TRUE(becomes([&] { return decoder.wishes.size() > 6; })) << "and begins again";
    EXPECT_EQ(decoder.wishes[4].index, 4);
    EXPECT_EQ(decoder.wishes[5].index, 0);
    shell.setActive(false);
    ASSERT_TRUE(becomes([&] { return !picture()->property("playing").toBool(); }));
    const auto painted = decoder.wishes.size();
    QTest::qWait(150);
    EXPECT_LE(decoder.wishes.size(), painted + 1);
}

TEST_F(PreviewPageTest, OfManyPagesThoseInSightArePainted)
{
    decoder.known["Book.pdf"] = {ContentKind::Pages, {}, {595, 842}, 10'000, 0};
    auto* const view = openPreview(platform.drive.file("Book.pdf", "%PDF"), "previewPages");
    ASSERT_TRUE(isPainted());
    EXPECT_LT(decoder.wishes.size(), 6U);
    EXPECT_EQ(item("pageLabel")->property("text"), "Page 1 of 10,000");
    key(Qt::Key_End);
    EXPECT_TRUE(becomes([&] { return !decoder.wishes.empty() && decoder.wishes.back().index >= 9'998; }));
    EXPECT_LT(decoder.wishes.size(), 14U);
    EXPECT_LT(items("picture").size(), 8U);

    key(Qt::Key_Home);
    ASSERT_TRUE(becomes([&] { return item("pageLabel")->property("text") == "Page 1 of 10,000"; }));
    tap({200, 300});
    tap({200, 300});
    EXPECT_TRUE(becomes([&] { return view->property("zoom").toDouble() > 2; }));
    EXPECT_TRUE(becomes([&] { return decoder.wishes.back().part && decoder.wishes.back().index == 0; }));
}

TEST_F(PreviewPageTest, BeginsAtThePlaceThatTheControllerKnowsAndTellsWhereTheUserGoes)
{
    decoder.known["Book.pdf"] = {ContentKind::Pages, {}, {595, 842}, 12, 0};
    document = platform.drive.file("Book.pdf", "%PDF");
    preview->dataSource = this;
    preview->reloadData();
    preview->setPlace(6.1);
    const auto saved = platform.services().notifications.observe(kScreenDidChangeNotification, [this] { ++saves; });
    openPreview(*document, "previewPages");
    const auto label = [this] { return item("pageLabel")->property("text"); };
    EXPECT_TRUE(becomes([&] { return label() == "Page 7 of 12"; }));
    EXPECT_NEAR(preview->place(), 6.1, 0.02);

    const auto at = [this] { return item("pageList")->property("contentY").toDouble(); };
    const auto before = at();
    scene->window()->resize(scene->window()->width() + 100, scene->window()->height());
    EXPECT_TRUE(becomes([&] { return at() != before && label() == "Page 7 of 12"; }))
        << "of larger pages the same: " << label().toString().toStdString() << " at " << at() << ", was at " << before;
    EXPECT_NEAR(preview->place(), 6.1, 0.02);

    platform.turn(1);
    saves = 0;
    key(Qt::Key_Home);
    key(Qt::Key_PageDown);
    EXPECT_TRUE(becomes([&] { return preview->place() > 0.5 && preview->place() < 2 && saves > 0; }));
}

TEST_F(PreviewPageTest, ALongTextBeginsAtItsPlaceOnceThatIsFound)
{
    document = platform.drive.file("Log.txt", numberedLines(300'000, "line"));
    preview->dataSource = this;
    preview->reloadData();
    preview->setPlace(250'000.5);
    auto* const list = openPreview(*document, "previewText");
    EXPECT_TRUE(becomes([&] { return topLine(list) == "line 250000"; }));
    EXPECT_NEAR(preview->place(), 250'000.5, 0.1);

    preview->setPlace(1e300); // damaged, or of a text that was longer
    platform.drive.file("Short.txt", numberedLines(500, "line"));
    document = platform.drive.url("Short.txt");
    preview->reloadData();
    EXPECT_EQ(preview->place(), 0) << "another document's";
    preview->setPlace(1e300);
    ASSERT_TRUE(becomes([&] { return item("previewText") && topLine(item("previewText")) == "line 0"; }));
    key(Qt::Key_End);
    EXPECT_TRUE(becomes([&] { return preview->place() > 400 && preview->place() < 500; }));
}

TEST_F(PreviewPageTest, SaysWhatIsWrongAndOffersToTryAgain)
{
    decoder.known["Bad.pdf"] = {ContentKind::Pages, ContentProblem::Damaged, {}, 0, 0};
    openPreview(platform.drive.file("Bad.pdf", "x"), "previewNotice");
    ASSERT_TRUE(becomes([&] { return item("previewButton") != nullptr; }));
    EXPECT_EQ(item("previewDetail")->property("text"), "The document is damaged, or is not what its name says.");
    decoder.known["Bad.pdf"] = {ContentKind::Pages, {}, {595, 842}, 1, 0};
    tap(item("previewButton"));
    EXPECT_TRUE(becomes([&] { return item("previewPages") != nullptr; }));

    decoder.known["Photo.jpg"] = {ContentKind::Image, {}, {4000, 3000}, 1, 0};
    decoder.paintProblem = ContentProblem::TooLarge;
    document = platform.drive.file("Photo.jpg", "photo");
    preview->reloadData();
    ASSERT_TRUE(becomes([&] { return item("previewDetail") != nullptr && item("previewButton") != nullptr; }));
    EXPECT_EQ(item("previewDetail")->property("text"), "The document is too large to be shown here.");
}

} // namespace
} // namespace tessel::qt
