#pragma once

#include "FileManager.h"
#include "ObservableObject.h"
#include "ScreenshotItem.h"

#include <QList>
#include <QSet>
#include <QString>

#include <optional>
#include <utility>

/// The state behind a gallery: the screenshots that a listing found, newest first, how many of them are
/// shown, which are selected, and what is done with them.
///
/// Owned by the view that shows it. Main thread; listing, reading images and moving to the Trash run in the
/// background and publish their results here. The list changes only by `loadScreenshots`, `loadMore` and
/// `deleteSelected`. Nothing fails towards the user: each failure prints one line, and the work goes on with
/// the next item.
class ScreenshotGalleryViewModel final : public ObservableObject {
    Q_OBJECT

public:
    /// Batches of 30 of the Desktop, Pictures and Downloads.
    explicit ScreenshotGalleryViewModel(QObject *parent = nullptr);
    /// Without a batch size every item is shown at once; a negative one stops the program.
    ScreenshotGalleryViewModel(
        std::optional<qsizetype> batchSize, QList<SearchPathDirectory> fallbackPaths,
        QObject *parent = nullptr);
    ~ScreenshotGalleryViewModel() override;
    Q_DISABLE_COPY_MOVE(ScreenshotGalleryViewModel)

    /// All that the last listing found, newest first.
    [[nodiscard]] const QList<ScreenshotItem> &allScreenshots() const { return m_allScreenshots.get(); }

    /// The first of them, which the views show.
    [[nodiscard]] const QList<ScreenshotItem> &displayedScreenshots() const
    {
        return m_displayedScreenshots.get();
    }

    /// True from the beginning until the first listing has ended, and never again.
    [[nodiscard]] bool isLoading() const { return m_isLoading.get(); }

    [[nodiscard]] bool isLoadingMore() const { return m_isLoadingMore.get(); }

    /// By `ScreenshotItem::id`.
    [[nodiscard]] const QSet<QString> &selectedIDs() const { return m_selectedIDs.get(); }

    [[nodiscard]] bool isSelectionMode() const { return m_isSelectionMode.get(); }

    /// What the last copy tells the user; shown until it is dismissed. Holds file names as they are.
    [[nodiscard]] const std::optional<QString> &copyConfirmationMessage() const
    {
        return m_copyConfirmationMessage.get();
    }

    [[nodiscard]] bool showBulkDeleteConfirmation() const { return m_showBulkDeleteConfirmation.get(); }

    /// Whether files are being moved to the Trash. Guards nothing: deletions may overlap.
    [[nodiscard]] bool isDeleting() const { return m_isDeleting.get(); }

    [[nodiscard]] std::optional<qsizetype> batchSize() const { return m_batchSize; }

    [[nodiscard]] const QList<SearchPathDirectory> &fallbackPaths() const { return m_fallbackPaths; }

    [[nodiscard]] bool hasMore() const;
    [[nodiscard]] qsizetype remainingCount() const;

    /// The selected items among those that are shown, in display order: what copying and deleting take.
    [[nodiscard]] QList<ScreenshotItem> selectedScreenshots() const;

    void setSelectedIDs(QSet<QString> ids) { m_selectedIDs.set(std::move(ids)); }

    void setSelectionMode(bool isOn) { m_isSelectionMode.set(isOn); }

    void setCopyConfirmationMessage(std::optional<QString> message);

    void setShowBulkDeleteConfirmation(bool isShown) { m_showBulkDeleteConfirmation.set(isShown); }

    /// Lists the bookmarked folder and the fallback paths, and shows the first batch. Of listings that
    /// overlap only the last one counts.
    void loadScreenshots();

    /// Shows the next batch on the next turn of the loop.
    void loadMore();

    void toggleSelection(const ScreenshotItem &item);

    /// Puts the image on the clipboard and then sets the confirmation, even if the image couldn't be read or
    /// somebody else's later copy lies there by then. Of copies of this model that overlap only the last one
    /// is confirmed. The copy itself doesn't end with the model.
    void copyToClipboard(const ScreenshotItem &item);

    /// The same with all selected items that are shown, in the order in which they are; ends selecting.
    void copySelectedToClipboard();

    /// Moves the selected items that are shown to the Trash, and takes those that are there off the list when
    /// all have been tried; ends selecting. The moves don't end with the model.
    void deleteSelected();

private:
    enum class AfterCopying { GoOn, EndSelecting };

    void finishListing(quint64 listing, const QList<ScreenshotItem> &found);
    void appendNextBatch();
    void displayMore(qsizetype count);
    void copy(const QList<ScreenshotItem> &items, AfterCopying afterwards);
    void finishCopying(quint64 copy, const QString &message, AfterCopying afterwards);
    void finishDeletion(const QSet<QString> &movedIDs);
    void remove(const QSet<QString> &ids);
    void topUp();

    Published<QList<ScreenshotItem>> m_allScreenshots;
    Published<QList<ScreenshotItem>> m_displayedScreenshots;
    Published<bool> m_isLoading;
    Published<bool> m_isLoadingMore;
    Published<QSet<QString>> m_selectedIDs;
    Published<bool> m_isSelectionMode;
    Published<std::optional<QString>> m_copyConfirmationMessage;
    Published<bool> m_showBulkDeleteConfirmation;
    Published<bool> m_isDeleting;
    const std::optional<qsizetype> m_batchSize;
    const QList<SearchPathDirectory> m_fallbackPaths;

    quint64 m_startedListings = 0;
    quint64 m_startedCopies = 0;
    bool m_isListing = false;
    int m_deletionsUnderWay = 0;
};
