#pragma once

#include "platform/base/URL.h"
#include "platform/documents/DocumentDecoder.h"
#include "platform/qt/preview/TextRowList.h"

#include <QObject>
#include <QSizeF>
#include <QString>
#include <QtQmlIntegration>

#include <memory>
#include <optional>

namespace tessel {
class PreviewController;
} // namespace tessel

namespace tessel::qt {

/// A preview, for QML: what its controller shows. A controller that has left the screen shows nothing any more; what it
/// showed last stays for as long as the page can be seen.
class DocumentPreview final : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(DocumentPreview)
    QML_UNCREATABLE("Previews are made by the shell.")
    Q_PROPERTY(State state MEMBER state_ NOTIFY changed)
    Q_PROPERTY(Kind kind MEMBER kind_ NOTIFY changed)
    Q_PROPERTY(QString name MEMBER name_ NOTIFY changed)
    Q_PROPERTY(QString detail MEMBER detail_ NOTIFY changed)
    Q_PROPERTY(QString icon MEMBER icon_ NOTIFY changed)
    Q_PROPERTY(QString button MEMBER button_ NOTIFY changed)
    Q_PROPERTY(double fraction MEMBER fraction_ NOTIFY changed)
    Q_PROPERTY(QSizeF size MEMBER size_ NOTIFY changed)
    Q_PROPERTY(int count MEMBER count_ NOTIFY changed)
    Q_PROPERTY(tessel::qt::TextRowList* rows READ rows CONSTANT)
    Q_PROPERTY(QString fixedFont READ fixedFont CONSTANT)

public:
    enum State { Looking, Downloading, Cancelled, Shown, Failed };
    Q_ENUM(State)
    /// What content is shown.
    enum Kind { Nothing, Text, Image, Pages, Audio, Video };
    Q_ENUM(Kind)

    explicit DocumentPreview(const std::shared_ptr<PreviewController>&, QObject* parent = nullptr);

    /// Reads everything again. The shell calls it whenever the screen has changed.
    void sync();

    [[nodiscard]] TextRowList* rows() const { return rows_; }
    [[nodiscard]] const std::optional<URL>& url() const { return url_; }
    [[nodiscard]] Kind kind() const { return kind_; }
    [[nodiscard]] bool isMedia() const { return kind_ == Audio || kind_ == Video; }
    /// Of an image in pixels, of the first page in points.
    [[nodiscard]] const QSizeF& size() const { return size_; }
    /// Of frames or pages.
    [[nodiscard]] int count() const { return count_; }
    /// Another number: the document is to be painted anew.
    [[nodiscard]] std::uint64_t reading() const { return reading_; }
    /// The family of letters of one width.
    [[nodiscard]] QString fixedFont() const;

    Q_INVOKABLE void pressButton();
    /// The controller's place. What is not on screen, or belongs to another document, has none, and is not told.
    [[nodiscard]] Q_INVOKABLE double place() const;
    Q_INVOKABLE void setPlace(double) const;
    /// "Page 3 of 12". @param index from 0
    [[nodiscard]] Q_INVOKABLE QString pageText(int index) const;

    /// A picture of the document could not be painted.
    void pictureHasProblem(int index, ContentProblem);
    /// It could not be played.
    void playerHasProblem(ContentProblem);

signals:
    void changed();

private:
    [[nodiscard]] std::shared_ptr<PreviewController> controllerShowingThis() const;
    void syncContent(const PreviewController&);
    template <typename T>
    void assign(T& property, T value)
    {
        if (property == value)
            return;
        property = std::move(value);
        hasChanged_ = true;
    }

    const std::weak_ptr<PreviewController> controller_;
    TextRowList* const rows_;
    State state_ = Looking;
    Kind kind_ = Nothing;
    QString name_;
    QString detail_;
    QString icon_;
    QString button_;
    double fraction_ = 0;
    QSizeF size_;
    int count_ = 0;
    std::optional<URL> url_;
    std::uint64_t reading_ = 0;
    bool hasChanged_ = false;
};

} // namespace tessel::qt
