#pragma once

#include "SettingsSection.h"

#include <QWidget>

#include <array>

class SettingsApplicationDelegate;
class SettingsSidebarView;

/// The contents of the settings window: the sidebar, and the page that is selected in it. A page is made when
/// it is shown for the first time and stays until the window closes.
class SettingsView final : public QWidget {
    Q_OBJECT

public:
    explicit SettingsView(SettingsApplicationDelegate &appDelegate, QWidget *parent = nullptr);

    [[nodiscard]] SettingsSection selection() const { return m_selection; }

    void setSelection(SettingsSection section);

protected:
    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] QWidget *makePage(SettingsSection section);
    void showPage();
    void leave(QWidget &page);
    void layOut();

    SettingsApplicationDelegate &m_appDelegate;
    SettingsSection m_selection = SettingsSection::General;

    SettingsSidebarView *m_sidebar;
    QWidget *m_divider;
    /// In the order of the sections; null until they are shown.
    std::array<QWidget *, settingsSections::all.size()> m_pages{};
};
