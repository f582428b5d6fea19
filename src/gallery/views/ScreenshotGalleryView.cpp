#include "ScreenshotGalleryView.h"

#include "EmbeddedGallery.h"
#include "ExpandedGallery.h"
#include "FileAccessManager.h"
#include "GalleryGrid.h"
#include "NotificationManager.h"
#include "ScreenshotGalleryViewModel.h"
#include "Sheet.h"
#include "ThumbnailLoader.h"
#include "Workspace.h"
#include "galleryItemMenu.h"
#include "gallerySheets.h"
#include "renderOnChange.h"
#include "whenWindowActivated.h"

#include <QKeyEvent>

#include <utility>

ScreenshotGalleryView::ScreenshotGalleryView(
    const GalleryConfiguration &configuration, std::function<void()> onExpandToFull,
    std::function<void()> onClosePopover, QWidget *parent)
    : QWidget(parent),
      m_mode(configuration.mode),
      m_onExpandToFull(std::move(onExpandToFull)),
      m_onClosePopover(std::move(onClosePopover)),
      m_viewModel(
          std::make_unique<ScreenshotGalleryViewModel>(configuration.batchSize, configuration.fallbackPaths)),
      m_folderAccess(FileAccessManager::shared()),
      m_layout(makeLayout())
{
    grid().onContextMenu = [this](const ScreenshotItem &item, QPoint position) {
        showItemMenu(item, position);
    };
    renderOnChange(*m_viewModel, *this, [this] { render(); });
    whenWindowActivated(*this, [this] { m_folderAccess.ask(); });
    connect(&m_folderAccess, &FolderAccessCheck::changed, this, [this] {
        // Until it is known, the folder counts as readable.
        m_state.hasFolderAccess = m_folderAccess.lastAnswer().value_or(true);
        render();
    });
    render();
}

ScreenshotGalleryView::~ScreenshotGalleryView()
{
    // The grid reads the model and is this widget's child: it goes before its model does.
    delete m_layout;
}

GalleryLayout *ScreenshotGalleryView::makeLayout()
{
    const GalleryActions actions{
        .refresh = [this] { refresh(); },
        .expandToFull = [this] { expandToFull(); },
        .cancelSelection = [this] { leaveSelection(); },
        .chooseGridSize = [this](GalleryGridSize size) { setGridSize(size); },
        .openAccessSettings = [] { Workspace::shared().open(NotificationManager::fileAccessSettings()); },
    };
    if (m_mode == GalleryMode::Embedded) {
        return new EmbeddedGallery(*m_viewModel, actions, this);
    }
    return new ExpandedGallery(*m_viewModel, actions, this);
}

void ScreenshotGalleryView::setGridSize(GalleryGridSize size)
{
    m_state.gridSize = size;
    render();
}

void ScreenshotGalleryView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    // Beside something else it waits for its turn.
    if (!std::exchange(m_hasAppeared, true) && window()->focusWidget() == nullptr) {
        setFocus();
    }
    // A window that is minimized and comes back is where it was.
    if (!event->spontaneous()) {
        refresh();
    }
    m_folderAccess.ask();
    renderSheet();
}

void ScreenshotGalleryView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    m_layout->resize(size());
}

void ScreenshotGalleryView::refresh()
{
    m_viewModel->loadScreenshots();
    ThumbnailLoader::shared().revalidate();
}

void ScreenshotGalleryView::expandToFull() const
{
    // Copies: with the popover goes this view.
    const auto expand = m_onExpandToFull;
    const auto close = m_onClosePopover;
    if (expand) {
        expand();
    }
    if (close) {
        close();
    }
}

/// For a popover, which would stand in the way of what the user wants to see next.
void ScreenshotGalleryView::leaveForOtherProgram() const
{
    if (const auto close = m_onClosePopover) {
        close();
    }
}

void ScreenshotGalleryView::leaveSelection()
{
    m_viewModel->setSelectionMode(false);
    m_viewModel->setSelectedIDs({});
}

void ScreenshotGalleryView::render()
{
    if (window()->focusWidget() == &grid() && m_viewModel->displayedScreenshots().isEmpty()) {
        // The toolkit would give the keyboard, and so the focus ring, to whatever comes next.
        setFocus();
    }
    m_layout->render(m_state);
    // No focus proxy, which would have Tab stop at the view too, and so go back to the grid each time round.
    if (window()->focusWidget() == this && !grid().isHidden()) {
        grid().setFocus();
    }
    renderSheet();
}

void ScreenshotGalleryView::renderSheet()
{
    // Hidden, it has no place for a sheet: that waits until it is shown.
    if (m_sheet || !isVisible()) {
        return;
    }
    if (const auto &message = m_viewModel->copyConfirmationMessage()) {
        confirmCopy(*message);
    } else if (m_viewModel->showBulkDeleteConfirmation()) {
        askBeforeDeletion();
    }
}

void ScreenshotGalleryView::confirmCopy(const QString &message)
{
    m_sheet = Sheet::present(*this, gallerySheets::copied(message, [this] {
        m_viewModel->setCopyConfirmationMessage(std::nullopt);
    }));
}

void ScreenshotGalleryView::askBeforeDeletion()
{
    const auto count = m_viewModel->selectedScreenshots().size();
    m_sheet = Sheet::present(
        *this, gallerySheets::deletion(count, [this](bool isConfirmed) { answerDeletion(isConfirmed); }));
}

void ScreenshotGalleryView::answerDeletion(bool isConfirmed)
{
    m_viewModel->setShowBulkDeleteConfirmation(false);
    if (isConfirmed) {
        m_viewModel->deleteSelected();
    } else if (!m_viewModel->isSelectionMode()) {
        // What the menu of one item has selected.
        m_viewModel->setSelectedIDs({});
    }
}

void ScreenshotGalleryView::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && m_viewModel->isSelectionMode()) {
        leaveSelection();
    } else if (event->matches(QKeySequence::SelectAll) && m_viewModel->isSelectionMode()) {
        QSet<QString> ids;
        for (const ScreenshotItem &item : m_viewModel->displayedScreenshots()) {
            ids.insert(item.id);
        }
        m_viewModel->setSelectedIDs(ids);
    } else if (event->matches(QKeySequence::Copy)) {
        handleCopyKey();
    } else if (event->matches(QKeySequence::Delete)) {
        handleDeleteKey();
    } else if (event->matches(QKeySequence::Refresh)) {
        refresh();
    } else {
        QWidget::keyPressEvent(event);
    }
}

/// The selection while there is one, else the item that the keyboard is at.
void ScreenshotGalleryView::handleCopyKey()
{
    if (m_viewModel->isSelectionMode()) {
        m_viewModel->copySelectedToClipboard();
    } else if (const auto index = grid().currentIndex()) {
        m_viewModel->copyToClipboard(m_viewModel->displayedScreenshots().at(*index));
    }
}

void ScreenshotGalleryView::handleDeleteKey()
{
    if (m_viewModel->isDeleting()) {
        return;
    }
    if (!m_viewModel->selectedScreenshots().isEmpty()) {
        m_viewModel->setShowBulkDeleteConfirmation(true);
    } else if (const auto index = grid().currentIndex()) {
        askBeforeDeletion(m_viewModel->displayedScreenshots().at(*index));
    }
}

void ScreenshotGalleryView::askBeforeDeletion(const ScreenshotItem &item)
{
    // Of a selection that holds the item, all go; else it is the only one.
    if (!m_viewModel->isSelectionMode() || !m_viewModel->selectedIDs().contains(item.id)) {
        m_viewModel->setSelectedIDs({item.id});
    }
    m_viewModel->setShowBulkDeleteConfirmation(true);
}

void ScreenshotGalleryView::showItemMenu(const ScreenshotItem &item, QPoint position)
{
    GalleryItemActions actions{
        .copy = [this, item] { m_viewModel->copyToClipboard(item); },
        .open =
            [this, item] {
                Workspace::shared().open(item.url());
                leaveForOtherProgram();
            },
        .showInFileManager =
            [this, item] {
                Workspace::shared().activateFileViewerSelecting({item.url()});
                leaveForOtherProgram();
            },
        .moveToTrash = {},
    };
    if (!m_viewModel->isDeleting()) {
        actions.moveToTrash = [this, item] { askBeforeDeletion(item); };
    }
    popUpGalleryItemMenu(*this, position, actions);
}
