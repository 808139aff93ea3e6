#include "platform/qt/lists/ListActions.h"

#include "platform/base/Platform.h"
#include "platform/documents/DocumentListController.h"
#include "platform/documents/PeekController.h"
#include "platform/text/TextServices.h"

#include <QString>
#include <QVariantMap>

namespace tessel::qt {

namespace {

QString symbolOf(ListAction action)
{
    switch (action) {
    case ListAction::Delete:
        return QStringLiteral("trash");
    case ListAction::More:
        return QStringLiteral("more");
    case ListAction::Info:
        return QStringLiteral("info");
    case ListAction::Rename:
        return QStringLiteral("rename");
    case ListAction::Share:
        return QStringLiteral("share");
    case ListAction::Move:
        return QStringLiteral("organize");
    case ListAction::Pop:
        return QStringLiteral("open");
    }
    return {};
}

} // namespace

QVariantList actionsOf(const DocumentListController& list)
{
    QVariantList actions;
    for (const auto action : list.actions())
        actions.append(QVariantMap{{"code", static_cast<int>(action)},
                                   {"title", QString::fromStdString(titleOfListAction(action))},
                                   {"symbol", symbolOf(action)},
                                   {"destructive", action == ListAction::Delete}});
    return actions;
}

QVariantList menuOf(const DocumentListController& list)
{
    const auto title = platform::installed().text.localized("Preview");
    const QVariantMap peek{{"code", kPeekCode},
                           {"title", QString::fromStdString(title)},
                           {"symbol", QStringLiteral("preview")},
                           {"destructive", false}};
    return QVariantList{peek} + actionsOf(list);
}

void performEntry(const std::shared_ptr<DocumentListController>& list, int code, const URL& item,
                  const std::shared_ptr<View>& row)
{
    if (code == kPeekCode)
        PeekController::peek(list, item);
    else
        list->performAction(static_cast<ListAction>(code), item, row, {});
}

} // namespace tessel::qt
