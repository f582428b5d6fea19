#pragma once

#include "FunctionRef.h"
#include "Image.h"

#include <QList>
#include <QStringList>

/// Images on their way from their files to the clipboard.
///
/// Made on the main thread when the copy is asked for. Reading may take as long as the disk takes, so copies
/// may overlap: the one that was asked for last stays on the clipboard, whichever is read first.
class ImageCopy final {
public:
    ImageCopy();

    /// Loads what `write` needs: an image's bytes if it is the only one that loads, else no more of each
    /// file than tells that it is an image. `failed` gets the path of each that doesn't load, in their order.
    /// Any thread; blocks for as long as the disk takes.
    [[nodiscard]] static QList<Image>
    load(const QStringList &paths, FunctionRef<void(const QString &path)> failed);

    /// Puts the images on the clipboard, instead of what lies there. False, and the clipboard left as it is,
    /// if there are none or a copy that was asked for later has already been written. Main thread.
    bool write(const QList<Image> &images) const;

private:
    /// Whether a copy that was asked for later has already been written.
    [[nodiscard]] bool isSuperseded() const;

    quint64 m_turn;
};
