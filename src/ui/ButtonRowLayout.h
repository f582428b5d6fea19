#pragma once

#include <QLayout>

#include <memory>
#include <vector>

class PushButton;

/// Puts buttons beside each other, sharing the width. Where that leaves a text less than
/// `PushButton::leastPadding` at either side, all go under each other at full width. The geometry is that of
/// the buttons as one sees them; their focus rings stand out of it. Mirrored where one reads from right to
/// left.
class ButtonRowLayout final : public QLayout {
    Q_OBJECT

public:
    enum class Shares {
        /// Each gets its text's width and an equal part of the rest.
        ByText,
        Equal,
    };

    static constexpr int gap = 8;

    explicit ButtonRowLayout(Shares shares = Shares::ByText) : m_shares(shares) {}

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
    [[nodiscard]] int widestText() const;
    [[nodiscard]] int rowHeight() const;
    [[nodiscard]] bool isRow(int width) const;
    /// The width of each button in a row of this width.
    [[nodiscard]] std::vector<int> widthsInRow(int width) const;

    Shares m_shares;
    std::vector<Entry> m_entries;
};
