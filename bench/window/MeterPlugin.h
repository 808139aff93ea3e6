#pragma once

#include <QGenericPlugin>

namespace tessel {

/// Has Qt load the meter into a program that knows nothing of it.
class MeterPlugin : public QGenericPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "meter.json")

public:
    QObject* create(const QString& key, const QString& settings) override;
};

} // namespace tessel
