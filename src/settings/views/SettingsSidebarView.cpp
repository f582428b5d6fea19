#include "SettingsSidebarView.h"

#include "AccessibleRole.h"
#include "SidebarRow.h"
#include "TextLabel.h"
#include "Theme.h"

#include <QKeyEvent>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace {

/// In points.
constexpr QMargins margins(8, 10, 8, 10);
constexpr int gapAboveHeader = 14;
constexpr int gapBelowHeader = 5;
constexpr int headerPadding = 8;

} // namespace

SettingsSidebarView::SettingsSidebarView(SettingsSection selection, QWidget *parent)
    : QWidget(parent),
      m_selection(selection)
{
    setAccessibleRole(*this, QAccessible::List);
    setAccessibleName(tr("Sections"));
    setFixedWidth(fixedWidth);
    // It paints all of its ground itself.
    setAttribute(Qt::WA_OpaquePaintEvent);
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(margins);
    column->setSpacing(0);
    for (const SettingsSection section : settingsSections::all) {
        if (const QString text = settingsSections::header(section); !text.isEmpty()) {
            auto *const header = new TextLabel(TextStyle::StrongSubheadline, text);
            header->setAlignment(Qt::AlignLeading);
            header->setColor(TextColor::Secondary);
            auto *const line = new QHBoxLayout;
            line->setContentsMargins(headerPadding, gapAboveHeader, headerPadding, gapBelowHeader);
            line->addWidget(header);
            column->addLayout(line);
        }
        auto *const row = new SidebarRow(section);
        // Not its click: assistive programs check it without one.
        connect(row, &SidebarRow::toggled, this, [this, section](bool isChecked) {
            if (isChecked) {
                select(section);
            }
        });
        column->addWidget(row);
        m_rows.push_back(row);
    }
    column->addStretch();
    markSelected(selection);
    repaintWithTheme(*this);
}

SidebarRow &SettingsSidebarView::row(SettingsSection section) const
{
    return *m_rows.at(static_cast<std::size_t>(section));
}

void SettingsSidebarView::setSelection(SettingsSection section)
{
    if (section != m_selection) {
        markSelected(section);
    }
}

void SettingsSidebarView::markSelected(SettingsSection section)
{
    m_selection = section;
    row(section).setChecked(true);
    QAccessibleEvent selected(&row(section), QAccessible::Selection);
    QAccessible::updateAccessibility(&selected);
    for (SidebarRow *const each : m_rows) {
        // A click leaves the keyboard where it is.
        each->setFocusPolicy(each->section() == section ? Qt::TabFocus : Qt::NoFocus);
    }
}

void SettingsSidebarView::select(SettingsSection section)
{
    if (section == m_selection) {
        return;
    }
    const auto hasFocus = [](const SidebarRow *each) { return each->hasFocus(); };
    const bool takesFocus = std::ranges::any_of(m_rows, hasFocus);
    markSelected(section);
    if (takesFocus) {
        row(section).setFocus(Qt::OtherFocusReason);
    }
    Q_EMIT selectionMade(section);
}

void SettingsSidebarView::keyPressEvent(QKeyEvent *event)
{
    const auto last = static_cast<int>(m_rows.size()) - 1;
    const auto current = static_cast<int>(m_selection);
    const auto go = [this, last](int index) {
        row(static_cast<SettingsSection>(std::clamp(index, 0, last))).setChecked(true);
    };
    switch (event->key()) {
    case Qt::Key_Up:
        return go(current - 1);
    case Qt::Key_Down:
        return go(current + 1);
    case Qt::Key_Home:
        return go(0);
    case Qt::Key_End:
        return go(last);
    default:
        QWidget::keyPressEvent(event);
    }
}

void SettingsSidebarView::paintEvent(QPaintEvent * /*event*/)
{
    QPainter(this).fillRect(rect(), Theme::current().sidebar);
}
