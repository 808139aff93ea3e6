#pragma once

#include "platform/cloud/StorageOffer.h"
#include "platform/ui/Label.h"
#include "platform/ui/ViewController.h"

#include <memory>

namespace tessel {

/// The page of an offer of more storage: what is offered, and a button that ends it.
class UpgradeViewController final : public ViewController {
public:
    explicit UpgradeViewController(StorageOffer);

    [[nodiscard]] std::string className() const override { return "UpgradeViewController"; }

    [[nodiscard]] const StorageOffer& offer() const { return offer_; }

protected:
    [[nodiscard]] std::shared_ptr<View> loadView() override;
    void viewDidLoad() override;
    void viewWillLayoutSubviews() override;

private:
    const StorageOffer offer_;
    const std::shared_ptr<Label> title_ = std::make_shared<Label>();
    const std::shared_ptr<Label> message_ = std::make_shared<Label>();
};

} // namespace tessel
