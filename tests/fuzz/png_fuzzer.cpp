// A PNG can come from anywhere. What the product's own reader accepts, libpng must accept too, with the same
// rows. Of the inputs, half are given as they are. In a quarter each chunk gets its right checksum, so that
// what the checksums protect is reached, and a quarter are the palette, transparency and pixels of an
// otherwise sound image. One difference is known: a deflate block whose table leaves codes unused is no error
// to our unpacker unless one of them occurs. The pixels' checksum must be right all the same.

#include "FileDescriptor.h"
#include "LibpngRows.h"
#include "PngRows.h"

#include <QByteArray>
#include <QtEndian>

#include <isa-l/crc.h>
#include <sys/mman.h>
#include <unistd.h>
#include <zlib.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string_view>

namespace {

/// More would only be slow.
constexpr qint64 mostPixels = 1 << 20;

void correctChecksums(QByteArray &file)
{
    constexpr qint64 signatureSize = 8;
    constexpr qint64 overhead = 12;
    auto *const bytes = reinterpret_cast<uchar *>(file.data());
    for (qint64 at = signatureSize; at + overhead <= file.size();) {
        const qint64 length = qFromBigEndian<quint32>(bytes + at);
        if (at + overhead + length > file.size()) {
            return;
        }
        uchar *const checked = bytes + at + 4;
        const auto checkedSize = static_cast<quint64>(length + 4);
        qToBigEndian(quint32(crc32_gzip_refl(0, checked, checkedSize)), checked + checkedSize);
        at += overhead + length;
    }
}

QByteArray bigEndian(quint32 number)
{
    QByteArray bytes(4, Qt::Uninitialized);
    qToBigEndian(number, bytes.data());
    return bytes;
}

/// Without the checksum's value.
QByteArray chunk(const QByteArray &type, const QByteArray &contents)
{
    return bigEndian(quint32(contents.size())) + type + contents + bigEndian(0);
}

/// The first bytes say how large it is, of which kind, and how the rest is shared out.
QByteArray imageOf(const QByteArray &input)
{
    constexpr qsizetype choices = 6;
    constexpr std::array colorTypes = {'\0', '\2', '\3', '\4', '\6'};
    const auto choice = [&input](qsizetype index) { return uchar(input[index]); };
    const QByteArray data = input.sliced(choices);
    const QByteArray palette = data.left(choice(3));
    const QByteArray transparency = data.mid(palette.size(), choice(4) % 8);
    const QByteArray pixels = qCompress(data.mid(palette.size() + transparency.size())).sliced(4);
    QByteArray file = QByteArray::fromHex("89504e470d0a1a0a") +
                      chunk(
                          "IHDR", bigEndian(choice(0) % 40 + 1) + bigEndian(choice(1) % 8 + 1) + '\x08' +
                                      colorTypes[choice(2) % colorTypes.size()] + QByteArray(3, '\0'));
    if (!palette.isEmpty()) {
        file += chunk("PLTE", palette);
    }
    if (!transparency.isEmpty()) {
        file += chunk("tRNS", transparency);
    }
    const qsizetype step = choice(5) + 1;
    for (qsizetype at = 0; at < pixels.size(); at += step) {
        file += chunk("IDAT", pixels.mid(at, step));
    }
    return file + chunk("IEND", {});
}

FileDescriptor fileInMemory(const QByteArray &bytes)
{
    FileDescriptor file(::memfd_create("image", MFD_CLOEXEC));
    if (::write(file.get(), bytes.constData(), static_cast<size_t>(bytes.size())) != bytes.size()) {
        std::abort();
    }
    return file;
}

struct Rows {
    QSize size;
    AreaAverage::Channels channels;
    QByteArray bytes;
    bool operator==(const Rows &) const = default;
};

template <typename Reader> std::optional<Rows> read(int descriptor)
{
    Reader reader(descriptor);
    if (!reader.readHeader() || qint64(reader.size().width()) * reader.size().height() > mostPixels) {
        return std::nullopt;
    }
    Rows rows = {.size = reader.size(), .channels = reader.channels(), .bytes = {}};
    for (int y = 0; y < rows.size.height(); ++y) {
        const uchar *const row = reader.readRow();
        if (row == nullptr) {
            return std::nullopt;
        }
        rows.bytes.append(
            reinterpret_cast<const char *>(row), qsizetype(rows.size.width()) * int(rows.channels));
    }
    return reader.readEnd() ? std::optional(rows) : std::nullopt;
}

QByteArray packedPixels(int descriptor)
{
    QByteArray packed;
    PngChunks chunks(descriptor);
    bool isGood = chunks.readSignature();
    while (isGood && chunks.readHeader() && chunks.type() != PngChunks::type("IEND")) {
        const auto before = packed.size();
        if (chunks.type() == PngChunks::type("IDAT")) {
            packed.resize(before + qsizetype(chunks.left()));
            isGood = chunks.read(reinterpret_cast<uchar *>(packed.data()) + before, chunks.left());
        }
        chunks.jumpOver();
    }
    return packed;
}

bool hasIncompleteCode(int descriptor)
{
    QByteArray packed = packedPixels(descriptor);
    z_stream stream = {};
    if (inflateInit(&stream) != Z_OK) {
        std::abort();
    }
    stream.next_in = reinterpret_cast<uchar *>(packed.data());
    stream.avail_in = static_cast<uInt>(packed.size());
    std::array<uchar, 4096> unpacked;
    int result = Z_OK;
    while (result == Z_OK) {
        stream.next_out = unpacked.data();
        stream.avail_out = unpacked.size();
        result = inflate(&stream, Z_NO_FLUSH);
    }
    const std::string_view message = stream.msg != nullptr ? stream.msg : "";
    const bool isIncomplete = message.ends_with("set"); // of lengths, literals or distances
    inflateEnd(&stream);
    return isIncomplete;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    if (size == 0) {
        return 0;
    }
    QByteArray input(reinterpret_cast<const char *>(bytes), qsizetype(size));
    const int way = input.back() % 4;
    if (way == 0 && input.size() > 6) {
        input = imageOf(input);
    }
    if (way % 2 == 0) {
        correctChecksums(input);
    }
    const FileDescriptor file = fileInMemory(input);
    const auto ours = read<PngRows>(file.get());
    if (!ours) {
        return 0;
    }
    const auto libpngs = read<LibpngRows>(file.get());
    if (libpngs ? *ours != *libpngs : !hasIncompleteCode(file.get())) {
        std::abort();
    }
    return 0;
}
