#include "ObservableObject.h"

#include <QSignalSpy>
#include <QTest>

class ObservableObjectTest : public QObject {
    Q_OBJECT

private Q_SLOTS:

    void aChangeIsAnnouncedBeforeItTakesEffect()
    {
        ObservableObject object;
        Published<int> field(&object, 1);
        QList<int> seen;
        connect(&object, &ObservableObject::objectWillChange, this, [&] { seen += field.get(); });
        field.set(2);
        field.set(3);
        QCOMPARE(seen, QList<int>({1, 2}));
        QCOMPARE(field.get(), 3);
    }

    void aChangeInPlaceIsAnnouncedBeforeItTakesEffect()
    {
        ObservableObject object;
        Published<QList<int>> field(&object, {1, 2});
        QList<QList<int>> seen;
        connect(&object, &ObservableObject::objectWillChange, this, [&] { seen += field.get(); });
        field.modify([](QList<int> &list) { list.append(3); });
        QCOMPARE(seen, QList<QList<int>>({{1, 2}}));
        QCOMPARE(field.get(), QList<int>({1, 2, 3}));
    }

    void theSameValueAnnouncesNothing()
    {
        ObservableObject object;
        Published<QString> field(&object, QStringLiteral("same"));
        const QSignalSpy changes(&object, &ObservableObject::objectWillChange);
        field.set(QStringLiteral("same"));
        QCOMPARE(changes.size(), 0);
    }
};

QTEST_GUILESS_MAIN(ObservableObjectTest)
#include "ObservableObjectTest.moc"
