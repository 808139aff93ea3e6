#include "platform/qt/thumbnails/ThumbnailPNG.h"

#include <png.h>

#include <algorithm>
#include <cstring>
#include <vector>

namespace tessel::qt {

namespace {

constexpr png_alloc_size_t kMostChunkBytes = 1024 * 1024;
constexpr int kMostChunks = 100;

void ignore(png_structp, png_const_charp)
{
}

[[noreturn]] void fail(png_structp png, png_const_charp)
{
    png_longjmp(png, 1);
}

// The library leaves a function by a jump when something is wrong, so nothing in one that it may leave has a
// destructor.
class Reader {
public:
    explicit Reader(const QByteArray& file)
        : rest_(file), png_(png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, ignore)),
          info_(png_ ? png_create_info_struct(png_) : nullptr)
    {
    }
    ~Reader() { png_destroy_read_struct(&png_, &info_, nullptr); }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    [[nodiscard]] std::optional<ThumbnailPNG> read(int longest)
    {
        if (!info_ || !readHead(longest))
            return std::nullopt;
        QImage image(width(), height(), hasAlpha_ ? QImage::Format_RGBA8888 : QImage::Format_RGBX8888);
        if (image.isNull())
            return std::nullopt;
        std::vector<png_bytep> rows;
        for (int row = 0; row < image.height(); ++row)
            rows.push_back(image.scanLine(row));
        if (!readRows(rows.data()))
            return std::nullopt;
        image.convertTo(hasAlpha_ ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
        return ThumbnailPNG{.image = std::move(image), .texts = texts()};
    }

private:
    static void take(png_structp png, png_bytep bytes, std::size_t count)
    {
        auto& rest = static_cast<Reader*>(png_get_io_ptr(png))->rest_;
        if (rest.size() < qsizetype(count))
            png_error(png, "cut");
        std::memcpy(bytes, rest.data(), count);
        rest = rest.sliced(qsizetype(count));
    }

    [[nodiscard]] int width() const { return int(png_get_image_width(png_, info_)); }
    [[nodiscard]] int height() const { return int(png_get_image_height(png_, info_)); }

    // Every picture is read as four bytes a pixel.
    [[nodiscard]] bool readHead(int longest)
    {
        if (setjmp(png_jmpbuf(png_)) != 0) // NOLINT(cert-err52-cpp): the library's way
            return false;
        png_set_read_fn(png_, this, take);
        png_set_user_limits(png_, png_uint_32(longest), png_uint_32(longest));
        png_set_chunk_malloc_max(png_, kMostChunkBytes);
        png_set_chunk_cache_max(png_, kMostChunks);
        png_read_info(png_, info_);
        hasAlpha_ = (png_get_color_type(png_, info_) & PNG_COLOR_MASK_ALPHA) != 0 ||
                    png_get_valid(png_, info_, PNG_INFO_tRNS) != 0;
        png_set_expand(png_);
        png_set_scale_16(png_);
        png_set_gray_to_rgb(png_);
        png_set_add_alpha(png_, 0xFF, PNG_FILLER_AFTER);
        png_set_interlace_handling(png_);
        png_read_update_info(png_, info_);
        return true;
    }

    [[nodiscard]] bool readRows(png_bytepp rows)
    {
        if (setjmp(png_jmpbuf(png_)) != 0) // NOLINT(cert-err52-cpp): the library's way
            return false;
        png_read_image(png_, rows);
        png_read_end(png_, info_);
        return true;
    }

    [[nodiscard]] PNGTexts texts() const
    {
        png_textp text = nullptr;
        const int count = png_get_text(png_, info_, &text, nullptr);
        PNGTexts result;
        for (int index = 0; index < count; ++index)
            result.append({QByteArray(text[index].key), QByteArray(text[index].text)});
        return result;
    }

    QByteArrayView rest_;
    png_structp png_;
    png_infop info_;
    bool hasAlpha_ = false;
};

class Writer {
public:
    Writer()
        : png_(png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, ignore)),
          info_(png_ ? png_create_info_struct(png_) : nullptr)
    {
    }
    ~Writer() { png_destroy_write_struct(&png_, &info_); }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    [[nodiscard]] QByteArray written(const QImage& image, PNGTexts texts)
    {
        std::vector<png_text> entries;
        for (auto& [keyword, value] : texts) {
            png_text entry = {};
            entry.compression = PNG_TEXT_COMPRESSION_NONE;
            entry.key = keyword.data();
            entry.text = value.data();
            entries.push_back(entry);
        }
        std::vector<png_bytep> rows;
        for (int row = 0; row < image.height(); ++row)
            rows.push_back(const_cast<png_bytep>(image.constScanLine(row))); // the library only reads them
        return info_ && write(image, entries, rows.data()) ? file_ : QByteArray();
    }

private:
    static void add(png_structp png, png_bytep bytes, std::size_t count)
    {
        static_cast<Writer*>(png_get_io_ptr(png))->file_.append(reinterpret_cast<const char*>(bytes), qsizetype(count));
    }

    [[nodiscard]] bool write(const QImage& image, const std::vector<png_text>& texts, png_bytepp rows)
    {
        constexpr int kBits = 8;
        constexpr int kQuick = 3;          // a little larger, in half the time
        if (setjmp(png_jmpbuf(png_)) != 0) // NOLINT(cert-err52-cpp): the library's way
            return false;
        png_set_write_fn(png_, this, add, nullptr);
        png_set_compression_level(png_, kQuick);
        png_set_IHDR(png_, info_, png_uint_32(image.width()), png_uint_32(image.height()), kBits,
                     image.hasAlphaChannel() ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                     PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        png_set_text(png_, info_, texts.data(), int(texts.size()));
        png_write_info(png_, info_);
        png_write_image(png_, rows);
        png_write_end(png_, nullptr);
        return true;
    }

    QByteArray file_;
    png_structp png_;
    png_infop info_;
};

} // namespace

QByteArray thumbnailPNG(const QImage& image, const PNGTexts& texts)
{
    const auto format = image.hasAlphaChannel() ? QImage::Format_RGBA8888 : QImage::Format_RGB888;
    return image.isNull() ? QByteArray() : Writer().written(image.convertToFormat(format), texts);
}

std::optional<ThumbnailPNG> readThumbnailPNG(const QByteArray& file, int longest)
{
    return Reader(file).read(longest);
}

} // namespace tessel::qt
