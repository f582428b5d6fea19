#pragma once

#include <QWidget>

/// The page that says what the program is.
class AboutSettingsPage final : public QWidget {
    Q_OBJECT

public:
    explicit AboutSettingsPage(QWidget *parent = nullptr);

private:
    [[nodiscard]] static QWidget *makeFeatures();
};
