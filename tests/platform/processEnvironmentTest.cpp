#include "processEnvironment.h"

#include <QTest>

class processEnvironmentTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void childrenInheritNothingOfOurs();
};

void processEnvironmentTest::childrenInheritNothingOfOurs()
{
    qputenv("DISPLAY", ":42");
    qunsetenv("QT_QPA_PLATFORM");
    qputenv("GIO_MODULE_DIR", "/somewhere");
    processEnvironment::prepare();
    QCOMPARE(qgetenv("QT_QPA_PLATFORM"), QByteArray("xcb"));
    QVERIFY(qgetenv("GIO_MODULE_DIR") != "/somewhere");

    const QProcessEnvironment environment = processEnvironment::forChildren();
    QCOMPARE(environment.value(QStringLiteral("DISPLAY")), QStringLiteral(":42"));
    QVERIFY(!environment.contains(QStringLiteral("QT_QPA_PLATFORM")));
    QCOMPARE(environment.value(QStringLiteral("GIO_MODULE_DIR")), QStringLiteral("/somewhere"));
}

QTEST_APPLESS_MAIN(processEnvironmentTest)
#include "processEnvironmentTest.moc"
