#include "TitledWindow.h"

#include <QIcon>
#include <QKeyEvent>
#include <QVBoxLayout>

// A resource of a static library isn't linked in unless something names it; the macro wants the global scope.
static void initializeIcon()
{
    Q_INIT_RESOURCE(program_icon);
}

TitledWindow::TitledWindow(const QString &title, Qt::WindowFlags flags, std::unique_ptr<QWidget> view)
    : QWidget(nullptr, flags)
{
    setWindowTitle(title);
    initializeIcon();
    // Known to the window alone, it goes with it. Most desktops take theirs by the desktop entry's name.
    setWindowIcon(QIcon(QStringLiteral(":/icons/org.deskbroom.Deskbroom.svg")));
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(view.release());
}

void TitledWindow::keyPressEvent(QKeyEvent *event)
{
    const bool closes = event->matches(QKeySequence::Close) || event->matches(QKeySequence::Cancel);
    if (closes && windowFlags().testFlag(Qt::WindowCloseButtonHint)) {
        close();
    } else {
        QWidget::keyPressEvent(event);
    }
}
