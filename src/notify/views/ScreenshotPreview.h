#pragma once

#include <QImage>
#include <QLabel>

class Spinner;

/// The preview of one screenshot: the image fitted into 268 × 150 points, or, until there is one, a
/// placeholder of 100 points with a spinner. An image for assistive programs.
class ScreenshotPreview final : public QLabel {
    Q_OBJECT

public:
    static constexpr int greatestHeight = 150;
    static constexpr int placeholderHeight = 100;

    explicit ScreenshotPreview(QWidget *parent = nullptr);

    /// Takes the spinner's place. The widget's height changes with it.
    void setImage(const QImage &image);

    /// Where the image or the placeholder is painted.
    [[nodiscard]] QRect frame() const;

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }

    [[nodiscard]] int heightForWidth(int width) const override;

    [[nodiscard]] QSize sizeHint() const override { return {0, heightForWidth(width())}; }

    [[nodiscard]] QSize minimumSizeHint() const override { return {0, 0}; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void paintImage(QPainter &painter);

    /// The image at the size and the device pixel ratio that it was last painted at.
    QImage m_scaledImage;
    Spinner *m_spinner;
};
