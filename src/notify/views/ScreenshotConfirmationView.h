#pragma once

#include <QImage>
#include <QString>
#include <QWidget>

#include <functional>
#include <optional>

class PushButton;
class ScreenshotPreview;

/// Asks what to do with a new screenshot: delete it now, delete it after the timeframe, or keep it. Its host
/// is the confirmation popover; what the answers do to the file, and that the popover closes, is in the
/// actions that it is given.
///
/// The preview is loaded in the background when the view appears. One that can't be loaded leaves the
/// spinner, and the buttons work all the same. The view is 300 points wide and grows when the preview comes.
/// Main thread.
class ScreenshotConfirmationView final : public QWidget {
    Q_OBJECT

public:
    ScreenshotConfirmationView(
        QString screenshotPath, qint64 timeframeInMinutes, std::function<void()> onDeleteNow,
        std::function<void()> onDeleteLater, std::function<void()> onKeep, QWidget *parent = nullptr);

    /// None until loading succeeds: in pixels, upright, its longer side at most 600.
    [[nodiscard]] const std::optional<QImage> &previewImage() const { return m_previewImage; }

    [[nodiscard]] QSize sizeHint() const override;

    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    void previewImageChanged();

protected:
    void showEvent(QShowEvent *event) override;

private:
    void layOut();
    void loadPreview();
    void setPreviewImage(const QImage &image);
    void fadeButtonsIn();

    QString m_screenshotPath;
    qint64 m_timeframeInMinutes;
    std::function<void()> m_onDeleteNow;
    std::function<void()> m_onDeleteLater;
    std::function<void()> m_onKeep;
    std::optional<QImage> m_previewImage;

    ScreenshotPreview *m_preview;
    PushButton *m_deleteNowButton;
    PushButton *m_deleteLaterButton;
    PushButton *m_keepButton;
    bool m_hasAppeared = false;
};
