#include "ImageCopy.h"

#include "Pasteboard.h"

namespace {

/// Which copies there were, by their place in the order of asking. The clipboard is one for the whole
/// program, and so is this.
struct Turns {
    quint64 lastAskedFor = 0;
    quint64 lastWritten = 0;
};

Turns &turns()
{
    static Turns instance;
    return instance;
}

} // namespace

ImageCopy::ImageCopy() : m_turn(++turns().lastAskedFor)
{
}

QList<Image> ImageCopy::load(const QStringList &paths, FunctionRef<void(const QString &path)> failed)
{
    QList<Image> images;
    for (const QString &path : paths) {
        const QUrl url = QUrl::fromLocalFile(path);
        if (auto image = paths.size() == 1 ? Image::contentsOf(url) : Image::byReferencing(url)) {
            images.append(*std::move(image));
        } else {
            failed(path);
        }
    }
    // Of several only one is an image, and one lies on the clipboard as its bytes.
    if (images.size() == 1 && paths.size() > 1) {
        return load({images.constFirst().url.toLocalFile()}, failed);
    }
    return images;
}

bool ImageCopy::write(const QList<Image> &images) const
{
    if (images.isEmpty() || isSuperseded()) {
        return false;
    }
    turns().lastWritten = m_turn;
    Pasteboard &pasteboard = Pasteboard::general();
    pasteboard.clearContents();
    return pasteboard.writeObjects(images);
}

bool ImageCopy::isSuperseded() const
{
    return turns().lastWritten > m_turn;
}
