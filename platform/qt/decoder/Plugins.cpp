#include "platform/qt/decoder/Plugins.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QLibraryInfo>

namespace tessel::qt {

void findCommonPluginsOnly()
{
    const auto common = QFileInfo(QFileInfo("/proc/self/exe").symLinkTarget()).path() + "/decoder-plugins";
    if (QFileInfo::exists(common + "/imageformats"))
        QCoreApplication::setLibraryPaths({common});
}

void findAllPlugins()
{
    const auto all = QLibraryInfo::path(QLibraryInfo::PluginsPath);
    if (!QCoreApplication::libraryPaths().contains(all))
        QCoreApplication::setLibraryPaths({all});
}

void needFonts()
{
    findAllPlugins();
    static int count = 1;
    static char name[] = "tesseldrive-decoder";
    static char* names[] = {name, nullptr};
    static const QGuiApplication application(count, names);
}

} // namespace tessel::qt
