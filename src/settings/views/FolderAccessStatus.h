#pragma once

#include <QWidget>

#include <optional>

class PushButton;
class SymbolLabel;
class TextLabel;

/// Says whether the watched folder can be read, and offers to grant access to one, or to another one.
///
/// The widget is `outset` larger on each side than what one sees.
class FolderAccessStatus final : public QWidget {
    Q_OBJECT

public:
    static constexpr int outset = 12;

    explicit FolderAccessStatus(QWidget *parent = nullptr);

    /// None while it isn't known.
    void setAccess(std::optional<bool> hasAccess);

    [[nodiscard]] QSize sizeHint() const override;

Q_SIGNALS:
    void folderRequested();

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    [[nodiscard]] int grantedWidth() const;
    void layOut();

    SymbolLabel *m_symbol;
    TextLabel *m_granted;
    PushButton *m_change;
    PushButton *m_grant;
};
