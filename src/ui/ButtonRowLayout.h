#pragma once

#include <QLayout>

#include <memory>
#include <vector>

class PushButton;

/// Puts buttons beside each other, sharing the width: each gets its text's width and an equal part of the
/// rest. Where that leaves a text less than `PushButton::leastPadding` at either side, all go under each
/// other at full width. The geometry is that of the buttons as one sees them; their focus rings stand out of
/// it.
class ButtonRowLayout final : public QLayout {
    Q_OBJECT

public:
    static constexpr int gap = 8;

    using QLayout::QLayout;
    ~ButtonRowLayout() override = default;
    Q_DISABLE_COPY_MOVE(ButtonRowLayout)

    /// The button becomes a child of the widget that the layout is for.
    void addButton(PushButton &button);

    void addItem(QLayoutItem *item) override;
    [[nodiscard]] int count() const override;
    [[nodiscard]] QLayoutItem *itemAt(int index) const override;
    QLayoutItem *takeAt(int index) override;

    [[nodiscard]] Qt::Orientations expandingDirections() const override { return Qt::Horizontal; }

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }

    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSize() const override;
    void setGeometry(const QRect &rect) override;

private:
    struct Entry {
        PushButton *button;
        std::unique_ptr<QLayoutItem> item;
    };

    [[nodiscard]] int widthOfTexts() const;
    /// What is left of `width` when the texts and the gaps are taken off.
    [[nodiscard]] int restOfRow(int width) const;
    [[nodiscard]] bool isRow(int width) const;

    std::vector<Entry> m_entries;
};
