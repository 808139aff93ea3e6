#pragma once

#include "platform/qt/Presence.h"

#include <QAbstractListModel>

#include <memory>
#include <vector>

namespace tessel::qt {

/// Controllers that lie one over the other, bottom to top, and above them at most one that is leaving: a model with one
/// role. It follows the program's controllers at once; only the last of several changes is animated.
class PresenceList : public QAbstractListModel {
    Q_OBJECT
    QML_ANONYMOUS

public:
    using Controllers = std::vector<std::shared_ptr<ViewController>>;

    /// The one that is on top, or null: not the one that is leaving.
    [[nodiscard]] Presence* top() const;
    /// Without the one that is leaving.
    [[nodiscard]] Controllers controllers() const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex&, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

protected:
    /// @param role the name of the one role
    PresenceList(QByteArray role, QObject* parent);

    /// Shows these controllers and no others. The top one enters when it is new; when it was there before, the one
    /// that was over it leaves.
    void show(const Controllers&, bool isAnimated);
    [[nodiscard]] virtual Presence* make(const std::shared_ptr<ViewController>&) = 0;
    /// Whether a presence hides those beneath it.
    [[nodiscard]] virtual bool covers(const Presence&) const = 0;

    /// The one that is leaving included.
    [[nodiscard]] const std::vector<Presence*>& presences() const { return presences_; }

private:
    [[nodiscard]] Presence* find(const std::shared_ptr<ViewController>&) const;
    [[nodiscard]] Presence* leaving() const;
    void replace(const std::vector<Presence*>&);
    void setPhases(Presence* entering, Presence* leaving, bool isAnimated);
    void end(Presence*);

    const QByteArray role_;
    std::vector<Presence*> presences_;
};

} // namespace tessel::qt
