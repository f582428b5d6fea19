#pragma once

#include "Typography.h"

#include <QLabel>

/// A centred plain text in one text style, with that style's line height whatever the font family.
///
/// A text that is wider than the label is broken at blanks, and balanced: its lines are as narrow as they
/// can be without being more.
class TextLabel final : public QLabel {
    Q_OBJECT

public:
    TextLabel(TextStyle style, const QString &text, QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }

    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    /// The lines of the text at this width.
    [[nodiscard]] QStringList lines(int width) const;
    [[nodiscard]] QStringList balancedLines(int width) const;

    TextStyle m_style;
};
