#include "browser/NavController.h"

#include "platform/base/Platform.h"
#include "platform/cloud/CloudService.h"
#include "platform/documents/SearchController.h"
#include "platform/files/FileManager.h"
#include "preview/GlanciaItemController.h"

#include <utility>

namespace tessel {

namespace {

constexpr const char* kFolderKey = "folder";
constexpr const char* kFirstItemKey = "firstItem";
constexpr const char* kSearchKey = "search";
constexpr const char* kEditingKey = "editing";
constexpr const char* kSelectionKey = "selection"; // names, and URLs of libraries

constexpr const char* kDocumentKey = "document";
constexpr const char* kPlaceKey = "place"; // in the document

constexpr std::size_t kMostSelected = 2000; // more than anyone has chosen one by one

/// The list that is shown, or lies beneath what is.
std::shared_ptr<DocumentListController> lastListOf(const NavigationController::Stack& stack)
{
    for (auto controller = stack.rbegin(); controller != stack.rend(); ++controller)
        if (auto list = std::dynamic_pointer_cast<DocumentListController>(*controller))
            return list;
    return nullptr;
}

/// The folder, or the nearest above it that is there; none outside the drive.
std::optional<URL> nearestFolder(URL folder)
{
    const auto& services = platform::installed();
    while (services.cloud.isInDrive(folder)) {
        if (services.files.kindOfItem(folder.path()) == FileKind::Directory)
            return folder;
        folder = folder.deletingLastPathComponent();
    }
    return std::nullopt;
}

Value selectionOf(const DocumentListController& list)
{
    Value::Array selection;
    if (list.selectedItems().count <= kMostSelected)
        for (const auto& url : list.selectedItemURLs())
            selection.emplace_back(url);
    return selection;
}

std::vector<URL> urlsIn(const Value& value)
{
    std::vector<URL> urls;
    if (const auto* array = value.get<Value::Array>())
        for (const auto& element : *array)
            if (const auto* url = element.get<URL>())
                urls.push_back(*url);
    return urls;
}

} // namespace

void NavController::encodeSession(StateCoder& coder) const
{
    const auto list = lastListOf(viewControllers());
    if (!list)
        return;
    coder.encode(kFolderKey, list->presentedURL());
    if (const auto first = list->firstVisibleItem())
        coder.encode(kFirstItemKey, *first);
    if (const auto search = std::dynamic_pointer_cast<SearchController>(presentedViewController()))
        coder.encode(kSearchKey, search->query());
    const auto preview = std::dynamic_pointer_cast<PreviewController>(topViewController());
    if (preview && preview->currentPreviewItem() && preview->place() > 0) {
        coder.encode(kDocumentKey, *preview->currentPreviewItem());
        coder.encode(kPlaceKey, preview->place());
    }
    if (list->editing()) {
        coder.encode(kEditingKey, true);
        coder.encode(kSelectionKey, selectionOf(*list));
    }
}

void NavController::decodeSession(const StateCoder& coder)
{
    const auto document = coder.decode(kDocumentKey);
    const auto place = coder.decode(kPlaceKey);
    if (document.get<URL>() && place.get<double>())
        placeToComeBackTo_ = {*document.get<URL>(), *place.get<double>()};
    const auto stored = coder.decode(kFolderKey);
    const auto* folder = stored.get<URL>();
    const auto nearest = folder ? nearestFolder(*folder) : std::nullopt;
    if (!nearest || !warpToFolderForURL(*nearest) || *nearest != *folder)
        return;
    const auto list = getTopDocumentListController();
    if (const auto first = coder.decode(kFirstItemKey); const auto* item = first.get<URL>())
        list->startAtItem(*item);
    if (coder.decode(kEditingKey) == Value(true)) {
        selectionToComeBack_ = urlsIn(coder.decode(kSelectionKey));
        initNewListController(*list);
        setEditModeAndUpdateUI(true, list);
    } else if (const auto search = coder.decode(kSearchKey); const auto* query = search.get<std::string>()) {
        list->startSearch(*query);
    }
}

/// Once the document is shown, if it is the same.
void NavController::comeBackToPlace()
{
    const auto place = std::exchange(placeToComeBackTo_, std::nullopt);
    const auto preview = GlanciaItemController::defaultController();
    if (place && preview->currentPreviewItem() == place->document)
        preview->setPlace(place->place);
}

/// Once the list has the items.
void NavController::selectAgain(DocumentListController& list)
{
    if (!selectionToComeBack_.empty() && list.state() == ListState::Complete)
        list.setSelectedItemURLs(std::exchange(selectionToComeBack_, {}));
}

} // namespace tessel
