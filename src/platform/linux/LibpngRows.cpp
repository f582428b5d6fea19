#include "LibpngRows.h"

#include <png.h>
#include <unistd.h>

#include <cerrno>
#include <csetjmp>

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

} // namespace

LibpngRows::LibpngRows(int descriptor)
    : m_descriptor(descriptor),
      m_png(png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, &handleError, &ignoreWarning)),
      m_info(m_png != nullptr ? png_create_info_struct(m_png) : nullptr)
{
}

LibpngRows::~LibpngRows()
{
    png_destroy_read_struct(&m_png, &m_info, nullptr);
}

bool LibpngRows::readHeader()
{
    const bool isRead = m_info != nullptr && succeeds(m_png, [this] {
                            png_set_read_fn(m_png, this, &LibpngRows::readBytes);
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
    if (!isRead || isInterlaced()) {
        return false;
    }
    m_row.resize(png_get_rowbytes(m_png, m_info));
    return true;
}

const uchar *LibpngRows::readRow()
{
    return succeeds(m_png, [this] { png_read_row(m_png, m_row.data(), nullptr); }) ? m_row.data() : nullptr;
}

/// The checksum of the pixels and the chunks behind them.
bool LibpngRows::readEnd()
{
    return succeeds(m_png, [this] { png_read_end(m_png, nullptr); });
}

QSize LibpngRows::size() const
{
    return {
        static_cast<int>(png_get_image_width(m_png, m_info)),
        static_cast<int>(png_get_image_height(m_png, m_info))};
}

AreaAverage::Channels LibpngRows::channels() const
{
    return (png_get_color_type(m_png, m_info) & PNG_COLOR_MASK_ALPHA) != 0 ? AreaAverage::Channels::Rgba
                                                                           : AreaAverage::Channels::Rgb;
}

bool LibpngRows::isInterlaced() const
{
    return png_get_interlace_type(m_png, m_info) != PNG_INTERLACE_NONE;
}

void LibpngRows::readBytes(png_struct_def *png, uchar *bytes, size_t count)
{
    auto &rows = *static_cast<LibpngRows *>(png_get_io_ptr(png));
    while (count > 0) {
        const ssize_t got = ::pread(rows.m_descriptor, bytes, count, rows.m_position);
        if (got > 0) {
            bytes += got;
            count -= static_cast<size_t>(got);
            rows.m_position += got;
        } else if (got == 0 || errno != EINTR) {
            png_error(png, "The file can't be read on");
        }
    }
}
