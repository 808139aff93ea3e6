#include "platform/qt/Shell.h"

#include "platform/base/Platform.h"
#include "platform/text/TextServices.h"

namespace tessel::qt {

QString Shell::applicationTitle() const
{
    return text("Tessel Drive");
}

QString Shell::text(const QString& key) const
{
    return QString::fromStdString(platform::installed().text.localized(key.toStdString()));
}

} // namespace tessel::qt
