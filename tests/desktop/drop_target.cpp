// A window of another program, for the tests: prints when something is dragged into it, and what is dropped
// on it, a line each for the actions that are possible and for every URL.
//
//   drop_target X Y WIDTH HEIGHT

#include <QApplication>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

#include <cstdio>

namespace {

class DropTarget final : public QWidget {
public:
    DropTarget() { setAcceptDrops(true); }

protected:
    void dragEnterEvent(QDragEnterEvent *event) override
    {
        event->acceptProposedAction();
        tell("entered");
    }

    void dropEvent(QDropEvent *event) override
    {
        tell("possible actions: " + QByteArray::number(int(event->possibleActions())));
        for (const QUrl &url : event->mimeData()->urls()) {
            tell("dropped: " + url.toEncoded());
        }
        event->acceptProposedAction();
    }

private:
    static void tell(const QByteArray &line)
    {
        puts(line.constData());
        fflush(stdout);
    }
};

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    DropTarget target;
    target.setWindowTitle(QStringLiteral("Drop Target"));
    target.setGeometry(
        arguments.value(1).toInt(), arguments.value(2).toInt(), arguments.value(3).toInt(),
        arguments.value(4).toInt());
    target.show();
    return QApplication::exec();
}
