#pragma once

#include <QGenericPlugin>

namespace tessel {

/// Lets Qt load the driver into a program that knows nothing of it.
class DriverPlugin : public QGenericPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "driver.json")

public:
    QObject* create(const QString& name, const QString& settings) override;
};

} // namespace tessel
