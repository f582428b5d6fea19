#pragma once

#include "Error.h"
#include "FileState.h"
#include "ImageFormat.h"

#include <QFile>

#include <memory>

class QUrl;

/// A regular file that begins like an image, open for reading.
struct ImageFile {
    std::unique_ptr<QFile> file;
    /// As the system takes it.
    QByteArray path;
    ImageFormat format = ImageFormat::Png;
    /// When it was opened.
    FileState state;

    /// Never blocks on a pipe or a device: those are refused, in the domain of `Image`.
    [[nodiscard]] static Result<ImageFile> open(const QUrl &url);
};
