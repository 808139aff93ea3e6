#pragma once

#include "platform/documents/PreviewController.h"

#include <memory>
#include <optional>
#include <vector>

namespace tessel {

class BarButtonItem;
class PreviewItemManager;

/// The quick preview of one document, with the buttons to delete and to move it. One for the whole program: each new
/// preview gives it another document. Main thread only.
class GlanciaItemController final : public PreviewController,
                                    public PreviewControllerDataSource,
                                    public PreviewControllerDelegate {
public:
    GlanciaItemController();
    explicit GlanciaItemController(const std::shared_ptr<PreviewItemManager>&);

    [[nodiscard]] std::string className() const override { return "GlanciaItemController"; }

    /// The program's one, made by the first call.
    [[nodiscard]] static std::shared_ptr<GlanciaItemController> defaultController();

    std::weak_ptr<PreviewItemManager> itemManager;
    std::optional<std::vector<URL>> arrayOfDocuments; ///< none without an item

    /// Shows the manager's item in place of what was shown.
    void glanciaNewItem(const std::shared_ptr<PreviewItemManager>&);

    [[nodiscard]] std::size_t numberOfPreviewItemsInPreviewController(const PreviewController&) const override;
    [[nodiscard]] URL previewControllerPreviewItemAtIndex(const PreviewController&, std::size_t index) const override;
    /// Only of PDF documents, both.
    [[nodiscard]] bool previewControllerCanEditItem(const PreviewController&, const URL&) const override;
    [[nodiscard]] bool previewControllerShouldSaveEditedItem(const PreviewController&, const URL&) const override;
    [[nodiscard]] static bool _glPreviewItemIsPDFKind(const URL&);

    void showMoveTarget();
    void showWarningAndDeleteDocument(const std::shared_ptr<BarButtonItem>& sender);

protected:
    void viewWillDisappear(Animated) override;

private:
    void take(const std::shared_ptr<PreviewItemManager>&);
};

} // namespace tessel
