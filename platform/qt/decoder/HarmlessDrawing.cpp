#include "platform/qt/decoder/HarmlessDrawing.h"

#include <QSet>
#include <QStringList>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>
#include <optional>

namespace tessel::qt {

namespace {

constexpr int kMostElements = 20'000;
constexpr int kMostUses = 500; // of a part that was drawn before

bool isReference(const QXmlStreamAttribute& attribute)
{
    return attribute.name() == u"href";
}

// Whether a reference leads to a part of the drawing, or holds a bitmap: a drawing within a drawing may refer to files.
bool staysInside(QStringView reference)
{
    constexpr QStringView kBitmaps[] = {u"iVBORw0KGgo", u"/9j/", u"R0lGOD", u"UklGR"}; // PNG, JPEG, GIF, WebP
    const auto content = reference.mid(reference.indexOf(u',') + 1);
    return reference.startsWith(u'#') ||
           (reference.startsWith(u"data:image/") &&
            std::ranges::any_of(kBitmaps, [&](auto start) { return content.startsWith(start); }));
}

// The identifiers of the parts that are drawn again elsewhere; none when there is too much to draw.
std::optional<QSet<QString>> partsDrawnAgain(const QByteArray& drawing)
{
    QSet<QString> parts;
    int elements = 0;
    int uses = 0;
    QXmlStreamReader reader(drawing);
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        uses += reader.name() == u"use" ? 1 : 0;
        if (++elements > kMostElements || uses > kMostUses)
            return std::nullopt;
        for (const auto& attribute : reader.attributes()) {
            if (isReference(attribute))
                parts.insert(attribute.value().mid(1).toString());
        }
    }
    return reader.hasError() ? std::nullopt : std::optional(parts);
}

class HarmlessCopy {
public:
    HarmlessCopy(const QByteArray& drawing, QSet<QString> partsDrawnAgain)
        : reader_(drawing), writer_(&copy_), partsDrawnAgain_(std::move(partsDrawnAgain))
    {
    }

    QByteArray make()
    {
        while (!reader_.atEnd()) {
            reader_.readNext();
            if (reader_.isStartElement())
                startElement();
            else if (reader_.isEndElement())
                endElement();
            else if (reader_.isCharacters())
                writer_.writeCharacters(reader_.text().toString());
        }
        return copy_;
    }

private:
    void startElement()
    {
        const auto attributes = reader_.attributes();
        const bool isPart = partsDrawnAgain_.contains(attributes.value("id").toString());
        depthInPart_ += depthInPart_ > 0 || isPart ? 1 : 0;
        if (isLeftOut(attributes)) {
            reader_.skipCurrentElement();
            depthInPart_ -= depthInPart_ > 0 ? 1 : 0;
            return;
        }
        writer_.writeStartElement(reader_.qualifiedName().toString());
        for (const auto& declaration : reader_.namespaceDeclarations())
            writeDeclaration(declaration);
        for (const auto& attribute : attributes) {
            if (!isReference(attribute) || staysInside(attribute.value()))
                writer_.writeAttribute(attribute.qualifiedName().toString(), attribute.value().toString());
        }
    }

    [[nodiscard]] bool isLeftOut(const QXmlStreamAttributes& attributes) const
    {
        if (reader_.name() == u"image")
            return std::ranges::none_of(attributes, [](const auto& attribute) {
                return isReference(attribute) && staysInside(attribute.value());
            });
        return reader_.name() == u"use" && depthInPart_ > 0;
    }

    void endElement()
    {
        writer_.writeEndElement();
        depthInPart_ -= depthInPart_ > 0 ? 1 : 0;
    }

    void writeDeclaration(const QXmlStreamNamespaceDeclaration& declaration)
    {
        const auto prefix = declaration.prefix().toString();
        writer_.writeAttribute(prefix.isEmpty() ? "xmlns" : "xmlns:" + prefix, declaration.namespaceUri().toString());
    }

    QXmlStreamReader reader_;
    QByteArray copy_;
    QXmlStreamWriter writer_;
    const QSet<QString> partsDrawnAgain_;
    int depthInPart_ = 0; ///< Elements that are open within a part that is drawn again, itself included.
};

} // namespace

QByteArray harmlessDrawing(const QByteArray& drawing)
{
    const auto parts = partsDrawnAgain(drawing);
    return parts ? HarmlessCopy(drawing, *parts).make() : QByteArray();
}

} // namespace tessel::qt
