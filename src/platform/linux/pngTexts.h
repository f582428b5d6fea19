#pragma once

#include <QByteArray>
#include <QHash>

#include <optional>

/// The texts of a PNG by their keywords: those of the chunks tEXt, and of zTXt, which the toolkit writes for
/// longer ones. Texts of more than 64 KiB are left out; of several with one keyword the first counts. None
/// if the file isn't a PNG, or is damaged before its pixels. Of what is behind the pixels nothing is read.
/// The descriptor's position stays as it was. Any thread.
[[nodiscard]] std::optional<QHash<QByteArray, QByteArray>> pngTexts(int descriptor);
