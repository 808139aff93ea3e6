#include "tests/platform/qt/SceneFixture.h"

#include <gmock/gmock.h>

#include <QDropEvent>
#include <QMimeData>

namespace tessel::qt {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DragAndDropTest : public SceneFixture {
protected:
    DragAndDropTest() { platform.drive.tree("Work/ Closed/ Plan.txt"); }

    /// Another program drags files over a point and lets go of them. @returns whether they were taken
    [[nodiscard]] bool drop(const QList<QUrl>& urls, QPoint point, Qt::DropActions actions) const
    {
        QMimeData content;
        content.setUrls(urls);
        QDragEnterEvent enter(point, actions, &content, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(scene->window(), &enter);
        QDragMoveEvent move(point, actions, &content, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(scene->window(), &move);
        QDropEvent event(point, actions, &content, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(scene->window(), &event);
        return event.isAccepted();
    }
};

TEST_F(DragAndDropTest, FilesOfOtherProgramsGoWhereTheyAreDropped)
{
    openDrive();
    const QList<QUrl> files = {QUrl::fromEncoded("file:///tmp/a%20b%FF.txt"), QUrl("https://example.org/")};
    const auto beside = QPoint(100, 500);
    EXPECT_TRUE(drop(files, middleOf(called("Work")), Qt::MoveAction | Qt::CopyAction));
    EXPECT_TRUE(drop(files, middleOf(called("Plan.txt")), Qt::MoveAction)) << "the list's own folder takes them";
    EXPECT_TRUE(drop(files, beside, Qt::MoveAction));
    EXPECT_THAT(told->done, ElementsAre("moved /tmp/a b\xFF.txt to Work", "moved /tmp/a b\xFF.txt to drive",
                                        "moved /tmp/a b\xFF.txt to drive"));
    told->done.clear();
    EXPECT_FALSE(drop(files, beside, Qt::CopyAction)) << "nothing is taken from who does not give it away";
    EXPECT_FALSE(drop({QUrl("https://example.org/")}, beside, Qt::MoveAction));
    EXPECT_THAT(told->done, IsEmpty());
}

// Without a screen nothing can be dragged out of a window: what would be is asked for.
TEST_F(DragAndDropTest, ARowIsDraggedWithAllThatAreSelected)
{
    const auto list = openDrive();
    QTest::mouseClick(scene->window(), Qt::LeftButton, {}, called("Plan.txt")->mapToScene({34, 30}).toPoint());
    EXPECT_THAT(told->done, ElementsAre("item Plan.txt")) << "the picture is still a part of the row";

    const FolderList rows(list);
    const auto address = [&](const char* name) { return platform.drive.url(name).absoluteString() + "\r\n"; };
    const auto dragged = [&](int row) { return rows.dragged(row).value("text/uri-list").toString().toStdString(); };
    EXPECT_EQ(dragged(1), address("Plan.txt"));
    list->setEditing(true, Animated::No);
    list->setSelectedItemURLs({platform.drive.url("Plan.txt"), platform.drive.url("Work")});
    EXPECT_EQ(dragged(1), address("Plan.txt") + address("Work"));
    EXPECT_EQ(dragged(0), address("Closed"));
    EXPECT_TRUE(rows.dragged(3).isEmpty());
}

} // namespace
} // namespace tessel::qt
