#include "platform/documents/ListAction.h"

#include "platform/base/Platform.h"
#include "platform/text/TextServices.h"

namespace tessel {

std::string titleOfListAction(ListAction action)
{
    const auto& text = platform::installed().text;
    switch (action) {
    case ListAction::Delete:
        return text.localized("Delete");
    case ListAction::Info:
        return text.localized("Info");
    case ListAction::Rename:
        return text.localized("Rename");
    case ListAction::Share:
        return text.localized("Share");
    case ListAction::Move:
        return text.localized("Move");
    case ListAction::Pop:
        return text.localized("Open");
    case ListAction::More:
        break;
    }
    return "";
}

} // namespace tessel
