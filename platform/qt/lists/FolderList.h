#pragma once

#include "platform/documents/DocumentListController.h"
#include "platform/qt/lists/RowListModel.h"
#include "platform/qt/lists/SearchList.h"

#include <QList>
#include <QUrl>
#include <QVariantList>
#include <QVariantMap>

#include <memory>
#include <optional>
#include <vector>

namespace tessel::qt {

/// A folder's list, for QML. It holds its controller weakly and follows it as long as that exists: afterwards its rows
/// are empty and nothing can be done with them. Rows are meant by the index that the views know.
class FolderList final : public RowListModel {
    Q_OBJECT
    QML_NAMED_ELEMENT(FolderList)
    QML_UNCREATABLE("Lists are made by the shell.")
    Q_PROPERTY(State state READ state NOTIFY stateChanged)
    Q_PROPERTY(QString failureText READ failureText NOTIFY stateChanged)
    Q_PROPERTY(bool editing READ editing NOTIFY editingChanged)
    Q_PROPERTY(int firstSelected READ firstSelected NOTIFY selectionChanged)
    Q_PROPERTY(bool thumbnails READ thumbnails WRITE setThumbnails NOTIFY thumbnailsChanged)
    Q_PROPERTY(bool showsSearch READ showsSearch CONSTANT)
    Q_PROPERTY(bool searching READ searching NOTIFY searchingChanged)
    Q_PROPERTY(QString searchText READ searchText NOTIFY searchingChanged)
    Q_PROPERTY(bool searchFocused READ searchFocused NOTIFY searchFocusedChanged)
    Q_PROPERTY(tessel::qt::SearchList* results READ results NOTIFY searchingChanged)

public:
    enum State { Loading, Complete, Failed };
    Q_ENUM(State)

    explicit FolderList(const std::shared_ptr<DocumentListController>&, QObject* parent = nullptr);
    ~FolderList() override;

    /// Reads again what the controller does not tell of: editing, how lists are shown, the search. The shell calls it
    /// whenever the screen has changed.
    void sync();

    [[nodiscard]] State state() const { return state_; }
    [[nodiscard]] QString failureText() const { return failureText_; }
    [[nodiscard]] bool editing() const { return editing_; }
    /// The first row that is selected; -1 without one.
    [[nodiscard]] int firstSelected() const;
    /// Whether lists are shown as a grid of thumbnails; one choice for all lists.
    [[nodiscard]] bool thumbnails() const { return thumbnails_; }
    void setThumbnails(bool);
    [[nodiscard]] bool showsSearch() const;
    [[nodiscard]] bool searching() const { return results_ != nullptr; }
    /// What is searched for, as it was typed.
    [[nodiscard]] QString searchText() const { return searchText_; }
    /// Whether the program wants the search field to have the keyboard.
    [[nodiscard]] bool searchFocused() const { return searchFocused_; }
    /// Null while nothing is searched for.
    [[nodiscard]] SearchList* results() const { return results_; }

    /// Opens the row's item, or, while editing, selects or deselects it.
    Q_INVOKABLE void press(int row);
    /// Selects or deselects a row; nothing outside editing.
    Q_INVOKABLE void toggle(int row);
    /// Select all, or none; nothing outside editing.
    Q_INVOKABLE void selectAll();
    Q_INVOKABLE void clearSelection();

    /// Maps of `code`, `title`, `symbol` and `destructive`, in the order of a menu.
    [[nodiscard]] Q_INVOKABLE QVariantList actions() const;
    /// The same for the menu of one item: with its peek.
    [[nodiscard]] Q_INVOKABLE QVariantList menu() const;
    Q_INVOKABLE void perform(int row, int code);

    /// What is dragged with a row, by type; empty when the row stays.
    [[nodiscard]] Q_INVOKABLE QVariantMap dragged(int row) const;
    /// Whether what is dragged may be dropped on a row; on none: -1.
    [[nodiscard]] Q_INVOKABLE bool takes(const QList<QUrl>&, int row) const;
    Q_INVOKABLE void take(const QList<QUrl>&, int row);

    /// The rows that can be seen, for which details are fetched; none while the list is covered.
    Q_INVOKABLE void setVisibleRange(int first, int count);
    /// Whether other pages hide this list wholly. What was below the folder is looked at again when it is uncovered.
    Q_INVOKABLE void setCovered(bool);

    /// The row with which a complete list is to begin when it is seen for the first time; else 0.
    Q_INVOKABLE int takeStartRow();

    /// The frames of a scroll test, in milliseconds: told on standard output, and the program ends.
    Q_INVOKABLE void endScrollTest(const QVariantList& milliseconds) const;

    Q_INVOKABLE void retry();
    /// The search field has the keyboard, or has it no more.
    Q_INVOKABLE void searchFieldFocused(bool);
    Q_INVOKABLE void search(const QString& text);
    Q_INVOKABLE void endSearch();

    /// The next row from `from` on, from the end on to the beginning, whose title starts with `prefix`, without regard
    /// to case and accents; -1 when there is none. Takes a few milliseconds at most: of a very long list it may answer
    /// the first such row of the list, or miss one that does not lie where its title is in the order.
    [[nodiscard]] Q_INVOKABLE int find(const QString& prefix, int from) const;
    [[nodiscard]] Q_INVOKABLE QString accessibleName(int row) const { return this->row(row).accessibleName; }

signals:
    void stateChanged();
    void editingChanged();
    void selectionChanged();
    void thumbnailsChanged();
    void searchingChanged();
    void searchFocusedChanged();
    /// The program wants to know how the list scrolls: so many frames, by so many points each.
    void scrollTestBegan(int frames, int delta);

protected:
    [[nodiscard]] std::size_t rowsNow() const override;
    [[nodiscard]] RowValue rowNow(std::size_t index) const override;

private:
    struct Listener;

    void follow(const RowChanges&);
    void syncState();
    void syncSearch();
    void tellVisibleRows();
    void beginScrollTest(const ScrollTest&);
    [[nodiscard]] std::optional<tessel::URL> folderForDrop(const std::vector<tessel::URL>&, int row) const;

    std::weak_ptr<DocumentListController> controller_;
    State state_ = Loading;
    QString failureText_;
    bool editing_ = false;
    bool thumbnails_ = false;
    bool covered_ = false;
    bool wasLookedAt_ = false; ///< the controller may be asked for its rows
    std::size_t firstVisible_ = 0;
    std::size_t visibleCount_ = 0;
    bool toldVisibleRows_ = false; ///< the controller thinks that some are seen
    bool searchFocused_ = false;
    QString searchText_;
    SearchList* results_ = nullptr;
    std::string scrollTest_; ///< the name of the one that runs
};

} // namespace tessel::qt
