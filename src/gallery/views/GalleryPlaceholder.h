#pragma once

#include "GalleryMode.h"

#include <QWidget>

#include <vector>

class TextLabel;

/// What stands in a gallery where no screenshots are: that they are being listed, or that there are none.
/// Its contents are centred in it.
class GalleryPlaceholder final : public QWidget {
    Q_OBJECT

public:
    enum class State { Loading, Empty };

    explicit GalleryPlaceholder(GalleryMode mode, QWidget *parent = nullptr);

    void setState(State state);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    /// What one state shows, from the top down.
    using Column = std::vector<QWidget *>;

    void layOut(const Column &column) const;

    GalleryMode m_mode;
    Column m_loading;
    Column m_empty;
};
