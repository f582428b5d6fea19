#pragma once

#include <QPointer>

class ThumbnailLoader;

/// While it exists a gallery is on screen, and thumbnails are kept. Main thread.
class ThumbnailUse final {
public:
    explicit ThumbnailUse(ThumbnailLoader &loader);
    ~ThumbnailUse();
    Q_DISABLE_COPY_MOVE(ThumbnailUse)

private:
    QPointer<ThumbnailLoader> m_loader;
};
