#pragma once

#include <QWidget>

#include <optional>

class TextLabel;

/// What can be set: its title, an explanation under it, and the control at the other side.
class SettingsRow final : public QWidget {
    Q_OBJECT

public:
    /// The row owns the control from then on; `Trailing::outset` is by how many points it is larger on each
    /// side than what one sees. The row's texts are its accessible name and description where it has none.
    template <typename Trailing>
    SettingsRow(
        const QString &title, const std::optional<QString> &subtitle, Trailing *trailing,
        QWidget *parent = nullptr)
        : SettingsRow(title, subtitle, trailing, Trailing::outset, parent)
    {
    }

    /// Where the row has a subtitle.
    void setTexts(const QString &title, const QString &subtitle);

    /// Without a line break in its texts.
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }

    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    SettingsRow(
        const QString &title, const std::optional<QString> &subtitle, QWidget *trailing, int outset,
        QWidget *parent);

    /// Of the control as one sees it.
    [[nodiscard]] QSize trailingSize() const;
    /// What is beside the texts.
    [[nodiscard]] int restWidth() const;
    [[nodiscard]] int textWidth(int width) const;
    [[nodiscard]] int textHeight(int textWidth) const;
    void layOut();

    TextLabel *m_title;
    /// Null without a subtitle.
    TextLabel *m_subtitle = nullptr;
    QWidget *m_trailing;
    const int m_outset;
};
