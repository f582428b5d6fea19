#pragma once

#include "AreaAverage.h"

#include <QSize>

#include <sys/types.h>

#include <vector>

// As libpng declares them, so that its header stays in few files.
struct png_struct_def;
struct png_info_def;

/// As `PngRows`, for every PNG that isn't interlaced, by libpng: what has 16 bits per channel, or few.
/// Texts, profiles and the like are skipped.
class LibpngRows final {
public:
    explicit LibpngRows(int descriptor);
    ~LibpngRows();
    Q_DISABLE_COPY_MOVE(LibpngRows)

    [[nodiscard]] bool readHeader();

    // Of the header that was read.
    [[nodiscard]] QSize size() const;
    [[nodiscard]] AreaAverage::Channels channels() const;

    [[nodiscard]] const uchar *readRow();
    [[nodiscard]] bool readEnd();

private:
    static void readBytes(png_struct_def *png, uchar *bytes, size_t count);
    [[nodiscard]] bool isInterlaced() const;

    int m_descriptor;
    off_t m_position = 0;
    png_struct_def *m_png;
    png_info_def *m_info;
    std::vector<uchar> m_row;
};
