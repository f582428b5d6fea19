#pragma once

#include "Image.h"

#include <QList>

/// The session's clipboard. Main thread, after the application object exists.
///
/// An image lies there as its own bytes under its own type and is decoded only if another program asks for a
/// type that it hasn't got (PNG or BMP). The bytes are held in memory until something else is copied, so a
/// screenshot that has gone to the Trash can still be pasted. No text and no file name lie beside it:
/// programs that take both paste twice, and clipboard managers keep the text instead of the image.
///
/// Several images lie there as the list of their files, because the clipboard has no place for more than one
/// image: as `text/uri-list`, and as `x-special/gnome-copied-files`, which is all that GNOME's, Xfce's and
/// Cinnamon's file managers look for. No image lies beside the list, or it would be pasted twice.
class Pasteboard final {
public:
    static Pasteboard &general();

    void clearContents();

    /// Puts the images on the clipboard. Only one alone needs its bytes; an image that just refers to its
    /// file lies there as that file. False, and nothing written, if there are none.
    bool writeObjects(const QList<Image> &images);
};
