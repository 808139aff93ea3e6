#pragma once

#include <QCache>
#include <QQuickImageProvider>

namespace tessel::qt {

/// The program's own symbols in one colour: "image://symbol/search?14708a" (rrggbb or aarrggbb). A symbol fills the
/// requested size, 24 pixels when none is requested; there is no picture for an unknown name. Main thread only.
class SymbolProvider final : public QQuickImageProvider {
public:
    SymbolProvider();

    QPixmap requestPixmap(const QString& id, QSize* size, const QSize& requestedSize) override;

private:
    QCache<QString, QPixmap> drawn_; ///< By identifier and size; its cost is counted in bytes.
};

} // namespace tessel::qt
