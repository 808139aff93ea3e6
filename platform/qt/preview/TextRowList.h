#pragma once

#include "platform/documents/TextContent.h"

#include <QAbstractListModel>
#include <QCache>
#include <QtQmlIntegration>

#include <memory>
#include <set>

namespace tessel::qt {

/// The rows of a text, for QML: a window of them, for a list has no room for more. What is asked for and is not known
/// yet is read, and empty until then. Rows of the window are counted from its base.
class TextRowList final : public QAbstractListModel {
    Q_OBJECT
    QML_NAMED_ELEMENT(TextRowList)
    QML_UNCREATABLE("Texts are shown by previews.")
    Q_PROPERTY(int base READ base NOTIFY windowChanged)
    Q_PROPERTY(int total READ total NOTIFY windowChanged)

public:
    static constexpr int kWindow = 100'000;

    explicit TextRowList(QObject* parent);

    /// Shows another text, or, of the same document, what has become of it: then the rows stay where they are.
    void show(const std::shared_ptr<TextContent>&, bool isSameDocument);
    /// More rows may have been found.
    void follow();
    [[nodiscard]] const std::shared_ptr<TextContent>& text() const { return text_; }

    [[nodiscard]] int base() const { return base_; }
    [[nodiscard]] int total() const { return total_; }

    /// Has the window hold a row of the text, with others around it.
    /// @returns the row, counted from the new base
    Q_INVOKABLE int reach(int row);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex&, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

signals:
    void windowChanged();

private:
    using Blocks = QCache<std::size_t, TextContent::Rows>;

    [[nodiscard]] int roomFor(int total) const { return std::min(kWindow, total - base_); }
    void resize();
    void keep(std::size_t block, const TextContent::Rows&);
    void request(std::size_t block) const;
    void blockWasRead(std::size_t block, const TextContent::Rows&);
    [[nodiscard]] const std::string* find(const Blocks&, std::size_t row) const;

    std::shared_ptr<TextContent> text_;
    int base_ = 0;
    int total_ = 0;
    int found_ = 0; ///< rows of this reading
    int count_ = 0; ///< of the window, as the views know it
    Blocks blocks_;
    Blocks before_; ///< as they were when the document was read the last time
    mutable std::set<std::size_t> requested_;
};

} // namespace tessel::qt
