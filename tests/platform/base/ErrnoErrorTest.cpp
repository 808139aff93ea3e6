#include "platform/linux/base/ErrnoError.h"

#include "platform/base/Platform.h"
#include "platform/linux/text/EmbeddedStringTables.h"
#include "platform/linux/text/IcuTextServices.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <cstring>

namespace tessel {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

TEST(ErrnoErrorTest, NamesTheItemInTheUsersLanguage)
{
    const auto item = URL::file("/drive/Plan\n.txt");
    EXPECT_EQ(errnoError(EACCES, item).description, "The operation on “Plan\n.txt” failed: Permission denied.")
        << "before there is a platform";
    const InstalledPlatform platform;
    EXPECT_EQ(errnoError(EPERM, item).description, "The operation on “Plan␊.txt” failed: Permission denied.");

    const auto described = [&](const char* locale, int errorNumber) {
        IcuTextServices text(locale, embeddedStringTables());
        const platform::Scope scope(servicesWith(text));
        return errnoError(errorNumber, item).description;
    };
    EXPECT_EQ(described("de_AT", ENOTDIR),
              "Der Vorgang mit „Plan␊.txt“ ist fehlgeschlagen: Datei oder Ordner nicht gefunden.");
    for (const auto* locale : {"ar", "de", "fr", "ja"})
        for (const int errorNumber : {EIO, ENOSPC, EDQUOT, EACCES, EXDEV, EINTR, ENOENT, EROFS, EBUSY, ENAMETOOLONG,
                                      EEXIST, EISDIR, ENOTEMPTY, EMFILE, ENFILE, ENOMEM, EFBIG, ELOOP, ENOTSUP})
            EXPECT_THAT(described(locale, errorNumber),
                        AllOf(HasSubstr("Plan␊.txt"), Not(HasSubstr(::strerrordesc_np(errorNumber)))))
                << locale;
}

} // namespace
} // namespace tessel
