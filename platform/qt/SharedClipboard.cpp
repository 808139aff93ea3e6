#include "platform/qt/SharedClipboard.h"

#include "platform/ui/Sharing.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QUrl>

namespace tessel::qt {

namespace {

/// What file managers paste as a copy of the file; not all of them take a list of URLs alone.
constexpr const char* kCopiedFiles = "x-special/gnome-copied-files";

void copyFile(const URL& document)
{
    const auto address = QByteArray::fromStdString(document.absoluteString());
    auto* const content = new QMimeData; // the clipboard's
    content->setUrls({QUrl::fromEncoded(address, QUrl::StrictMode)});
    content->setData(kCopiedFiles, "copy\n" + address);
    QGuiApplication::clipboard()->setMimeData(content);
}

} // namespace

void copyToClipboard(Sharing& sharing)
{
    sharing.copyText = [](const std::string& text) {
        QGuiApplication::clipboard()->setText(QString::fromStdString(text));
    };
    sharing.copyDocument = copyFile;
}

} // namespace tessel::qt
