#include "platform/qt/preview/PreviewItem.h"

namespace tessel::qt {

PreviewItem::PreviewItem(QQuickItem* parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents);
}

void PreviewItem::setPreview(DocumentPreview* preview)
{
    if (preview_ == preview)
        return;
    if (preview_)
        preview_->disconnect(this);
    preview_ = preview;
    if (preview)
        connect(preview, &DocumentPreview::changed, this, &PreviewItem::follow);
    follow();
    emit previewChanged();
}

} // namespace tessel::qt
