#include "ScreenshotConfirmationView.h"

#include "Bookmark.h"
#include "ButtonRowLayout.h"
#include "ImageSource.h"
#include "Motion.h"
#include "Preferences.h"
#include "PushButton.h"
#include "ScreenshotPreview.h"
#include "SecurityScopedAccess.h"
#include "TextLabel.h"
#include "UserDefaults.h"
#include "print.h"
#include "runInBackground.h"

#include <QShowEvent>
#include <QVBoxLayout>

namespace {

constexpr int viewWidth = 300;
constexpr int padding = 16;
constexpr int rowSpacing = 12;
constexpr int maximumThumbnailPixels = 600;
/// The popover ignores the mouse that long; the buttons say so by coming up.
constexpr std::chrono::milliseconds fadeIn{300};
constexpr qreal presenceAtFirst = 0.55;

/// Access to the Desktop folder for as long as the value lives. Without a bookmark, or with a stale one, the
/// preview tries its luck without: making the bookmark anew isn't its business.
std::optional<SecurityScopedAccess> accessDesktop()
{
    const std::optional<QByteArray> bookmark =
        UserDefaults::standard().data(preferences::desktopFolderBookmark);
    if (!bookmark) {
        return std::nullopt;
    }
    const Result<Bookmark::ResolvedBookmark> folder = Bookmark::resolve(*bookmark);
    if (!folder) {
        print(
            QStringLiteral("Failed to resolve Desktop bookmark for preview: ") +
            folder.error().description());
        return std::nullopt;
    }
    return folder->isStale ? std::nullopt : SecurityScopedAccess::start(folder->url);
}

std::optional<QImage> loadThumbnail(const QString &path)
{
    const std::optional<SecurityScopedAccess> access = accessDesktop();
    std::optional<ImageSource> source = ImageSource::create(QUrl::fromLocalFile(path));
    return source ? source->thumbnail(maximumThumbnailPixels) : std::nullopt;
}

} // namespace

ScreenshotConfirmationView::ScreenshotConfirmationView(
    QString screenshotPath, qint64 timeframeInMinutes, std::function<void()> onDeleteNow,
    std::function<void()> onDeleteLater, std::function<void()> onKeep, QWidget *parent)
    : QWidget(parent),
      m_screenshotPath(std::move(screenshotPath)),
      m_timeframeInMinutes(timeframeInMinutes),
      m_onDeleteNow(std::move(onDeleteNow)),
      m_onDeleteLater(std::move(onDeleteLater)),
      m_onKeep(std::move(onKeep)),
      m_preview(new ScreenshotPreview(this)),
      m_deleteNowButton(new PushButton(PushButton::Kind::Destructive, tr("Delete Now"), this)),
      m_deleteLaterButton(new PushButton(
          PushButton::Kind::Bordered,
          tr("Delete in %lld min").replace(QStringLiteral("%lld"), QString::number(m_timeframeInMinutes)),
          this)),
      m_keepButton(new PushButton(PushButton::Kind::Bordered, tr("Keep"), this))
{
    // The connections run copies: an answer closes the popover, and the view goes with it.
    connect(m_deleteNowButton, &PushButton::clicked, this, m_onDeleteNow);
    connect(m_deleteLaterButton, &PushButton::clicked, this, m_onDeleteLater);
    connect(m_keepButton, &PushButton::clicked, this, m_onKeep);
    layOut();
}

void ScreenshotConfirmationView::layOut()
{
    auto *buttons = new ButtonRowLayout;
    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(padding, padding, padding, padding);
    rows->setSpacing(rowSpacing);
    rows->addWidget(new TextLabel(TextStyle::Headline, tr("Screenshot Taken"), this));
    rows->addWidget(m_preview);
    rows->addWidget(
        new TextLabel(TextStyle::Subheadline, tr("What would you like to do with this screenshot?"), this));
    rows->addLayout(buttons);
    for (PushButton *button : {m_deleteNowButton, m_deleteLaterButton, m_keepButton}) {
        button->setSize(PushButton::Size::Compact);
        buttons->addButton(*button);
    }
    setFixedWidth(viewWidth);
}

QSize ScreenshotConfirmationView::sizeHint() const
{
    return {viewWidth, layout()->totalHeightForWidth(viewWidth)};
}

void ScreenshotConfirmationView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (!m_hasAppeared) {
        m_hasAppeared = true;
        // Without this, the first answer would have the focus as soon as the popover has the keyboard, and
        // Return would delete.
        setFocus();
        loadPreview();
        fadeButtonsIn();
    }
}

void ScreenshotConfirmationView::loadPreview()
{
    runInBackgroundIfAny(
        this, BackgroundQueue::UserInitiated, [path = m_screenshotPath] { return loadThumbnail(path); },
        [this](const QImage &image) { setPreviewImage(image); });
}

void ScreenshotConfirmationView::setPreviewImage(const QImage &image)
{
    m_previewImage = image;
    m_preview->setImage(image);
    updateGeometry();
    Q_EMIT previewImageChanged();
}

void ScreenshotConfirmationView::fadeButtonsIn()
{
    Motion::run(*this, fadeIn, Motion::Kind::Fade, [this](qreal progress) {
        const qreal presence = presenceAtFirst + (1 - presenceAtFirst) * progress;
        for (PushButton *button : {m_deleteNowButton, m_deleteLaterButton, m_keepButton}) {
            button->setPresence(presence);
        }
    });
}
