#include "NotificationCenter.h"

#include <QTest>

#include <memory>

class NotificationCenterTest : public QObject {
    Q_OBJECT

private Q_SLOTS:

    void onlyTheNamedNotificationsArrive()
    {
        QObject context;
        QList<QVariantMap> received;
        NotificationCenter::defaultCenter().addObserver(
            QStringLiteral("wanted"), &context, [&received](const ProcessNotification &notification) {
                QCOMPARE(notification.name, QStringLiteral("wanted"));
                received += notification.userInfo;
            });
        NotificationCenter::defaultCenter().post(QStringLiteral("other"));
        NotificationCenter::defaultCenter().post(
            QStringLiteral("wanted"), {{QStringLiteral("path"), QStringLiteral("/a")}});
        NotificationCenter::defaultCenter().post(QStringLiteral("wanted"));

        const QList<QVariantMap> expected = {{{QStringLiteral("path"), QStringLiteral("/a")}}, {}};
        QCOMPARE(received, expected);
    }

    void anObserverGoesWithItsContext()
    {
        int calls = 0;
        auto context = std::make_unique<QObject>();
        NotificationCenter::defaultCenter().addObserver(
            QStringLiteral("name"), context.get(), [&calls](const ProcessNotification &) { ++calls; });
        NotificationCenter::defaultCenter().post(QStringLiteral("name"));
        context.reset();
        NotificationCenter::defaultCenter().post(QStringLiteral("name"));
        QCOMPARE(calls, 1);
    }
};

QTEST_GUILESS_MAIN(NotificationCenterTest)
#include "NotificationCenterTest.moc"
