#include "pngTexts.h"

#include "PngChunks.h"

#include <isa-l/igzip_lib.h>

#include <memory>

namespace {

constexpr qsizetype longestText = qsizetype(64) * 1024;

std::optional<QByteArray> unpacked(QByteArrayView packed)
{
    const auto state = std::make_unique_for_overwrite<inflate_state>();
    isal_inflate_init(state.get());
    QByteArray text(longestText, Qt::Uninitialized);
    state->crc_flag = ISAL_ZLIB;
    // The unpacker doesn't write where it reads, but says so nowhere.
    state->next_in = const_cast<uint8_t *>(reinterpret_cast<const uint8_t *>(packed.data()));
    state->avail_in = static_cast<uint32_t>(packed.size());
    state->next_out = reinterpret_cast<uint8_t *>(text.data());
    state->avail_out = static_cast<uint32_t>(text.size());
    if (isal_inflate_stateless(state.get()) != ISAL_DECOMP_OK) {
        return std::nullopt;
    }
    text.truncate(state->total_out);
    return text;
}

/// Of a chunk's contents: the keyword, a zero, for zTXt the method of compression, which is 0, and the text.
void add(QHash<QByteArray, QByteArray> &texts, const QByteArray &contents, bool isPacked)
{
    const qsizetype end = contents.indexOf('\0');
    const QByteArray keyword = contents.first(std::max(end, qsizetype(0)));
    if (keyword.isEmpty() || texts.contains(keyword)) {
        return;
    }
    if (!isPacked) {
        texts.insert(keyword, contents.sliced(end + 1));
    } else if (contents.size() > end + 2 && contents.at(end + 1) == '\0') {
        if (const auto text = unpacked(QByteArrayView(contents).sliced(end + 2))) {
            texts.insert(keyword, *text);
        }
    }
}

} // namespace

std::optional<QHash<QByteArray, QByteArray>> pngTexts(int descriptor)
{
    PngChunks chunks(descriptor);
    if (!chunks.readSignature()) {
        return std::nullopt;
    }
    QHash<QByteArray, QByteArray> texts;
    while (chunks.readHeader()) {
        if (chunks.type() == PngChunks::type("IDAT")) {
            return texts;
        }
        const bool isPacked = chunks.type() == PngChunks::type("zTXt");
        if ((!isPacked && chunks.type() != PngChunks::type("tEXt")) || chunks.left() > size_t(longestText)) {
            chunks.jumpOver();
            continue;
        }
        QByteArray contents(static_cast<qsizetype>(chunks.left()), Qt::Uninitialized);
        if (!chunks.read(reinterpret_cast<uchar *>(contents.data()), chunks.left()) || !chunks.finish()) {
            return std::nullopt;
        }
        add(texts, contents, isPacked);
    }
    return std::nullopt;
}
