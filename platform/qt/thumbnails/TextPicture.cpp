#include "platform/qt/thumbnails/TextPicture.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>
#include <QRect>
#include <QStringConverter>
#include <QTextOption>

#include <algorithm>

namespace tessel::qt {

namespace {

constexpr qsizetype kMostLines = 40;
constexpr qsizetype kMostCharacters = 4000; // more than any page holds: laying out takes time for each
constexpr QRgb kPaper = 0xFFFFFFFF;
constexpr QRgb kEdge = 0xFFD3DAE0;
constexpr QRgb kInk = 0xFF3A4550;

// The head may end within a character, so an end that is not complete is no error.
QString decoded(const QByteArray& head)
{
    if (const auto marked = QStringConverter::encodingForData(head))
        return QStringDecoder(*marked)(head);
    QStringDecoder utf8(QStringConverter::Utf8);
    const QString text = utf8(head);
    return utf8.hasError() ? QString::fromLatin1(head) : text;
}

QString firstLines(QString text)
{
    text.truncate(kMostCharacters);
    text.replace("\r\n", "\n");
    text.replace('\t', "    ");
    for (auto& character : text) {
        if (character != '\n' && character.category() == QChar::Other_Control)
            character = ' ';
    }
    return text.section('\n', 0, kMostLines - 1);
}

QFont faceFor(bool isCode, int side)
{
    QFont font(isCode ? "monospace" : "sans-serif");
    font.setStyleHint(isCode ? QFont::Monospace : QFont::SansSerif);
    font.setPixelSize(std::max(5, side / 20));
    return font;
}

// The part of a page within its margins, cut so that no line of text is.
QRect wholeLines(QRect page, int lineHeight)
{
    const int margin = page.height() / 14;
    auto area = page.adjusted(margin, margin, -margin, -margin);
    area.setHeight(area.height() / lineHeight * lineHeight);
    return area;
}

} // namespace

QImage pictureOfText(const QByteArray& head, bool isCode, int side)
{
    const auto text = decoded(head);
    if (text.contains(QChar::Null))
        return {};
    QImage page(side * 3 / 4, side, QImage::Format_RGB32);
    page.fill(kPaper);
    QPainter painter(&page);
    painter.setPen(QColor(kEdge));
    painter.drawRect(page.rect().adjusted(0, 0, -1, -1));
    painter.setPen(QColor(kInk));
    painter.setFont(faceFor(isCode, side));
    const auto area = wholeLines(page.rect(), painter.fontMetrics().lineSpacing());
    painter.setClipRect(area);
    QTextOption option;
    option.setWrapMode(isCode ? QTextOption::NoWrap : QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    painter.drawText(area, firstLines(text), option);
    return page;
}

} // namespace tessel::qt
