#pragma once

#include "SettingsSection.h"

#include <QWidget>

#include <vector>

class SidebarRow;

/// The list of the window's pages. One is always selected; it is the only tab stop, and arrow keys, Home and
/// End select another.
class SettingsSidebarView final : public QWidget {
    Q_OBJECT

public:
    /// In points.
    static constexpr int fixedWidth = 190;

    explicit SettingsSidebarView(SettingsSection selection, QWidget *parent = nullptr);

    [[nodiscard]] SettingsSection selection() const { return m_selection; }

    /// Nothing is emitted.
    void setSelection(SettingsSection section);

Q_SIGNALS:
    /// By the user, and another one than before.
    void selectionMade(SettingsSection section);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] SidebarRow &row(SettingsSection section) const;
    void markSelected(SettingsSection section);
    void select(SettingsSection section);

    SettingsSection m_selection;
    /// In the order of the sections.
    std::vector<SidebarRow *> m_rows;
};
