#pragma once

#include "SettingsIconBadge.h"

#include <QWidget>

/// One thing that the program does: a badge and a sentence.
class FeatureRow final : public QWidget {
    Q_OBJECT

public:
    /// Where the sentence begins, in points.
    static constexpr int textInset = 44;

    FeatureRow(SettingsIconBadge badge, const QString &text, QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const SettingsIconBadge m_badge;
};
