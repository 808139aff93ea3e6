#include "platform/qt/decoder/Answering.h"

#include "platform/linux/decoding/DecoderChannel.h"
#include "platform/qt/decoder/Confinement.h"
#include "platform/qt/decoder/SharedPicture.h"

#include <cstring>

namespace tessel::qt {

namespace {

constexpr int kMostSeconds = 10; // of the processor for one request

bool isSame(const struct stat& a, const struct stat& b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino && a.st_size == b.st_size &&
           a.st_mtim.tv_sec == b.st_mtim.tv_sec && a.st_mtim.tv_nsec == b.st_mtim.tv_nsec &&
           a.st_ctim.tv_sec == b.st_ctim.tv_sec && a.st_ctim.tv_nsec == b.st_ctim.tv_nsec;
}

QString nameIn(const DecoderRequest& request)
{
    return QString::fromUtf8(request.name.data(), qsizetype(::strnlen(request.name.data(), request.name.size())));
}

DecoderAnswer problemAnswer(ContentProblem problem)
{
    DecoderAnswer answer;
    answer.problem = static_cast<std::int32_t>(problem) + 1;
    return answer;
}

} // namespace

void Answering::run()
{
    FileDescriptor file;
    while (const auto request = receive<DecoderRequest>(socket_, file)) {
        limitProcessorTime(kMostSeconds);
        answer(*request, std::move(file));
    }
}

void Answering::answer(const DecoderRequest& request, FileDescriptor file)
{
    open(request, std::move(file));
    FileDescriptor picture;
    const auto result = request.work == DecoderRequest::Work::Inspect ? inspected() : painted(request, picture);
    (void)send(socket_, result, picture.get());
}

void Answering::open(const DecoderRequest& request, FileDescriptor file)
{
    struct stat status = {};
    const bool isKnown = ::fstat(file.get(), &status) == 0;
    if (isKnown && document_ && isSame(status, status_))
        return;
    status_ = status;
    document_.reset();
    auto opened = std::make_unique<QFile>();
    if (isKnown && opened->open(file.get(), QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        (void)file.release();
        document_ = openDocument(std::move(opened), nameIn(request));
    }
}

DecoderAnswer Answering::inspected()
{
    const auto facts = document_ ? document_->facts() : ContentFacts();
    DecoderAnswer answer;
    answer.kind = facts.kind;
    answer.problem = facts.problem ? static_cast<std::int32_t>(*facts.problem) + 1 : 0;
    answer.size = facts.size;
    answer.count = facts.count;
    return answer;
}

DecoderAnswer Answering::painted(const DecoderRequest& request, FileDescriptor& picture)
{
    if (!document_)
        return problemAnswer(ContentProblem::NotReadable);
    const auto& part = request.part;
    const auto made =
        document_->paint({request.index, {request.width, request.height}, {part.x, part.y, part.width, part.height}});
    if (made.image.isNull())
        return problemAnswer(made.problem);
    picture = sharedPicture(made.image);
    if (!picture.isOpen())
        return problemAnswer(ContentProblem::TooLarge);
    DecoderAnswer answer;
    answer.width = made.image.width();
    answer.height = made.image.height();
    answer.milliseconds = made.milliseconds;
    answer.isOpaque = made.image.hasAlphaChannel() ? 0 : 1;
    return answer;
}

} // namespace tessel::qt
