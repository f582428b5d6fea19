#include "PngRows.h"

#include "FileDescriptor.h"
#include "LibpngRows.h"
#include "TestImages.h"

#include <QTest>
#include <QtEndian>

#include <png.h>
#include <sys/mman.h>
#include <unistd.h>

using testImages::pngChunk;

namespace {

FileDescriptor fileInMemory(const QByteArray &bytes)
{
    FileDescriptor file(::memfd_create("image", MFD_CLOEXEC));
    if (::write(file.get(), bytes.constData(), size_t(bytes.size())) != bytes.size()) {
        qFatal("Can't write into memory");
    }
    return file;
}

/// All rows, or none if anything is wrong with the file.
template <typename Reader> std::optional<QByteArray> rows(const QByteArray &bytes)
{
    const FileDescriptor file = fileInMemory(bytes);
    Reader reader(file.get());
    if (!reader.readHeader()) {
        return std::nullopt;
    }
    QByteArray all = QByteArray::number(int(reader.channels()));
    for (int y = 0; y < reader.size().height(); ++y) {
        const uchar *const row = reader.readRow();
        if (row == nullptr) {
            return std::nullopt;
        }
        all.append(reinterpret_cast<const char *>(row), reader.size().width() * int(reader.channels()));
    }
    return reader.readEnd() ? std::optional(all) : std::nullopt;
}

bool isAccepted(const QByteArray &bytes)
{
    return rows<PngRows>(bytes).has_value();
}

int channelCount(int colorType)
{
    constexpr std::array counts = {1, 0, 3, 1, 2, 0, 4};
    return counts[size_t(colorType)];
}

/// Slopes with some noise, so that every filter has something to do and every level something to find.
QByteArray pixels(QSize size, int channels)
{
    QByteArray bytes;
    quint32 state = 1;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width() * channels; ++x) {
            state = state * 1664525 + 1013904223;
            bytes += char(x * 3 + y * 5 + (x / 7 % 3 == 0 ? int(state >> 24) : 0));
        }
    }
    return bytes;
}

struct Writing {
    int colorType = PNG_COLOR_TYPE_RGB;
    int filters = PNG_ALL_FILTERS;
    int level = 6;
    size_t chunkSize = 8192;
    bool hasTransparency = false;
};

/// Written by libpng.
QByteArray written(QSize size, const Writing &writing)
{
    QByteArray bytes;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    const auto append = [](png_structp self, png_bytep data, size_t count) {
        static_cast<QByteArray *>(png_get_io_ptr(self))
            ->append(reinterpret_cast<const char *>(data), qsizetype(count));
    };
    png_set_write_fn(png, &bytes, append, nullptr);
    png_set_IHDR(
        png, info, png_uint_32(size.width()), png_uint_32(size.height()), 8, writing.colorType,
        PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    std::array<png_color, 256> palette = {};
    std::array<png_byte, 200> alphas = {};
    for (size_t index = 0; index < palette.size(); ++index) {
        palette[index] = {png_byte(index), png_byte(255 - index), png_byte(index * 7)};
        alphas[index % alphas.size()] = png_byte(index * 11);
    }
    if (writing.colorType == PNG_COLOR_TYPE_PALETTE) {
        png_set_PLTE(png, info, palette.data(), int(palette.size()));
    }
    if (writing.hasTransparency) {
        const png_color_16 color = {.index = 0, .red = 3, .green = 4, .blue = 5, .gray = 8};
        png_set_tRNS(png, info, alphas.data(), int(alphas.size()), &color);
    }
    png_set_filter(png, PNG_FILTER_TYPE_BASE, writing.filters);
    png_set_compression_level(png, writing.level);
    png_set_compression_buffer_size(png, writing.chunkSize);
    png_write_info(png, info);
    const auto stride = qsizetype(size.width()) * channelCount(writing.colorType);
    const QByteArray image = pixels(size, channelCount(writing.colorType));
    for (int y = 0; y < size.height(); ++y) {
        png_write_row(png, reinterpret_cast<png_const_bytep>(image.constData()) + y * stride);
    }
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return bytes;
}

constexpr int signatureSize = 8;

/// The offset of each chunk, and the end.
QList<qsizetype> chunkOffsets(const QByteArray &bytes)
{
    QList<qsizetype> offsets;
    qsizetype offset = signatureSize;
    while (offset < bytes.size()) {
        offsets += offset;
        offset += 12 + qFromBigEndian<quint32>(bytes.constData() + offset);
    }
    return offsets << bytes.size();
}

QByteArray header(quint32 width, quint32 height, int colorType = 2)
{
    QByteArray contents(13, '\0');
    qToBigEndian(width, contents.data());
    qToBigEndian(height, contents.data() + 4);
    contents[8] = 8;
    contents[9] = char(colorType);
    return QByteArray::fromHex("89504e470d0a1a0a") + pngChunk("IHDR", contents);
}

QByteArray packed(const QByteArray &unpacked)
{
    return qCompress(unpacked).sliced(4); // without the length before the stream
}

const QByteArray end = pngChunk("IEND", {});

/// Of two RGB pixels, one over the other.
const QByteArray twoRows = QByteArray::fromHex("00112233"
                                               "00445566");

QByteArray small(const QByteArray &stream, const QByteArray &before = {}, const QByteArray &behind = {})
{
    return header(1, 2) + before + pngChunk("IDAT", stream) + behind + end;
}

QByteArray paletteImage(const QByteArray &chunks)
{
    return header(2, 1, 3) + chunks + pngChunk("IDAT", packed(QByteArray::fromHex("000005"))) + end;
}

} // namespace

class PngRowsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:

    void rowsAreThoseOfLibpng_data()
    {
        QTest::addColumn<int>("colorType");
        QTest::addColumn<bool>("hasTransparency");
        QTest::newRow("gray") << PNG_COLOR_TYPE_GRAY << false;
        QTest::newRow("gray with a transparent one") << PNG_COLOR_TYPE_GRAY << true;
        QTest::newRow("gray and alpha") << PNG_COLOR_TYPE_GRAY_ALPHA << false;
        QTest::newRow("palette") << PNG_COLOR_TYPE_PALETTE << false;
        QTest::newRow("palette with transparency") << PNG_COLOR_TYPE_PALETTE << true;
        QTest::newRow("red, green, blue") << PNG_COLOR_TYPE_RGB << false;
        QTest::newRow("red, green, blue with a transparent one") << PNG_COLOR_TYPE_RGB << true;
        QTest::newRow("red, green, blue and alpha") << PNG_COLOR_TYPE_RGB_ALPHA << false;
    }

    void rowsAreThoseOfLibpng()
    {
        QFETCH(const int, colorType);
        QFETCH(const bool, hasTransparency);
        const auto compare = [](QSize size, const Writing &writing) {
            const QByteArray bytes = written(size, writing);
            const auto expected = rows<LibpngRows>(bytes);
            return expected.has_value() && rows<PngRows>(bytes) == expected;
        };
        Writing writing = {.colorType = colorType, .hasTransparency = hasTransparency};
        constexpr std::array filters = {PNG_FILTER_NONE, PNG_FILTER_SUB,   PNG_FILTER_UP,
                                        PNG_FILTER_AVG,  PNG_FILTER_PAETH, PNG_ALL_FILTERS};
        for (const int filter : filters) {
            writing.filters = filter;
            for (int width = 1; width <= 70; ++width) {
                QVERIFY2(compare({width, 6}, writing), qPrintable(QString::number(width)));
            }
            for (const QSize size : {QSize(1366, 41), QSize(4097, 9), QSize(50'001, 3), QSize(1, 3001)}) {
                QVERIFY2(compare(size, writing), qPrintable(QString::number(size.width())));
            }
        }
        for (writing.level = 0; writing.level <= 9; ++writing.level) {
            for (const size_t chunkSize : {6, 7, 100, 8192, 1'000'000}) {
                writing.chunkSize = chunkSize;
                QVERIFY2(compare({211, 97}, writing), qPrintable(QString::number(writing.level)));
            }
        }
    }

    void piecesOfAnySizeAreOneStream()
    {
        const QByteArray stream = packed(twoRows);
        QByteArray single;
        for (qsizetype at = 0; at < stream.size(); ++at) {
            const QByteArray halves = header(1, 2) + pngChunk("IDAT", stream.left(at)) +
                                      pngChunk("IDAT", {}) + pngChunk("IDAT", stream.mid(at)) + end;
            QVERIFY2(isAccepted(halves), qPrintable(QString::number(at)));
            single += pngChunk("IDAT", {}) + pngChunk("IDAT", stream.mid(at, 1));
        }
        QCOMPARE(rows<PngRows>(header(1, 2) + single + end), rows<PngRows>(small(stream)));
    }

    void whatEndsTooEarlyIsRefused()
    {
        const QByteArray bytes = written({9, 7}, {.chunkSize = 50, .hasTransparency = true});
        QVERIFY(isAccepted(bytes));
        for (qsizetype length = 0; length < bytes.size(); ++length) {
            QVERIFY2(!isAccepted(bytes.left(length)), qPrintable(QString::number(length)));
        }
    }

    void aFileThatShrinksWhileItIsReadIsRefused()
    {
        const QByteArray bytes = written({900, 700}, {.level = 0});
        const FileDescriptor file = fileInMemory(bytes);
        PngRows reader(file.get());
        QVERIFY(reader.readHeader());
        QVERIFY(reader.readRow() != nullptr);
        QCOMPARE(::ftruncate(file.get(), bytes.size() / 2), 0);
        int count = 1;
        while (count < 700 && reader.readRow() != nullptr) {
            ++count;
        }
        QVERIFY(count < 700);
    }

    void aWrongChecksumIsRefused_data()
    {
        QTest::addColumn<QByteArray>("type");
        for (const char *const type : {"IHDR", "PLTE", "tRNS", "IDAT", "IEND"}) {
            QTest::newRow(type) << QByteArray(type);
        }
    }

    void aWrongChecksumIsRefused()
    {
        QFETCH(const QByteArray, type);
        QByteArray bytes = written({9, 7}, {.colorType = PNG_COLOR_TYPE_PALETTE, .hasTransparency = true});
        QVERIFY(isAccepted(bytes));
        const auto offsets = chunkOffsets(bytes);
        for (qsizetype chunk = 0; chunk + 1 < offsets.size(); ++chunk) {
            if (bytes.mid(offsets[chunk] + 4, 4) == type) {
                const qsizetype last = offsets[chunk + 1] - 1;
                bytes[last] = char(bytes[last] ^ 1);
            }
        }
        QVERIFY(!isAccepted(bytes));
    }

    void aBrokenStreamIsRefused()
    {
        const QByteArray stream = packed(twoRows);
        QVERIFY(isAccepted(small(stream)));
        QByteArray wrongSum = stream;
        wrongSum.back() = char(wrongSum.back() ^ 1);
        QVERIFY2(!isAccepted(small(wrongSum)), "Adler-32");
        QVERIFY2(!isAccepted(small(stream.chopped(4))), "without Adler-32");
        QVERIFY2(!isAccepted(small({})), "empty");
        QVERIFY2(!isAccepted(small("x")), "a single byte");
        const auto withHeader = [&stream](const char *hex) {
            return small(QByteArray::fromHex(hex) + stream.mid(2));
        };
        QVERIFY2(isAccepted(withHeader("7801")), "another sound header");
        QVERIFY2(!isAccepted(withHeader("7802")), "header checksum");
        QVERIFY2(!isAccepted(withHeader("7820")), "preset dictionary");
        QVERIFY2(!isAccepted(withHeader("7705")), "no deflate");
        QVERIFY2(!isAccepted(withHeader("881c")), "window too large");
        QVERIFY2(!isAccepted(withHeader("7801ff")), "no such block");
    }

    void asManyRowsAsTheHeaderSays()
    {
        QVERIFY2(!isAccepted(small(packed(twoRows.chopped(1)))), "a byte is missing");
        QVERIFY2(isAccepted(small(packed(twoRows + "surplus"))), "as libpng");
        QVERIFY2(isAccepted(small(packed(twoRows), {}, pngChunk("IDAT", "surplus"))), "as libpng");
        const QByteArray bomb = packed(twoRows + QByteArray(200'000'000, '\0'));
        QVERIFY2(isAccepted(small(bomb)), "what is behind the rows isn't unpacked");
        QVERIFY2(!isAccepted(small(packed(twoRows + "surplus").chopped(5))), "the surplus breaks off");
    }

    void impossibleSizesAreRefused()
    {
        const QByteArray pixels = pngChunk("IDAT", packed(twoRows)) + end;
        QVERIFY(isAccepted(header(1, 2) + pixels));
        QVERIFY(!isAccepted(header(0, 2) + pixels));
        QVERIFY(!isAccepted(header(1, 0) + pixels));
        QVERIFY(!isAccepted(header(100'000, 100'000) + pixels));
        QVERIFY(!isAccepted(header(1'000'001, 1) + pixels));
        QVERIFY(!isAccepted(header(0x7FFF'FFFF, 0x7FFF'FFFF) + pixels));
        QVERIFY(!isAccepted(header(0xFFFF'FFFF, 1) + pixels));
    }

    void aFilterThatDoesNotExistIsRefused()
    {
        QVERIFY(isAccepted(small(packed(QByteArray::fromHex("0411223304445566")))));
        QVERIFY(!isAccepted(small(packed(QByteArray::fromHex("0011223305445566")))));
        QVERIFY(!isAccepted(small(packed(QByteArray::fromHex("ff11223300445566")))));
    }

    void thePaletteMustBeThere()
    {
        const QByteArray palette = pngChunk("PLTE", "abcdef");
        QVERIFY(!isAccepted(paletteImage({})));
        QVERIFY(!isAccepted(paletteImage(pngChunk("PLTE", {}))));
        QVERIFY(!isAccepted(paletteImage(pngChunk("PLTE", "abcd"))));
        QVERIFY(!isAccepted(paletteImage(pngChunk("PLTE", QByteArray(771, 'a')))));
        QVERIFY(!isAccepted(paletteImage(palette + palette)));
        QCOMPARE(rows<PngRows>(paletteImage(palette)), QByteArray("3abc\0\0\0", 7)); // 5 is past its end
        QCOMPARE(rows<PngRows>(paletteImage(palette)), rows<LibpngRows>(paletteImage(palette)));
    }

    void transparencyThatDoesNotFitCountsForNothing()
    {
        const QByteArray palette = pngChunk("PLTE", "abcdef");
        const QByteArray alpha = pngChunk("tRNS", "\x01");
        QVERIFY(rows<PngRows>(paletteImage(palette + alpha))->startsWith("4abc\x01"));
        const QByteArrayList misfits = {
            alpha + palette, palette + pngChunk("tRNS", "123"), palette + pngChunk("tRNS", {}),
            palette + alpha + pngChunk("tRNS", "\x02")};
        for (const QByteArray &misfit : misfits) {
            QVERIFY(isAccepted(paletteImage(misfit)));
            QCOMPARE(rows<PngRows>(paletteImage(misfit)), rows<LibpngRows>(paletteImage(misfit)));
        }
        QVERIFY(rows<PngRows>(small(packed(twoRows), pngChunk("tRNS", "12345")))->startsWith('3'));
    }

    void unknownChunksMatterOnlyIfTheySaySo()
    {
        const QByteArray stream = packed(twoRows);
        QVERIFY(isAccepted(small(stream, pngChunk("teXT", "text"), pngChunk("abCd", "more"))));
        QVERIFY(!isAccepted(small(stream, pngChunk("ABCD", {}))));
        QVERIFY(!isAccepted(small(stream, {}, pngChunk("ABCD", {}))));
        QVERIFY2(!isAccepted(small(stream, pngChunk("a.Cd", {}))), "no name");
        const QByteArray ihdr = header(1, 2).mid(signatureSize);
        QVERIFY2(!isAccepted(small(stream, ihdr)), "a second header");
        QVERIFY2(!isAccepted(header(1, 2) + end), "no pixels");
        QVERIFY2(!isAccepted(header(1, 2).left(signatureSize) + end), "no header");
    }

    void chunksLongerThanTheFileAreRefused_data()
    {
        QTest::addColumn<QByteArray>("length");
        for (const char *const length : {"00001000", "7fffffff", "80000000", "ffffffff"}) {
            QTest::newRow(length) << QByteArray::fromHex(length);
        }
    }

    void chunksLongerThanTheFileAreRefused()
    {
        QFETCH(const QByteArray, length);
        for (const char *const type : {"IDAT", "PLTE", "tRNS", "abCd", "IEND"}) {
            const QByteArray chunk = length + type + packed(twoRows);
            QVERIFY2(!isAccepted(header(1, 2) + chunk), type);
            QVERIFY2(!isAccepted(header(1, 2) + pngChunk("IDAT", packed(twoRows)) + chunk + end), type);
        }
    }
};

QTEST_GUILESS_MAIN(PngRowsTest)
#include "PngRowsTest.moc"
