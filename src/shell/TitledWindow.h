#pragma once

#include <QWidget>

#include <memory>

/// A window with a title that shows one view. The keys that close windows (Ctrl+W, as the desktop has them)
/// and Escape close it if the view leaves them and its title has a close button.
class TitledWindow final : public QWidget {
    Q_OBJECT

public:
    TitledWindow(const QString &title, Qt::WindowFlags flags, std::unique_ptr<QWidget> view);

protected:
    void keyPressEvent(QKeyEvent *event) override;
};
