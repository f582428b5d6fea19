#include "DBusMenuItem.h"

#include <QAction>
#include <QActionGroup>
#include <QPixmap>
#include <QTest>

class DBusMenuItemTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void labelOf_data();
    void labelOf();
    void shortcutOf_data();
    void shortcutOf();
    void aPlainItemHasItsLabelAlone();
    void aSeparatorHasItsTypeAlone();
    void disabledAndHiddenAreSaid();
    void aCheckMarkAndARadioButton();
    void theIconIsAPng();
};

void DBusMenuItemTest::labelOf_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("label");
    QTest::newRow("plain") << QStringLiteral("Gallery") << QStringLiteral("Gallery");
    QTest::newRow("mnemonic") << QStringLiteral("&Gallery") << QStringLiteral("_Gallery");
    QTest::newRow("an ampersand of its own") << QStringLiteral("a && b") << QStringLiteral("a & b");
    QTest::newRow("ampersand at the end") << QStringLiteral("a&") << QStringLiteral("a");
    QTest::newRow("underscore") << QStringLiteral("snake_case") << QStringLiteral("snake__case");
    QTest::newRow("markup is text") << QStringLiteral("<b>bold</b>") << QStringLiteral("<b>bold</b>");
    QTest::newRow("empty") << QString() << QString(QLatin1String(""));
}

void DBusMenuItemTest::labelOf()
{
    QFETCH(const QString, text);
    QTEST(dbusMenuLabel(text), "label");
}

void DBusMenuItemTest::shortcutOf_data()
{
    QTest::addColumn<QKeySequence>("shortcut");
    QTest::addColumn<QList<QStringList>>("chords");
    const auto row = [](const char *name, const QKeySequence &shortcut, const QList<QStringList> &chords) {
        QTest::newRow(name) << shortcut << chords;
    };
    row("none", {}, {});
    row("letter", Qt::CTRL | Qt::Key_G, {{QStringLiteral("Control"), QStringLiteral("g")}});
    row("comma", Qt::CTRL | Qt::Key_Comma, {{QStringLiteral("Control"), QStringLiteral("comma")}});
    row("all modifiers", Qt::CTRL | Qt::ALT | Qt::SHIFT | Qt::META | Qt::Key_F5,
        {{QStringLiteral("Control"), QStringLiteral("Alt"), QStringLiteral("Shift"), QStringLiteral("Super"),
          QStringLiteral("F5")}});
    row("two chords", QKeySequence(Qt::CTRL | Qt::Key_K, Qt::Key_Delete),
        {{QStringLiteral("Control"), QStringLiteral("k")}, {QStringLiteral("Delete")}});
}

void DBusMenuItemTest::shortcutOf()
{
    QFETCH(const QKeySequence, shortcut);
    QTEST(dbusMenuShortcut(shortcut), "chords");
}

void DBusMenuItemTest::aPlainItemHasItsLabelAlone()
{
    const QAction action(QStringLiteral("Quit Deskbroom"));
    const QVariantMap expected = {{QStringLiteral("label"), QStringLiteral("Quit Deskbroom")}};
    QCOMPARE(dbusMenuProperties(action), expected);
}

void DBusMenuItemTest::aSeparatorHasItsTypeAlone()
{
    QAction action(QStringLiteral("unseen"));
    action.setSeparator(true);
    const QVariantMap expected = {{QStringLiteral("type"), QStringLiteral("separator")}};
    QCOMPARE(dbusMenuProperties(action), expected);
}

void DBusMenuItemTest::disabledAndHiddenAreSaid()
{
    QAction action(QStringLiteral("Check for Updates…"));
    action.setEnabled(false);
    QCOMPARE(dbusMenuProperties(action).value(QStringLiteral("enabled")), QVariant(false));
    action.setVisible(false);
    QCOMPARE(dbusMenuProperties(action).value(QStringLiteral("visible")), QVariant(false));
}

void DBusMenuItemTest::aCheckMarkAndARadioButton()
{
    QAction action(QStringLiteral("5 minutes"));
    action.setCheckable(true);
    QCOMPARE(
        dbusMenuProperties(action).value(QStringLiteral("toggle-type")),
        QVariant(QStringLiteral("checkmark")));
    QCOMPARE(dbusMenuProperties(action).value(QStringLiteral("toggle-state")), QVariant(0));

    QActionGroup group(nullptr);
    group.addAction(&action);
    action.setChecked(true);
    QCOMPARE(
        dbusMenuProperties(action).value(QStringLiteral("toggle-type")), QVariant(QStringLiteral("radio")));
    QCOMPARE(dbusMenuProperties(action).value(QStringLiteral("toggle-state")), QVariant(1));
}

void DBusMenuItemTest::theIconIsAPng()
{
    QPixmap red(64, 64);
    red.fill(Qt::red);
    const QAction action(QIcon(red), QStringLiteral("Gallery"));

    const QByteArray png = dbusMenuProperties(action).value(QStringLiteral("icon-data")).toByteArray();

    const QImage image = QImage::fromData(png, "PNG");
    QCOMPARE(image.size(), QSize(16, 16));
    QCOMPARE(image.pixelColor(8, 8), QColor(Qt::red));
}

QTEST_MAIN(DBusMenuItemTest)

#include "DBusMenuItemTest.moc"
