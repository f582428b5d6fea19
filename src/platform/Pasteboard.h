#pragma once

#include "Image.h"

#include <QList>

/// The session's clipboard. Main thread, after the application object exists.
///
/// An image lies there as its own bytes under its own type and is decoded only if another program asks for a
/// type that it hasn't got (PNG or BMP). The bytes are held in memory until something else is copied, so a
/// screenshot that has gone to the Trash can still be pasted. No text and no file name lie beside it:
/// programs that take both paste twice, and clipboard managers keep the text instead of the image.
class Pasteboard final {
public:
    static Pasteboard &general();

    void clearContents();

    /// Puts one image on the clipboard; false, and nothing written, if there isn't exactly one.
    bool writeObjects(const QList<Image> &images);
};
