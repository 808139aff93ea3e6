#pragma once

#include "platform/qt/preview/DocumentPreview.h"

#include <QPointer>
#include <QQuickItem>

namespace tessel::qt {

/// Shows something of a preview, and follows it.
class PreviewItem : public QQuickItem {
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(tessel::qt::DocumentPreview* preview READ preview WRITE setPreview NOTIFY previewChanged)

public:
    [[nodiscard]] DocumentPreview* preview() const { return preview_; }
    void setPreview(DocumentPreview*);

signals:
    void previewChanged();

protected:
    explicit PreviewItem(QQuickItem* parent);

    /// The preview is another one, or shows something else.
    virtual void follow() = 0;

private:
    QPointer<DocumentPreview> preview_;
};

} // namespace tessel::qt
