#include "platform/qt/views/QtTextMeasurer.h"

#include "platform/qt/views/Fonts.h"

#include <QFontMetricsF>
#include <QQuickWindow>
#include <QTextLayout>

#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <tuple>

namespace tessel::qt {

namespace {

constexpr std::size_t kMostKept = 1000;
constexpr double kWidest = 100'000; // points; more than layouts of text can count

QTextOption options()
{
    QTextOption options;
    options.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    options.setUseDesignMetrics(QQuickWindow::textRenderType() != QQuickWindow::NativeTextRendering);
    return options;
}

double lineHeight(const QFont& font)
{
    const QFontMetricsF metrics(font);
    return std::ceil(metrics.ascent() + metrics.descent()); // as QTextLine has it
}

/// The width of a last line that is cut: it holds what can be held of its paragraph, and an ellipsis.
double cutWidth(const QString& text, const QTextLine& line, const QFont& font, double width)
{
    const auto rest = text.mid(line.textStart()).section(QChar::LineSeparator, 0, 0) + QChar(0x2026);
    return std::min(width, QFontMetricsF(font).horizontalAdvance(rest));
}

/// Characters of other fonts may make lines higher or lower than a line of the font: there is room for all.
double heightOf(std::size_t lines, double height, double lineHeight)
{
    return std::max(static_cast<double>(lines) * lineHeight, std::ceil(height));
}

Size laidOut(const QString& text, const QFont& font, double width, std::size_t most)
{
    QTextLayout layout(text, font);
    layout.setTextOption(options());
    Size size;
    std::size_t lines = 0;
    layout.beginLayout();
    for (auto line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        size.width = std::max(size.width, line.naturalTextWidth());
        size.height += line.height();
        if (++lines == most) {
            if (line.textStart() + line.textLength() < text.size())
                size.width = std::max(size.width, cutWidth(text, line, font, width));
            break;
        }
    }
    layout.endLayout();
    return {std::ceil(size.width), heightOf(lines, size.height, lineHeight(font))};
}

} // namespace

struct QtTextMeasurer::Cache {
    using Key = std::tuple<std::string, double, bool, double, std::size_t>;

    std::map<Key, Size> sizes;
};

QtTextMeasurer::QtTextMeasurer() : cache_(std::make_unique<Cache>())
{
}

QtTextMeasurer::~QtTextMeasurer() = default;

FontMetrics QtTextMeasurer::metrics(const Font& font) const
{
    const QFontMetricsF metrics(systemFont(font));
    // Of the font that has the letter: fonts of other scripts tell a height that none of their own has.
    const auto capHeight = metrics.tightBoundingRect("H").height();
    return {metrics.ascent(), metrics.descent(), capHeight, lineHeight(systemFont(font))};
}

Size QtTextMeasurer::measure(std::string_view text, const Font& font, double width, std::size_t lines) const
{
    if (text.empty())
        return {};
    width = std::clamp(width, 1.0, kWidest);
    auto& sizes = cache_->sizes;
    if (sizes.size() >= kMostKept)
        sizes.clear();
    const auto [entry, isNew] = sizes.try_emplace({std::string(text), font.size, font.bold, width, lines});
    if (isNew) {
        auto shown = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
        shown.replace('\n', QChar::LineSeparator);
        entry->second = laidOut(shown, systemFont(font), width, lines);
    }
    return entry->second;
}

void QtTextMeasurer::fontChanged()
{
    cache_->sizes.clear();
}

} // namespace tessel::qt
