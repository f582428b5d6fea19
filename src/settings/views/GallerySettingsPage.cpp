#include "GallerySettingsPage.h"

#include "FadingEdge.h"
#include "ScreenshotGalleryView.h"
#include "TextLabel.h"

namespace {

/// In points.
constexpr int padding = 20;
constexpr int galleryPadding = 12;
constexpr int fadeHeight = 24;

} // namespace

GallerySettingsPage::GallerySettingsPage(QWidget *parent)
    : QWidget(parent),
      m_heading(new TextLabel(TextStyle::Title3, tr("Gallery"), this)),
      m_gallery(new ScreenshotGalleryView(GalleryConfiguration::settings(), {}, {}, this)),
      m_fade(new FadingEdge(this))
{
    m_heading->setAlignment(Qt::AlignLeading);
}

void GallerySettingsPage::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    m_heading->setGeometry(padding, padding, width() - 2 * padding, lineHeight(TextStyle::Title3));
    // The gallery keeps its own side margins, so that its scroll bar stands beside them.
    const int top = padding + m_heading->height() + galleryPadding;
    m_gallery->setGeometry(0, top, width(), height() - top - galleryPadding - padding);
    m_fade->setGeometry(0, m_gallery->geometry().bottom() + 1 - fadeHeight, width(), fadeHeight);
}
