#include "SettingsView.h"

#include "AboutSettingsPage.h"
#include "GallerySettingsPage.h"
#include "GeneralSettingsPage.h"
#include "Hairline.h"
#include "ScrollArea.h"
#include "SettingsApplicationDelegate.h"
#include "SettingsSidebarView.h"
#include "Theme.h"

#include <QPainter>
#include <QShowEvent>
#include <QStyle>

#include <utility>

namespace {

/// In a vertical scroll view.
QWidget *scrolling(QWidget *page)
{
    auto *const area = new ScrollArea;
    area->setWidget(page);
    return area;
}

} // namespace

SettingsView::SettingsView(SettingsApplicationDelegate &appDelegate, QWidget *parent)
    : QWidget(parent),
      m_appDelegate(appDelegate),
      m_sidebar(new SettingsSidebarView(m_selection, this)),
      m_divider(new Hairline(Qt::Vertical, this))
{
    connect(m_sidebar, &SettingsSidebarView::selectionMade, this, &SettingsView::setSelection);
    // It paints all of its ground itself.
    setAttribute(Qt::WA_OpaquePaintEvent);
    showPage();
    repaintWithTheme(*this);
}

void SettingsView::setSelection(SettingsSection section)
{
    if (section != m_selection) {
        m_selection = section;
        m_sidebar->setSelection(section);
        showPage();
    }
}

QWidget *SettingsView::makePage(SettingsSection section)
{
    switch (section) {
    case SettingsSection::General:
        return scrolling(new GeneralSettingsPage(m_appDelegate));
    case SettingsSection::Gallery:
        // It scrolls itself.
        return new GallerySettingsPage;
    case SettingsSection::About:
        return scrolling(new AboutSettingsPage);
    }
    std::unreachable();
}

void SettingsView::showPage()
{
    QWidget *&page = m_pages.at(static_cast<std::size_t>(m_selection));
    if (page == nullptr) {
        page = makePage(m_selection);
        page->setParent(this);
        layOut();
    }
    for (QWidget *const other : m_pages) {
        if (other != nullptr && other != page) {
            leave(*other);
        }
    }
    page->show();
}

void SettingsView::leave(QWidget &page)
{
    // The toolkit would give the keyboard to whatever comes next.
    const QWidget *const focused = focusWidget();
    if (focused != nullptr && page.isAncestorOf(focused)) {
        setFocus();
    }
    page.hide();
}

bool SettingsView::event(QEvent *event)
{
    if (event->type() == QEvent::LayoutDirectionChange) {
        layOut();
    }
    return QWidget::event(event);
}

void SettingsView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    // Otherwise the toolkit gives the keyboard, and so the focus ring, to the first control.
    if (!event->spontaneous()) {
        setFocus();
    }
}

void SettingsView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    layOut();
}

void SettingsView::layOut()
{
    const auto place = [this](QWidget &part, const QRect &box) {
        part.setGeometry(QStyle::visualRect(layoutDirection(), rect(), box));
    };
    constexpr int sidebar = SettingsSidebarView::fixedWidth;
    place(*m_sidebar, {0, 0, sidebar, height()});
    place(*m_divider, {sidebar, 0, 1, height()});
    for (QWidget *const page : m_pages) {
        if (page != nullptr) {
            place(*page, {sidebar + 1, 0, width() - sidebar - 1, height()});
        }
    }
}

void SettingsView::paintEvent(QPaintEvent * /*event*/)
{
    QPainter(this).fillRect(rect(), Theme::current().window);
}
