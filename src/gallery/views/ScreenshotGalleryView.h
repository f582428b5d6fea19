#pragma once

#include "FolderAccessCheck.h"
#include "GalleryConfiguration.h"
#include "GalleryLayout.h"

#include <QPointer>
#include <QWidget>

#include <functional>
#include <memory>

class ScreenshotGalleryViewModel;
class Sheet;
struct ScreenshotItem;

/// The whole gallery, in the popover or in a window: shows the state of its model, which it owns, and calls
/// its operations. It lists the folders each time it appears; what it showed before stays until then.
///
/// Its hosts are the popover under the status item, the gallery's window and the settings' page; each gives
/// its configuration. Questions and confirmations stand as sheets inside the host's window. Main thread.
///
/// It has the keyboard, without a focus ring, while there is no grid to have it.
class ScreenshotGalleryView final : public QWidget {
    Q_OBJECT

public:
    /// `onExpandToFull` opens the gallery's window; `onClosePopover` closes the popover that the view lives
    /// in. A view in a window needs neither.
    explicit ScreenshotGalleryView(
        const GalleryConfiguration &configuration, std::function<void()> onExpandToFull = {},
        std::function<void()> onClosePopover = {}, QWidget *parent = nullptr);
    ~ScreenshotGalleryView() override;
    Q_DISABLE_COPY_MOVE(ScreenshotGalleryView)

    [[nodiscard]] GalleryMode mode() const { return m_mode; }

    [[nodiscard]] ScreenshotGalleryViewModel &viewModel() const { return *m_viewModel; }

    [[nodiscard]] GalleryGridSize gridSize() const { return m_state.gridSize; }

    /// Takes effect at once; list and selection are kept.
    void setGridSize(GalleryGridSize size);

    [[nodiscard]] GalleryGrid &grid() const { return m_layout->grid(); }

    [[nodiscard]] QSize sizeHint() const override { return m_layout->sizeHint(); }

protected:
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    [[nodiscard]] GalleryLayout *makeLayout();
    void render();
    void renderSheet();
    void confirmCopy(const QString &message);
    void askBeforeDeletion();
    void answerDeletion(bool isConfirmed);

    void refresh();
    void expandToFull() const;
    void leaveSelection();
    void leaveForOtherProgram() const;
    void handleCopyKey();
    void handleDeleteKey();
    void showItemMenu(const ScreenshotItem &item, QPoint position);
    void askBeforeDeletion(const ScreenshotItem &item);

    const GalleryMode m_mode;
    const std::function<void()> m_onExpandToFull;
    const std::function<void()> m_onClosePopover;
    const std::unique_ptr<ScreenshotGalleryViewModel> m_viewModel;
    GalleryViewState m_state;
    FolderAccessCheck m_folderAccess;

    GalleryLayout *m_layout;
    QPointer<Sheet> m_sheet;
    bool m_hasAppeared = false;
};
