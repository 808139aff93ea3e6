#include "platform/linux/files/WithdrawnItem.h"

#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/files/RemoveTree.h"
#include "platform/linux/files/RenameWithoutReplacing.h"
#include "platform/linux/files/Uninterrupted.h"

#include <unistd.h>

#include <cerrno>

namespace tessel {

Result<WithdrawnItem> WithdrawnItem::withdraw(const URL& url, const URL& named, const UnfinishedWork& unfinished,
                                              UnfinishedChange should)
{
    auto hidden = hiddenNameBeside(url);
    should.hidden = hidden;
    if (should.stamp || should.equalTo)
        should.place = url;
    auto note = unfinished.remember(should);
    if (!renameWithoutReplacing(url, hidden))
        return errnoError(errno, named);
    return WithdrawnItem(url, named, unfinished, std::move(hidden), std::move(note));
}

WithdrawnItem::~WithdrawnItem()
{
    if (hidden_)
        putBack();
}

std::optional<Error> WithdrawnItem::remove()
{
    if (uninterrupted([&] { return ::unlink(hidden_->path().c_str()); }) == 0) {
        hidden_.reset();
        return std::nullopt;
    }
    // From here on there is no going back, whatever is left of it.
    note_ = unfinished_.remember({*hidden_, {}, {}, {}, {}});
    auto error = removeTree(*hidden_, Protection::Respect, named_);
    if (error)
        putBack();
    hidden_.reset();
    return error;
}

// Never over another item, which may have taken the place.
void WithdrawnItem::putBack()
{
    if (!renameToFreeNameLike(*hidden_, place_))
        note_.abandon();
}

} // namespace tessel
