#include "tests/window/WindowFixture.h"

#include <QImage>

#include <cstdlib>
#include <map>
#include <ostream>
#include <unistd.h>

namespace fs = std::filesystem;

namespace tessel {
namespace {

/// A screen of the program, and how one gets there.
struct Screen {
    std::string name;
    int width = 375;
    int height = 667;
    Lines commands = {};
    Lines arguments = {};
    Lines environment = {};
    bool hasBareDrive = false; ///< of a folder that is empty and one that is closed
    bool hasOffer = false;
};

std::ostream& operator<<(std::ostream& stream, const Screen& screen)
{
    return stream << screen.name;
}

constexpr int kSameColour = 24;        ///< of 255, in each channel: edges of letters vary with the libraries that draw
constexpr double kOtherPixels = 0.005; ///< a part of all

/// The same, as far as a person sees.
bool areAlike(const QImage& picture, const QImage& kept)
{
    if (picture.isNull() || picture.size() != kept.size())
        return false;
    int others = 0;
    for (int y = 0; y < kept.height(); ++y)
        for (int x = 0; x < kept.width(); ++x) {
            const auto one = picture.pixel(x, y);
            const auto other = kept.pixel(x, y);
            others += std::abs(qRed(one) - qRed(other)) > kSameColour ||
                      std::abs(qGreen(one) - qGreen(other)) > kSameColour ||
                      std::abs(qBlue(one) - qBlue(other)) > kSameColour;
        }
    return others <= kOtherPixels * kept.width() * kept.height();
}

/// The same picture in its most frequent colours, which takes less room, if that is like it.
QImage ofFewColours(const QImage& picture)
{
    constexpr std::size_t kMost = 128;
    std::map<QRgb, int> numbers;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            ++numbers[picture.pixel(x, y)];
    std::vector<std::pair<int, QRgb>> byNumber;
    for (const auto& [colour, number] : numbers)
        byNumber.emplace_back(number, colour);
    std::ranges::sort(byNumber, std::greater());
    QList<QRgb> table;
    for (std::size_t index = 0; index < std::min(byNumber.size(), kMost); ++index)
        table.append(byNumber[index].second);
    const auto reduced = picture.convertToFormat(QImage::Format_Indexed8, table, Qt::ThresholdDither);
    return areAlike(reduced, picture) ? reduced : picture;
}

/// The program's screens look like the kept pictures of them, with letters that are the same on every machine.
/// TESSEL_UPDATE_PICTURES=1 renews those that are not like the screens any more.
class PictureTest : public WindowFixture, public testing::WithParamInterface<Screen> {
protected:
    void SetUp() override
    {
        folder.folder("fonts");
        folder.folder("desktop"); // on which no application opens anything
        folder.link("desktop/mime", "/usr/share/mime");
        for (const std::string font :
             {"noto/NotoSans-Regular.ttf", "noto/NotoSans-Bold.ttf", "noto/NotoSansArabic-Regular.ttf",
              "noto/NotoSansArabic-Bold.ttf", "noto/NotoSansSymbols2-Regular.ttf", "droid/DroidSansFallbackFull.ttf"}) {
            const auto file = "/usr/share/fonts/truetype/" + font;
            if (!fs::exists(file))
                GTEST_SKIP() << file << " is not installed";
            folder.link("fonts/" + fs::path(font).filename().string(), file);
        }
        folder.file("fonts.conf", "<fontconfig><dir>" + folder.url("fonts").path() + "</dir><cachedir>" +
                                      folder.url("cache").path() +
                                      "</cachedir><match target=\"pattern\"><edit name=\"family\" mode=\"prepend\">"
                                      "<string>Noto Sans</string></edit></match></fontconfig>");
    }

    [[nodiscard]] Program openScreen() const
    {
        Lines environment = {"FONTCONFIG_FILE=" + folder.url("fonts.conf").path(),
                             "XDG_DATA_DIRS=" + folder.url("desktop").path(), "QT_QPA_PLATFORMTHEME="};
        environment.insert(environment.end(), GetParam().environment.begin(), GetParam().environment.end());
        // The same room is left on every machine.
        folder.file("home/quota.json", R"({"accountSize": 5368709120})");
        if (GetParam().hasOffer)
            folder.file("home/offers.json", R"({"currentOffer": {"showsButton": true, "link": {"action": 3}}})");
        if (!GetParam().hasBareDrive)
            return open(GetParam().arguments, environment);
        folder.folder("drive/Empty");
        fs::permissions(folder.folder("drive/Closed").path(), fs::perms::none);
        const auto user = nobody();
        return open({"--drive", folder.url("drive").path()}, environment, user);
    }

    /// Nothing is closed to root, so somebody else is to run the program, who must be given the folders.
    [[nodiscard]] std::optional<uid_t> nobody() const
    {
        constexpr uid_t kNobody = 65534;
        if (::geteuid() != 0)
            return std::nullopt;
        for (const auto* const name : {"", "home", "drive", "drive/Empty", "drive/Closed", "cache", "runtime"})
            EXPECT_EQ(::chown(folder.url(name).path().c_str(), kNobody, kNobody), 0) << name;
        return kNobody;
    }

    /// Goes to the screen, and compares as soon as all pictures in it have come.
    void compare(Program& program) const
    {
        use(program, "resize " + std::to_string(GetParam().width) + " " + std::to_string(GetParam().height));
        for (const auto& command : GetParam().commands)
            use(program, command);
        const auto file = GetParam().name + ".png";
        const auto grabbed = folder.url("cache").path() + "/" + file;
        const auto kept = std::string(TESSEL_PICTURES "/") + file;
        const auto newer = std::string(TESSEL_NEW_PICTURES "/") + file;
        const QImage expected(QString::fromStdString(kept));
        QImage picture;
        const auto isAlike = [&] {
            EXPECT_EQ(program.send("grab " + grabbed).answer, "ok");
            picture.load(QString::fromStdString(grabbed));
            return areAlike(picture, expected);
        };
        if (std::getenv("TESSEL_UPDATE_PICTURES")) {
            EXPECT_TRUE(isAlike() || ofFewColours(picture).save(QString::fromStdString(kept), "PNG", 0));
            return;
        }
        if (soon(isAlike))
            return;
        fs::create_directories(TESSEL_NEW_PICTURES);
        fs::copy_file(grabbed, newer, fs::copy_options::overwrite_existing);
        ADD_FAILURE() << newer << " is not like " << kept;
    }
};

TEST_P(PictureTest, LooksAsItDid)
{
    auto program = openScreen();
    compare(program);
}

const Lines kGallery = {"--gallery"};
const Lines kAlert = {"tap Presentations", "tap Alert with a text field"};
const Lines kSheet = {"tap Presentations", "tap Action sheet"};
const Lines kDocuments = {"tap Documents"};
// Of a document whose dates are always the same.
const Lines kDetails = {"tap Documents", "swipe -200 Contract.pdf", "tap More", "tap Info"};
const Lines kMirroredDetails = {"tap Documents", "swipe 200 Contract.pdf", "tap المزيد", "tap معلومات"};
const Lines kLongName = {"tap Documents", "swipe -200 Contract.pdf",
                         "tap More",      "tap Info",
                         "tap Name",      "key Ctrl+A",
                         "key Del",       "type Contract between the tenant and the association, of the year 2026",
                         "key Return"};
const Lines kRename = {"tap Documents", "swipe -200 Contract.pdf", "tap More", "tap Info", "tap Name"};
const Lines kKeyboard = {"tap Documents", "swipe -200 Contract.pdf", "tap More", "tap Info", "tap Name",
                         "keyboard 260"};
const Lines kDelete = {"tap Documents", "tap Select", "tap Plan.txt", "tap Notes.md", "tap Delete"};
const Lines kShare = {"tap Documents", "swipe -200 Contract.pdf", "tap More", "tap Share"};
const Lines kMove = {"tap Documents", "swipe -200 Photos", "tap More", "tap Move"};

INSTANTIATE_TEST_SUITE_P(
    Screens, PictureTest,
    testing::Values(
        Screen{.name = "phone-drive"}, Screen{.name = "phone-documents", .commands = kDocuments},
        Screen{.name = "phone-photos", .commands = {"tap Documents", "tap Photos", "tap Show as Thumbnails"}},
        Screen{.name = "phone-search", .commands = {"key Ctrl+F", "type report"}},
        Screen{.name = "phone-alert", .commands = kAlert, .arguments = kGallery},
        Screen{.name = "phone-sheet", .commands = kSheet, .arguments = kGallery},
        Screen{.name = "phone-mirrored", .commands = kDocuments, .environment = {"LC_ALL=ar_EG.UTF-8"}},
        Screen{.name = "phone-german",
               .commands = {"tap Documents", "tap Auswählen", "tap Plan.txt"},
               .environment = {"LC_ALL=de_DE.UTF-8"}},
        Screen{.name = "phone-dark", .commands = kDocuments, .environment = {"TESSELDRIVE_DARK=1"}},
        Screen{.name = "phone-large-text", .commands = kDocuments, .environment = {"TESSELDRIVE_TEXT_SCALE=2"}},
        Screen{.name = "phone-preview-text", .commands = {"tap Documents", "tap Plan.txt"}},
        Screen{.name = "phone-preview-image", .commands = {"tap Documents", "tap Photos", "tap Dunes.png"}},
        Screen{.name = "phone-preview-pages", .commands = {"tap Documents", "tap Contract.pdf"}},
        Screen{.name = "phone-details", .commands = kDetails, .environment = {"TZ=UTC"}},
        Screen{.name = "phone-rename", .width = 667, .height = 375, .commands = kRename, .environment = {"TZ=UTC"}},
        Screen{.name = "tablet-details", .width = 1024, .height = 768, .commands = kDetails, .environment = {"TZ=UTC"}},
        Screen{
            .name = "tablet-details-mirrored",
            .width = 768,
            .height = 1024,
            .commands = kMirroredDetails,
            .environment = {"LC_ALL=ar_EG.UTF-8", "TZ=UTC"},
        },
        Screen{.name = "phone-details-long-name", .commands = kLongName, .environment = {"TZ=UTC"}},
        Screen{.name = "phone-details-keyboard", .commands = kKeyboard, .environment = {"TZ=UTC"}},
        Screen{.name = "phone-delete", .commands = kDelete},
        Screen{.name = "phone-new-folder", .commands = {"tap Documents", "tap Select", "tap New Folder"}},
        Screen{.name = "phone-offer", .hasOffer = true},
        Screen{.name = "phone-move", .commands = kMove, .environment = {"TZ=UTC"}},
        Screen{.name = "tablet-move-dark",
               .width = 768,
               .height = 1024,
               .commands = kMove,
               .environment = {"TESSELDRIVE_DARK=1", "TZ=UTC"}},
        Screen{.name = "phone-empty", .commands = {"tap Empty"}, .hasBareDrive = true},
        Screen{.name = "phone-failed", .commands = {"tap Closed"}, .hasBareDrive = true},
        Screen{.name = "tablet-documents", .width = 768, .height = 1024, .commands = kDocuments},
        Screen{.name = "tablet-share", .width = 768, .height = 1024, .commands = kShare},
        Screen{.name = "tablet-sheet", .width = 768, .height = 1024, .commands = kSheet, .arguments = kGallery},
        Screen{.name = "desktop-documents", .width = 1280, .height = 800, .commands = kDocuments}),
    [](const auto& screen) {
        auto name = screen.param.name;
        std::ranges::replace(name, '-', '_');
        return name;
    });

} // namespace
} // namespace tessel
