#pragma once

#include <QWidget>

#include <optional>

/// A panel around its content, under a title in capitals where it has one.
class SettingsCard final : public QWidget {
    Q_OBJECT

public:
    /// The card owns its content from then on.
    SettingsCard(const std::optional<QString> &title, QWidget *content, QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QWidget *m_content;
};
