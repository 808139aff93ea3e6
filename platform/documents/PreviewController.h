#pragma once

#include "platform/base/URL.h"
#include "platform/documents/DocumentDecoder.h"
#include "platform/documents/DocumentReader.h"
#include "platform/run/MainQueue.h"
#include "platform/ui/Image.h"
#include "platform/ui/ViewController.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace tessel {

class PreviewController;
class TextContent;

/// What a preview shows.
class PreviewControllerDataSource {
public:
    virtual ~PreviewControllerDataSource() = default;

    [[nodiscard]] virtual std::size_t numberOfPreviewItemsInPreviewController(const PreviewController&) const = 0;
    [[nodiscard]] virtual URL previewControllerPreviewItemAtIndex(const PreviewController&,
                                                                  std::size_t index) const = 0;
};

/// What may be done in a preview.
class PreviewControllerDelegate {
public:
    virtual ~PreviewControllerDelegate() = default;

    /// Whether the document may be marked up, and whether what was marked up is saved in it.
    [[nodiscard]] virtual bool previewControllerCanEditItem(const PreviewController&, const URL&) const = 0;
    [[nodiscard]] virtual bool previewControllerShouldSaveEditedItem(const PreviewController&, const URL&) const = 0;
};

/// How far a preview has come.
enum class PreviewState {
    Looking,     ///< what the document is, is being found out, or will be when the preview comes on screen
    Downloading, ///< it comes to the device
    Cancelled,   ///< its download was ended; it can be begun again
    Shown,       ///< its content; or its icon, where nothing can show that
    Failed,
};

/// What was read of a document.
struct PreviewContent {
    ContentFacts facts;
    std::shared_ptr<TextContent> text; ///< of a text, else null
};

/// The quick preview: shows the first of its source's documents. Reads it while it is on screen, which downloads a
/// document that is not on the device, and follows what it is told of changes. What it shows is read by the shells,
/// which are told by `Device::screenChanged`. It has a button of its own that shares the document, beside the others in
/// the navigation bar on a tablet, else in the toolbar. Main thread only.
class PreviewController : public ViewController {
public:
    PreviewControllerDataSource* dataSource = nullptr; ///< lives as long as the controller does
    PreviewControllerDelegate* delegate = nullptr;     ///< likewise

    ~PreviewController() override;

    [[nodiscard]] std::string className() const override { return "PreviewController"; }

    /// Asks the source again what there is to show. The title becomes the document's name.
    void reloadData();
    /// Reads the shown document again, for it has changed: once for several calls in one turn, and once more for those
    /// that come while it is being read. Until that is done, what was read before is shown.
    void refreshCurrentPreviewItem();
    /// None when the source has none.
    [[nodiscard]] const std::optional<URL>& currentPreviewItem() const { return shown_; }

    /// Whether the view is on screen.
    [[nodiscard]] bool isVisible() const { return isOnScreen_; }

    [[nodiscard]] PreviewState state() const { return state_; }
    /// While Shown.
    [[nodiscard]] const PreviewContent& content() const { return content_; }
    /// How often content has been read: another number means that the same document must be painted again.
    [[nodiscard]] std::uint64_t reading() const { return reading_; }
    /// While Downloading: from 0 to 1.
    [[nodiscard]] double fraction() const { return fraction_; }
    /// What stands in place of content; none without a document.
    [[nodiscard]] std::optional<Image> icon() const;
    [[nodiscard]] std::string name() const;
    /// What is wrong, or the kind and size of the document, as far as they are known.
    [[nodiscard]] std::string detail() const;
    /// What the one button of this state is called: cancels a download, or begins again; empty without one.
    [[nodiscard]] std::string buttonTitle() const;
    void pressButton();
    /// Whether there is more to come.
    [[nodiscard]] bool isBusy() const;

    /// Where the user has come to in the document: pages or rows of a text that have gone by, with the part of the one
    /// at the top, or seconds of sound and films. Shells begin there when they show a document. 0 for another document,
    /// and once the preview has left its stack.
    [[nodiscard]] double place() const { return place_; }
    /// Tells what a restart is to bring back (`kScreenDidChangeNotification`), soon. What is no place is the beginning.
    void setPlace(double);

    /// A shell found that the content cannot be painted. What is gone is looked for once more: it may have been
    /// evicted from the device.
    void contentHasProblem(ContentProblem);

protected:
    void viewDidLoad() override;
    void viewWillAppear(Animated) override;
    void viewWillLayoutSubviews() override;
    void viewDidDisappear() override;

private:
    [[nodiscard]] bool isReading() const { return opening_ != nullptr || inspection_.has_value(); }
    void placeShareButton();
    void share() const;
    void forget();
    void stopReading();
    void readIfWanted();
    void read();
    void opened(const OpenedDocument&);
    void inspect();
    void show(PreviewContent);
    void fail(ContentProblem, std::string reason);
    void finishReading(PreviewState);
    static void tellShells();

    std::optional<URL> shown_;
    PreviewState state_ = PreviewState::Looking;
    PreviewContent content_;
    std::optional<DocumentDescription> description_;
    std::uint64_t reading_ = 0;
    double fraction_ = 0;
    std::string failure_; ///< a sentence for the user
    bool isOnScreen_ = false;
    bool isReadingWanted_ = true;
    double place_ = 0;
    MainQueue::DelayedTask placeTold_;
    bool wasLost_ = false; ///< the content was gone since the document has been shown
    std::shared_ptr<BarButtonItem> shareButton_;
    std::shared_ptr<DocumentReader::Opening> opening_;
    std::optional<DocumentDecoder::Ticket> inspection_;
};

} // namespace tessel
