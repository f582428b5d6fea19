#pragma once

#include <QByteArrayView>
#include <QStringView>

/// Whether a file's name alone says that it is a screenshot which may be offered for deletion.
///
/// `fileName` is the last component of a path, never a whole path. Nothing about the file itself is looked
/// at. A pure function; any thread.
[[nodiscard]] bool isScreenshot(QStringView fileName);

/// The rule's first step on a name that hasn't been decoded: whether the lower-cased name ends with one of
/// the seven extensions. False means that `isScreenshot` says no. Cheap enough for every entry of a folder.
[[nodiscard]] bool hasScreenshotExtension(QByteArrayView utf8FileName);
