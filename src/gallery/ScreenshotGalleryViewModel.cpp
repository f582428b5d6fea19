#include "ScreenshotGalleryViewModel.h"

#include "FileAccessManager.h"
#include "GalleryConfiguration.h"
#include "ImageCopy.h"
#include "fatalError.h"
#include "print.h"
#include "runInBackground.h"

#include <QCoreApplication>
#include <QPointer>

#include <algorithm>

namespace {

/// The first items; all of them where there are no more, then without a copy.
QList<ScreenshotItem> prefix(const QList<ScreenshotItem> &items, qsizetype count)
{
    return count >= items.size() ? items : items.first(count);
}

QStringList paths(const QList<ScreenshotItem> &items)
{
    QStringList list;
    list.reserve(items.size());
    for (const ScreenshotItem &item : items) {
        list.append(item.id);
    }
    return list;
}

/// Access is started for folders and not for files, and the watched folder's is held as long as the program
/// runs.
QList<Image> loadImages(const QStringList &paths)
{
    return ImageCopy::load(
        paths, [](const QString &path) { print(QStringLiteral("Failed to load image from ") + path); });
}

/// Answers the ids of those that are in the Trash now.
QSet<QString> moveToTrash(const QList<ScreenshotItem> &items)
{
    QSet<QString> movedIDs;
    for (const ScreenshotItem &item : items) {
        if (const auto moved = FileManager::defaultManager().trashItem(item.url())) {
            movedIDs.insert(item.id);
        } else {
            print(
                QStringLiteral("Failed to move ") + item.name() + QStringLiteral(" to Trash: ") +
                moved.error().description());
        }
    }
    return movedIDs;
}

QString copiedMessage(const QList<ScreenshotItem> &items)
{
    if (items.size() == 1) {
        return ScreenshotGalleryViewModel::tr("'%1' has been copied to your clipboard")
            .arg(items.constFirst().name());
    }
    return ScreenshotGalleryViewModel::tr(
        "%n screenshots copied to your clipboard", nullptr, static_cast<int>(items.size()));
}

} // namespace

ScreenshotGalleryViewModel::ScreenshotGalleryViewModel(QObject *parent)
    : ScreenshotGalleryViewModel(
          GalleryConfiguration::window().batchSize, GalleryConfiguration::window().fallbackPaths, parent)
{
}

ScreenshotGalleryViewModel::ScreenshotGalleryViewModel(
    std::optional<qsizetype> batchSize, QList<SearchPathDirectory> fallbackPaths, QObject *parent)
    : ObservableObject(parent),
      m_allScreenshots(this, {}),
      m_displayedScreenshots(this, {}),
      m_isLoading(this, true),
      m_isLoadingMore(this, false),
      m_selectedIDs(this, {}),
      m_isSelectionMode(this, false),
      m_copyConfirmationMessage(this, std::nullopt),
      m_showBulkDeleteConfirmation(this, false),
      m_isDeleting(this, false),
      m_batchSize(batchSize),
      m_fallbackPaths(std::move(fallbackPaths))
{
    if (m_batchSize && *m_batchSize < 0) {
        fatalError(QStringLiteral("A gallery's batch of %1 items").arg(*m_batchSize));
    }
}

ScreenshotGalleryViewModel::~ScreenshotGalleryViewModel() = default;

bool ScreenshotGalleryViewModel::hasMore() const
{
    return m_batchSize && remainingCount() > 0;
}

qsizetype ScreenshotGalleryViewModel::remainingCount() const
{
    return allScreenshots().size() - displayedScreenshots().size();
}

void ScreenshotGalleryViewModel::setCopyConfirmationMessage(std::optional<QString> message)
{
    m_copyConfirmationMessage.set(std::move(message));
}

void ScreenshotGalleryViewModel::loadScreenshots()
{
    m_isListing = true;
    FileAccessManager::shared().loadScreenshots(
        m_fallbackPaths, this, [this, listing = ++m_startedListings](const QList<ScreenshotItem> &found) {
            finishListing(listing, found);
        });
}

void ScreenshotGalleryViewModel::finishListing(quint64 listing, const QList<ScreenshotItem> &found)
{
    if (listing != m_startedListings) {
        return;
    }
    m_isListing = false;
    m_allScreenshots.set(found);
    m_displayedScreenshots.set(prefix(found, m_batchSize.value_or(found.size())));
    m_isLoading.set(false);
}

void ScreenshotGalleryViewModel::loadMore()
{
    if (!hasMore() || isLoadingMore()) {
        return;
    }
    m_isLoadingMore.set(true);
    QMetaObject::invokeMethod(this, [this] { appendNextBatch(); }, Qt::QueuedConnection);
}

void ScreenshotGalleryViewModel::appendNextBatch()
{
    // A listing or a deletion may have left nothing to append.
    if (hasMore()) {
        displayMore(m_batchSize.value_or(0));
    }
    m_isLoadingMore.set(false);
}

void ScreenshotGalleryViewModel::displayMore(qsizetype count)
{
    const auto next =
        allScreenshots().sliced(displayedScreenshots().size(), std::min(count, remainingCount()));
    m_displayedScreenshots.modify([&next](QList<ScreenshotItem> &displayed) { displayed.append(next); });
}

void ScreenshotGalleryViewModel::toggleSelection(const ScreenshotItem &item)
{
    m_selectedIDs.modify([&item](QSet<QString> &ids) {
        if (!ids.remove(item.id)) {
            ids.insert(item.id);
        }
    });
}

QList<ScreenshotItem> ScreenshotGalleryViewModel::selectedScreenshots() const
{
    QList<ScreenshotItem> items;
    std::ranges::copy_if(
        displayedScreenshots(), std::back_inserter(items),
        [this](const ScreenshotItem &item) { return selectedIDs().contains(item.id); });
    return items;
}

void ScreenshotGalleryViewModel::copyToClipboard(const ScreenshotItem &item)
{
    copy({item}, AfterCopying::GoOn);
}

void ScreenshotGalleryViewModel::copySelectedToClipboard()
{
    copy(selectedScreenshots(), AfterCopying::EndSelecting);
}

/// The application owns the work and not the model: who closes the gallery right after a click still finds
/// the image on the clipboard.
void ScreenshotGalleryViewModel::copy(const QList<ScreenshotItem> &items, AfterCopying afterwards)
{
    runInBackground(
        QCoreApplication::instance(), BackgroundQueue::UserInitiated,
        [paths = paths(items)] { return loadImages(paths); },
        [copy = ImageCopy(), model = QPointer(this), number = ++m_startedCopies,
         message = copiedMessage(items), afterwards](const QList<Image> &images) {
            copy.write(images);
            if (model) {
                model->finishCopying(number, message, afterwards);
            }
        });
}

void ScreenshotGalleryViewModel::finishCopying(quint64 copy, const QString &message, AfterCopying afterwards)
{
    // Of copies that overlap the last one takes the others' place on the clipboard.
    if (copy == m_startedCopies) {
        m_copyConfirmationMessage.set(message);
    }
    if (afterwards == AfterCopying::EndSelecting) {
        m_isSelectionMode.set(false);
        m_selectedIDs.set({});
    }
}

void ScreenshotGalleryViewModel::deleteSelected()
{
    const QList<ScreenshotItem> items = selectedScreenshots();
    if (items.isEmpty()) {
        return;
    }
    ++m_deletionsUnderWay;
    m_isDeleting.set(true);
    runInBackground(
        this, [items] { return moveToTrash(items); },
        [this](const QSet<QString> &movedIDs) { finishDeletion(movedIDs); });
}

void ScreenshotGalleryViewModel::finishDeletion(const QSet<QString> &movedIDs)
{
    remove(movedIDs);
    topUp();
    m_selectedIDs.set({});
    m_isSelectionMode.set(false);
    m_isDeleting.set(--m_deletionsUnderWay > 0);
    if (m_isListing && !movedIDs.isEmpty()) {
        // It may have seen files that have moved since, so it is begun anew.
        loadScreenshots();
    }
}

void ScreenshotGalleryViewModel::remove(const QSet<QString> &ids)
{
    const auto isRemoved = [&ids](const ScreenshotItem &item) { return ids.contains(item.id); };
    const qsizetype stillDisplayed =
        displayedScreenshots().size() - std::ranges::count_if(displayedScreenshots(), isRemoved);
    QList<ScreenshotItem> all = allScreenshots();
    all.removeIf(isRemoved);
    m_allScreenshots.set(all);
    m_displayedScreenshots.set(prefix(all, stillDisplayed));
}

void ScreenshotGalleryViewModel::topUp()
{
    const qsizetype missing = m_batchSize.value_or(0) - displayedScreenshots().size();
    if (hasMore() && missing > 0) {
        displayMore(missing);
    }
}
