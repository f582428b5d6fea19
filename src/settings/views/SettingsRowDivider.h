#pragma once

#include <QWidget>

/// The line between two rows of a card, which begins where their texts do.
class SettingsRowDivider final : public QWidget {
    Q_OBJECT

public:
    /// From the leading edge, in points.
    static constexpr int regularInset = 12;

    explicit SettingsRowDivider(int inset = regularInset, QWidget *parent = nullptr);
};
