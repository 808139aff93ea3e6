#include "platform/documents/PreviewController.h"

#include "platform/base/Platform.h"
#include "platform/documents/DocumentIcon.h"
#include "platform/documents/DocumentInteractionController.h"
#include "platform/documents/TextContent.h"
#include "platform/text/TextServices.h"
#include "platform/ui/Application.h"
#include "platform/ui/Device.h"
#include "platform/ui/NavigationController.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tessel {

namespace {

constexpr Size kIconSize = {128, 128};

std::string_view sentenceFor(ContentProblem problem)
{
    switch (problem) {
    case ContentProblem::Empty:
        return "The document is empty.";
    case ContentProblem::Damaged:
        return "The document is damaged, or is not what its name says.";
    case ContentProblem::Encrypted:
        return "The document is protected by a password.";
    case ContentProblem::TooLarge:
        return "The document is too large to be shown here.";
    case ContentProblem::TooSlow:
        return "It takes too long to show the document.";
    case ContentProblem::Gone:
        return "The document is not there any more.";
    case ContentProblem::NotReadable:
        return "The document can’t be read.";
    case ContentProblem::NotPlayable:
        return "The document can’t be played.";
    }
    return "";
}

ContentProblem problemOf(const Error& error)
{
    const bool isGone = error.domain == Domain::General &&
                        (error.code == ErrorCode::kNoSuchFile || error.code == ErrorCode::kFileDoesNotExist);
    return isGone ? ContentProblem::Gone : ContentProblem::NotReadable;
}

bool isCancellation(const Error& error)
{
    return error.domain == Domain::General && error.code == ErrorCode::kUserCancelled;
}

std::string kindAndSize(const DocumentDescription& description)
{
    auto text = description.typeDescription;
    if (description.size)
        text +=
            (text.empty() ? "" : " · ") + platform::installed().text.byteCount(*description.size, ByteCountStyle::File);
    return text;
}

} // namespace

PreviewController::~PreviewController()
{
    if (const auto* services = platform::installedIfAny(); services && inspection_)
        services->decoder.cancel(*inspection_);
}

void PreviewController::viewDidLoad()
{
    view().setBackgroundColor(Color::white());
    reloadData();
}

void PreviewController::viewWillAppear(Animated)
{
    isOnScreen_ = true;
    placeShareButton();
    readIfWanted();
}

void PreviewController::viewWillLayoutSubviews()
{
    ViewController::viewWillLayoutSubviews();
    placeShareButton(); // a phone's window may have become a tablet's
}

/// A peek is only looked at.
void PreviewController::placeShareButton()
{
    const auto navigation = navigationController();
    const bool isPeek = !navigation || navigation->presentationStyle == PresentationStyle::Peek;
    const bool isTablet = platform::installed().device.idiom == Idiom::Pad;
    if (!shareButton_)
        shareButton_ = BarButtonItem::system(BarButtonItem::System::Action, [this] { share(); });
    auto inBar = navigationItem.rightItems();
    std::erase(inBar, shareButton_);
    if (isTablet && !isPeek)
        inBar.push_back(shareButton_);
    if (inBar != navigationItem.rightItems())
        navigationItem.setRightItems(std::move(inBar));
    const auto inToolbar = isTablet || isPeek ? BarButtonItems() : BarButtonItems{shareButton_};
    if (inToolbar != toolbarItems())
        setToolbarItems(inToolbar);
    if (!inToolbar.empty())
        navigation->setToolbarHidden(false);
}

void PreviewController::share() const
{
    if (shown_)
        DocumentInteractionController(*shown_).presentOptionsMenu(shareButton_, Animated::Yes);
}

/// What a screen only covers goes on.
void PreviewController::viewDidDisappear()
{
    isOnScreen_ = false;
    if (!navigationController())
        forget();
}

void PreviewController::reloadData()
{
    const bool hasItem = dataSource && dataSource->numberOfPreviewItemsInPreviewController(*this) > 0;
    auto item = hasItem ? std::optional(dataSource->previewControllerPreviewItemAtIndex(*this, 0)) : std::nullopt;
    if (item && item == shown_) {
        setTitle(name());
        return refreshCurrentPreviewItem();
    }
    shown_ = std::move(item);
    forget();
    setTitle(name());
    readIfWanted();
    tellShells();
}

void PreviewController::refreshCurrentPreviewItem()
{
    if (std::exchange(isReadingWanted_, true) || isReading())
        return;
    DispatchQueue::main().async([weak = weak_from_this()] {
        if (const auto self = std::static_pointer_cast<PreviewController>(weak.lock()))
            self->readIfWanted();
    });
}

/// It is read anew when it comes on screen.
void PreviewController::forget()
{
    stopReading();
    state_ = PreviewState::Looking;
    content_ = {};
    description_.reset();
    isReadingWanted_ = true;
    wasLost_ = false;
    place_ = 0;
}

void PreviewController::stopReading()
{
    opening_.reset();
    if (const auto inspection = std::exchange(inspection_, std::nullopt))
        platform::installed().decoder.cancel(*inspection);
}

void PreviewController::readIfWanted()
{
    if (isOnScreen_ && shown_ && !isReading() && std::exchange(isReadingWanted_, false))
        read();
}

void PreviewController::read()
{
    opening_ = platform::installed().documents.open(
        *shown_, {.described =
                      [this](const DocumentDescription& description) {
                          description_ = description;
                          if (description.isFolder)
                              return show({});
                          if (!description.isOnDevice) {
                              state_ = PreviewState::Downloading;
                              fraction_ = 0;
                          }
                          tellShells();
                      },
                  .downloaded =
                      [this](double fraction) {
                          fraction_ = fraction;
                          tellShells();
                      },
                  .opened = [this](const OpenedDocument& document) { opened(document); }});
}

void PreviewController::opened(const OpenedDocument& document)
{
    opening_.reset();
    if (document.failure && isCancellation(*document.failure))
        finishReading(PreviewState::Cancelled);
    else if (document.failure)
        fail(problemOf(*document.failure), document.failure->failureReason);
    else if (document.isEmpty)
        fail(ContentProblem::Empty, "");
    else if (document.text)
        show({{ContentKind::Text, {}, {}, 0, 0}, document.text});
    else
        inspect();
}

void PreviewController::inspect()
{
    inspection_ = platform::installed().decoder.inspect(*shown_, [this](const ContentFacts& facts) {
        inspection_.reset();
        if (facts.problem)
            fail(*facts.problem, "");
        else
            show({facts.kind == ContentKind::Text ? ContentFacts() : facts, nullptr}); // none that was found to be one
    });
}

void PreviewController::show(PreviewContent content)
{
    opening_.reset();
    content_ = std::move(content);
    if (content_.text)
        content_.text->grew = &PreviewController::tellShells;
    finishReading(PreviewState::Shown);
}

void PreviewController::fail(ContentProblem problem, std::string reason)
{
    content_ = {};
    failure_ = platform::installed().text.localized(sentenceFor(problem));
    if (problem == ContentProblem::NotReadable && !reason.empty())
        failure_ += "\n" + reason;
    finishReading(PreviewState::Failed);
}

void PreviewController::finishReading(PreviewState state)
{
    state_ = state;
    ++reading_;
    readIfWanted();
    tellShells();
}

void PreviewController::contentHasProblem(ContentProblem problem)
{
    if (state_ != PreviewState::Shown || isReading())
        return;
    if (problem == ContentProblem::Gone && !std::exchange(wasLost_, true))
        refreshCurrentPreviewItem();
    else
        fail(problem, "");
}

std::optional<Image> PreviewController::icon() const
{
    if (!shown_)
        return std::nullopt;
    return documentIcon(shown_->lastPathComponent(), description_ ? description_->typeIdentifier : "", kIconSize);
}

std::string PreviewController::name() const
{
    return shown_ ? platform::installed().text.displayName(shown_->lastPathComponent()) : "";
}

std::string PreviewController::detail() const
{
    if (state_ == PreviewState::Failed)
        return failure_;
    return description_ ? kindAndSize(*description_) : "";
}

std::string PreviewController::buttonTitle() const
{
    const auto& text = platform::installed().text;
    switch (state_) {
    case PreviewState::Downloading:
        return text.localized("Cancel");
    case PreviewState::Cancelled:
        return text.localized("Download");
    case PreviewState::Failed:
        return text.localized("Try Again");
    default:
        return "";
    }
}

void PreviewController::pressButton()
{
    if (buttonTitle().empty())
        return;
    const bool isCancelling = state_ == PreviewState::Downloading;
    stopReading();
    isReadingWanted_ = !isCancelling;
    state_ = isCancelling ? PreviewState::Cancelled : PreviewState::Looking;
    readIfWanted();
    tellShells();
}

bool PreviewController::isBusy() const
{
    const bool isToBeRead = isReadingWanted_ && isOnScreen_ && shown_;
    return isToBeRead || isReading() || (content_.text && !content_.text->isComplete());
}

void PreviewController::setPlace(double place)
{
    constexpr double kSecondsOfRest = 0.3;
    const auto before = std::exchange(place_, std::isfinite(place) ? std::max(0.0, place) : 0);
    if (place_ == before)
        return;
    placeTold_.cancel();
    placeTold_ = DispatchQueue::main().after(
        kSecondsOfRest, [] { platform::installed().notifications.post(kScreenDidChangeNotification); });
}

void PreviewController::tellShells()
{
    platform::installed().device.tellScreenChanged();
}

} // namespace tessel
