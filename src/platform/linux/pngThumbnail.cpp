#include "pngThumbnail.h"

#include "AreaAverage.h"
#include "thumbnailSize.h"

#include <png.h>
#include <unistd.h>

#include <cerrno>
#include <csetjmp>
#include <vector>

namespace {

/// Longer chunks beside the pixels are refused unread.
constexpr png_alloc_size_t longestChunk = 8'000'000;

[[noreturn]] void handleError(png_structp png, png_const_charp /*message*/)
{
    png_longjmp(png, 1);
}

void ignoreWarning(png_structp /*png*/, png_const_charp /*message*/)
{
}

/// libpng reports an error by a longjmp out of the call that failed. It ends here, at once: between it and
/// this frame are only libpng's own frames, its callbacks and `calls`, none of which may own anything with a
/// destructor. Nobody else calls what can fail.
template <typename Calls> bool succeeds(png_structp png, const Calls &calls)
{
    // NOLINTNEXTLINE(cert-err52-cpp): a C library's only way to fail.
    if (setjmp(png_jmpbuf(png)) != 0) {
        return false;
    }
    calls();
    return true;
}

/// A PNG's rows as red, green, blue and, where there is transparency, alpha, of 8 bits each. Each step
/// returns false if the file is damaged or ends too early; the reader is of no further use then.
class PngReader final {
public:
    explicit PngReader(int descriptor)
        : m_descriptor(descriptor),
          m_png(png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, &handleError, &ignoreWarning)),
          m_info(m_png != nullptr ? png_create_info_struct(m_png) : nullptr)
    {
    }

    ~PngReader() { png_destroy_read_struct(&m_png, &m_info, nullptr); }
    Q_DISABLE_COPY_MOVE(PngReader)

    [[nodiscard]] bool readHeader()
    {
        return m_info != nullptr && succeeds(m_png, [this] {
                   png_set_read_fn(m_png, this, &PngReader::readBytes);
                   png_set_user_limits(m_png, AreaAverage::longestSide, AreaAverage::longestSide);
                   png_set_chunk_malloc_max(m_png, longestChunk);
                   // Texts, profiles and the like are skipped: they could unpack to anything.
                   png_set_keep_unknown_chunks(m_png, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
                   png_read_info(m_png, m_info);
                   png_set_expand(m_png); // palette, few bits, a transparent colour
                   png_set_scale_16(m_png);
                   png_set_gray_to_rgb(m_png);
                   png_read_update_info(m_png, m_info);
               });
    }

    [[nodiscard]] bool readRow(uchar *row)
    {
        return succeeds(m_png, [this, row] { png_read_row(m_png, row, nullptr); });
    }

    /// The checksum of the pixels and the chunks behind them.
    [[nodiscard]] bool readEnd()
    {
        return succeeds(m_png, [this] { png_read_end(m_png, nullptr); });
    }

    // Of the header that was read.
    [[nodiscard]] QSize size() const
    {
        return {
            static_cast<int>(png_get_image_width(m_png, m_info)),
            static_cast<int>(png_get_image_height(m_png, m_info))};
    }

    [[nodiscard]] bool isInterlaced() const
    {
        return png_get_interlace_type(m_png, m_info) != PNG_INTERLACE_NONE;
    }

    [[nodiscard]] AreaAverage::Channels channels() const
    {
        return (png_get_color_type(m_png, m_info) & PNG_COLOR_MASK_ALPHA) != 0 ? AreaAverage::Channels::Rgba
                                                                               : AreaAverage::Channels::Rgb;
    }

    [[nodiscard]] size_t rowBytes() const { return png_get_rowbytes(m_png, m_info); }

private:
    static void readBytes(png_structp png, png_bytep bytes, size_t count)
    {
        auto &reader = *static_cast<PngReader *>(png_get_io_ptr(png));
        while (count > 0) {
            const ssize_t got = ::pread(reader.m_descriptor, bytes, count, reader.m_position);
            if (got > 0) {
                bytes += got;
                count -= static_cast<size_t>(got);
                reader.m_position += got;
            } else if (got == 0 || errno != EINTR) {
                png_error(png, "The file can't be read on");
            }
        }
    }

    int m_descriptor;
    off_t m_position = 0;
    png_structp m_png;
    png_infop m_info;
};

} // namespace

bool isInterlacedPng(int descriptor)
{
    // The header comes first, and this is its last byte.
    constexpr off_t position = 28;
    uchar method = 0;
    return ::pread(descriptor, &method, 1, position) == 1 && method != PNG_INTERLACE_NONE;
}

std::optional<QImage> pngThumbnail(int descriptor, int maximumPixelSize)
{
    PngReader reader(descriptor);
    if (!reader.readHeader() || reader.isInterlaced() || !isAcceptableImageSize(reader.size())) {
        return std::nullopt;
    }
    const QSize size = reader.size();
    AreaAverage average(size, thumbnailSize(size, maximumPixelSize), reader.channels());
    if (average.image().isNull()) {
        return std::nullopt;
    }
    std::vector<uchar> row(reader.rowBytes());
    for (int y = 0; y < size.height(); ++y) {
        if (!reader.readRow(row.data())) {
            return std::nullopt;
        }
        average.addRow(row.data());
    }
    if (!reader.readEnd()) {
        return std::nullopt;
    }
    return average.image();
}
