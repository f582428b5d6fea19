#pragma once

#include "SettingsSection.h"

#include <QAbstractButton>

/// One section in the sidebar: its badge and its title. An item of a list for assistive programs. It leaves
/// the keys that move the selection to the sidebar.
class SidebarRow final : public QAbstractButton {
    Q_OBJECT

public:
    explicit SidebarRow(SettingsSection section, QWidget *parent = nullptr);

    [[nodiscard]] SettingsSection section() const { return m_section; }

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    const SettingsSection m_section;
};
