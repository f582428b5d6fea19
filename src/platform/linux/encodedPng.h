#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>

/// A text in a PNG, in Latin 1. A keyword has 1 to 79 characters.
struct PngText {
    QByteArray keyword;
    QByteArray text;
};

/// The image as a PNG of 8 bits per channel, without alpha if it has none, and the texts before its pixels.
/// Packed for speed rather than for size. Empty if
/// there is no memory for it. Any thread.
[[nodiscard]] QByteArray encodedPng(const QImage &image, const QList<PngText> &texts);
