// What thumbnails are compared with. "make FOLDER COUNT" makes photographs of 1000 by 700, the same ones each time;
// "scale FOLDER COUNT SIDE" reads the first so many of a folder, scales them on two threads, and tells the seconds.
#include <QDir>
#include <QImage>
#include <QImageReader>

#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <thread>

namespace {

// Soft shapes with grain over them, of which JPEG makes about as much as of a photograph.
QImage photograph(unsigned seed)
{
    std::mt19937 random(seed);
    QImage image(1000, 700, QImage::Format_RGB32);
    const auto phase = static_cast<double>(random() % 628) / 100;
    std::array<int, 1700> waves{};
    for (std::size_t at = 0; at < waves.size(); ++at)
        waves[at] = 110 + static_cast<int>(90 * std::sin(phase + static_cast<double>(at) / 90));
    for (int y = 0; y < image.height(); ++y) {
        auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const auto grain = static_cast<int>(random() % 24);
            const auto wave = [&](int at) { return waves[static_cast<std::size_t>(at)] + grain; };
            row[x] = qRgb(wave(x + y), wave(x), wave(2 * y));
        }
    }
    return image;
}

int make(const QDir& folder, int count)
{
    for (int number = 0; number < count; ++number)
        if (!photograph(static_cast<unsigned>(number))
                 .save(folder.filePath(QString("IMG_%1.jpg").arg(1000 + number)), "jpg", 85))
            return 1;
    return 0;
}

int scale(const QDir& folder, int count, int side)
{
    const auto names = folder.entryList({"*.jpg"}, QDir::Files, QDir::Name).mid(0, count);
    const auto begin = std::chrono::steady_clock::now();
    std::atomic<qsizetype> next = 0;
    std::atomic<int> made = 0;
    const auto work = [&] {
        for (qsizetype index = next++; index < names.size(); index = next++) {
            QImageReader reader(folder.filePath(names[index]));
            reader.setScaledSize(reader.size().scaled(side, side, Qt::KeepAspectRatio));
            made += reader.read().isNull() ? 0 : 1;
        }
    };
    std::thread other(work);
    work();
    other.join();
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    std::printf("seconds %f\npictures %d\n", taken.count(), made.load());
    return 0;
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc < 4)
        return 2;
    const QDir folder(argv[2]);
    return QByteArrayView(argv[1]) == "make" ? make(folder, std::atoi(argv[3]))
                                             : scale(folder, std::atoi(argv[3]), std::atoi(argv[4]));
}
