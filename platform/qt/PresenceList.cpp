#include "platform/qt/PresenceList.h"

#include <algorithm>
#include <utility>

namespace tessel::qt {

namespace {

bool contains(const PresenceList::Controllers& controllers, const std::shared_ptr<ViewController>& controller)
{
    return std::ranges::find(controllers, controller) != controllers.end();
}

} // namespace

PresenceList::PresenceList(QByteArray role, QObject* parent) : QAbstractListModel(parent), role_(std::move(role))
{
}

Presence* PresenceList::leaving() const
{
    return !presences_.empty() && presences_.back()->phase() == Presence::Leaving ? presences_.back() : nullptr;
}

Presence* PresenceList::top() const
{
    const std::size_t count = presences_.size() - (leaving() ? 1 : 0);
    return count == 0 ? nullptr : presences_[count - 1];
}

PresenceList::Controllers PresenceList::controllers() const
{
    Controllers found;
    for (const auto* presence : presences_)
        if (presence->phase() != Presence::Leaving)
            found.push_back(presence->controller());
    return found;
}

int PresenceList::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(presences_.size());
}

QVariant PresenceList::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid) || role != Qt::UserRole)
        return {};
    return QVariant::fromValue(presences_[static_cast<std::size_t>(index.row())]);
}

QHash<int, QByteArray> PresenceList::roleNames() const
{
    return {{Qt::UserRole, role_}};
}

void PresenceList::show(const Controllers& controllers, bool isAnimated)
{
    const auto before = this->controllers();
    if (controllers == before)
        return;
    auto* const oldTop = top();
    const bool isTopNew = !controllers.empty() && !contains(before, controllers.back());
    const bool leaves = isAnimated && oldTop && !isTopNew && !contains(controllers, oldTop->controller());
    std::vector<Presence*> wanted;
    for (const auto& controller : controllers) {
        auto* const known = find(controller);
        wanted.push_back(known ? known : make(controller));
        if (!known)
            connect(wanted.back(), &Presence::ended, this, [this, made = wanted.back()] { end(made); });
    }
    auto* const entering = isAnimated && isTopNew ? wanted.back() : nullptr;
    if (leaves)
        wanted.push_back(oldTop);
    replace(wanted);
    setPhases(entering, leaves ? oldTop : nullptr, isAnimated);
}

Presence* PresenceList::find(const std::shared_ptr<ViewController>& controller) const
{
    const auto found = std::ranges::find(presences_, controller, &Presence::controller);
    return found == presences_.end() ? nullptr : *found;
}

// Rows at the beginning and at the end that stay are not touched, so that QML keeps its items for them.
void PresenceList::replace(const std::vector<Presence*>& wanted)
{
    const auto before = presences_;
    const auto sameFirst = std::ranges::mismatch(before, wanted).in1 - before.begin();
    const auto most = static_cast<std::ptrdiff_t>(std::min(before.size(), wanted.size())) - sameFirst;
    const auto sameLast = std::min(
        most, std::mismatch(before.rbegin(), before.rend(), wanted.rbegin(), wanted.rend()).first - before.rbegin());
    const auto removed = static_cast<std::ptrdiff_t>(before.size()) - sameFirst - sameLast;
    const auto inserted = static_cast<std::ptrdiff_t>(wanted.size()) - sameFirst - sameLast;
    if (removed > 0) {
        beginRemoveRows({}, static_cast<int>(sameFirst), static_cast<int>(sameFirst + removed - 1));
        presences_.erase(presences_.begin() + sameFirst, presences_.begin() + sameFirst + removed);
        endRemoveRows();
    }
    if (inserted > 0) {
        beginInsertRows({}, static_cast<int>(sameFirst), static_cast<int>(sameFirst + inserted - 1));
        presences_.insert(presences_.begin() + sameFirst, wanted.begin() + sameFirst,
                          wanted.begin() + sameFirst + inserted);
        endInsertRows();
    }
    for (auto* presence : before)
        if (std::ranges::find(wanted, presence) == wanted.end())
            presence->deleteLater(); // QML may be inside one of its operations
}

void PresenceList::setPhases(Presence* entering, Presence* leaving, bool isAnimated)
{
    bool isCovered = false;
    const auto presences = presences_; // whoever hears of a phase may end it
    for (auto next = presences.rbegin(); next != presences.rend(); ++next) {
        auto* const presence = *next;
        if (presence == leaving) {
            presence->setPhase(Presence::Leaving, isAnimated);
            continue;
        }
        if (presence == entering)
            presence->setPhase(Presence::Entering, isAnimated);
        else
            presence->setPhase(isCovered ? Presence::Covered : Presence::Shown);
        isCovered = isCovered || covers(*presence);
    }
}

void PresenceList::end(Presence* presence)
{
    if (std::ranges::find(presences_, presence) == presences_.end())
        return;
    if (presence->phase() == Presence::Entering) {
        presence->setPhase(Presence::Shown);
        return;
    }
    auto remaining = presences_;
    std::erase(remaining, presence);
    replace(remaining);
}

} // namespace tessel::qt
