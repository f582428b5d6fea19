#pragma once

#include <QWidget>

class ScreenshotGalleryView;
class TextLabel;

/// The page with a gallery of its own, whose list fades out at the lower end.
class GallerySettingsPage final : public QWidget {
    Q_OBJECT

public:
    explicit GallerySettingsPage(QWidget *parent = nullptr);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    TextLabel *m_heading;
    ScreenshotGalleryView *m_gallery;
    QWidget *m_fade;
};
