#include "bench/window/Pictures.h"

#include <QQuickItem>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>

namespace tessel {

namespace {

constexpr double kStep = 120; ///< points a frame

bool isInside(const QQuickItem& row, const QQuickItem& list)
{
    const auto top = row.mapToItem(&list, QPointF()).y();
    return top + row.height() > 0 && top < list.height();
}

int startedPrograms()
{
    int count = 0;
    for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream children(thread.path() / "children");
        for (int child = 0; children >> child;)
            ++count;
    }
    return count;
}

} // namespace

void Pictures::painted(double since)
{
    if (isScrolling_)
        return scroll(since);
    const int pictures = shownPictures();
    if (pictures == 0)
        return;
    tellPictures(pictures);
    isScrolling_ = scrolls_;
    if (isScrolling_)
        return scroll(-1);
    end();
}

/// @returns 0 as long as one is missing
int Pictures::shownPictures() const
{
    const auto* const shown = isShown() ? list() : nullptr;
    if (!shown)
        return 0;
    int count = 0;
    for (auto* row : shown->property("contentItem").value<QQuickItem*>()->childItems()) {
        if (row->objectName() != "row" || !row->isVisible() || !isInside(*row, *shown))
            continue;
        const auto* const thumbnail = find(row, "thumbnail");
        if (!thumbnail || !thumbnail->property("ready").toBool())
            return 0;
        ++count;
    }
    return count;
}

void Pictures::tellPictures(int pictures)
{
    const std::chrono::duration<double> now = std::chrono::steady_clock::now().time_since_epoch();
    tell("painted", now.count());
    tell("pictures", pictures);
    tell("programs", startedPrograms());
}

/// @param since negative for the frame after which this begins
void Pictures::scroll(double since)
{
    if (since >= 0)
        frames_.push_back(since);
    auto* const moved = list();
    const auto y = moved->property("contentY").toDouble() + kStep;
    if (y + moved->height() < moved->property("contentHeight").toDouble()) {
        moved->setProperty("contentY", y);
        return;
    }
    std::sort(frames_.begin(), frames_.end());
    tell("frames", static_cast<double>(frames_.size()));
    tell("frame_p95", frames_[static_cast<std::size_t>(0.95 * static_cast<double>(frames_.size()))]);
    end();
}

} // namespace tessel
