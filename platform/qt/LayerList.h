#pragma once

#include "platform/qt/PresenceList.h"

namespace tessel::qt {

class Layer;

/// What is presented over the pages; the role is `layer`. A search is none: it is a part of its list's page.
class LayerList : public PresenceList {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The list of layers is made by the shell.")

public:
    LayerList(bool dark, QObject* parent) : PresenceList("layer", parent), dark_(dark) {}

    /// What the controller and those within it present, bottom to top.
    [[nodiscard]] static Controllers presentedBy(const std::shared_ptr<ViewController>& root);

    /// Follows what is presented, without reading the layers.
    void follow(const std::shared_ptr<ViewController>& root);
    /// Bottom to top, without the one that is leaving.
    [[nodiscard]] std::vector<Layer*> layers() const;
    void setDark(bool);

protected:
    Presence* make(const std::shared_ptr<ViewController>&) override;
    bool covers(const Presence&) const override;

private:
    bool dark_;
};

} // namespace tessel::qt
