#include "DBusMenuItem.h"

#include <QAction>
#include <QActionGroup>
#include <QBuffer>
#include <QGuiApplication>
#include <QHash>
#include <QIcon>
#include <QPixmap>

namespace {

/// The side of a menu icon in logical pixels, as GTK's and Plasma's menus have it.
constexpr int menuIconSide = 16;

QString keysymName(Qt::Key key)
{
    // Those that the toolkit calls otherwise.
    static const QHash<int, QString> names = {
        {Qt::Key_Space, QStringLiteral("space")},
        {Qt::Key_Exclam, QStringLiteral("exclam")},
        {Qt::Key_QuoteDbl, QStringLiteral("quotedbl")},
        {Qt::Key_NumberSign, QStringLiteral("numbersign")},
        {Qt::Key_Dollar, QStringLiteral("dollar")},
        {Qt::Key_Percent, QStringLiteral("percent")},
        {Qt::Key_Ampersand, QStringLiteral("ampersand")},
        {Qt::Key_Apostrophe, QStringLiteral("apostrophe")},
        {Qt::Key_ParenLeft, QStringLiteral("parenleft")},
        {Qt::Key_ParenRight, QStringLiteral("parenright")},
        {Qt::Key_Asterisk, QStringLiteral("asterisk")},
        {Qt::Key_Plus, QStringLiteral("plus")},
        {Qt::Key_Comma, QStringLiteral("comma")},
        {Qt::Key_Minus, QStringLiteral("minus")},
        {Qt::Key_Period, QStringLiteral("period")},
        {Qt::Key_Slash, QStringLiteral("slash")},
        {Qt::Key_Colon, QStringLiteral("colon")},
        {Qt::Key_Semicolon, QStringLiteral("semicolon")},
        {Qt::Key_Less, QStringLiteral("less")},
        {Qt::Key_Equal, QStringLiteral("equal")},
        {Qt::Key_Greater, QStringLiteral("greater")},
        {Qt::Key_Question, QStringLiteral("question")},
        {Qt::Key_At, QStringLiteral("at")},
        {Qt::Key_BracketLeft, QStringLiteral("bracketleft")},
        {Qt::Key_Backslash, QStringLiteral("backslash")},
        {Qt::Key_BracketRight, QStringLiteral("bracketright")},
        {Qt::Key_Escape, QStringLiteral("Escape")},
        {Qt::Key_Backspace, QStringLiteral("BackSpace")},
        {Qt::Key_Enter, QStringLiteral("KP_Enter")},
        {Qt::Key_Insert, QStringLiteral("Insert")},
        {Qt::Key_Delete, QStringLiteral("Delete")},
        {Qt::Key_PageUp, QStringLiteral("Page_Up")},
        {Qt::Key_PageDown, QStringLiteral("Page_Down")},
    };
    if (key >= Qt::Key_A && key <= Qt::Key_Z) {
        return {QChar(u'a' + (key - Qt::Key_A))};
    }
    return names.value(key, QKeySequence(key).toString(QKeySequence::PortableText));
}

QByteArray iconBytes(const QIcon &icon)
{
    // A size in logical pixels: the pixmap is as fine as the finest screen.
    const QPixmap pixmap =
        icon.pixmap(QSize(menuIconSide, menuIconSide), qGuiApp->devicePixelRatio(), QIcon::Normal);
    QBuffer png;
    png.open(QIODevice::WriteOnly);
    pixmap.save(&png, "PNG");
    return png.data();
}

bool isOneOfSeveral(const QAction &action)
{
    const QActionGroup *group = action.actionGroup();
    return group != nullptr && group->isExclusive();
}

} // namespace

QString dbusMenuLabel(const QString &text)
{
    QString label;
    label.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i) == u'_') {
            label += QStringLiteral("__");
        } else if (text.at(i) != u'&') {
            label += text.at(i);
        } else if (i + 1 < text.size() && text.at(i + 1) == u'&') {
            label += u'&';
            ++i;
        } else if (i + 1 < text.size()) {
            label += u'_';
        }
    }
    return label;
}

QList<QStringList> dbusMenuShortcut(const QKeySequence &shortcut)
{
    QList<QStringList> chords;
    for (int i = 0; i < shortcut.count(); ++i) {
        const QKeyCombination combination = shortcut[static_cast<uint>(i)];
        const Qt::KeyboardModifiers modifiers = combination.keyboardModifiers();
        QStringList chord;
        if (modifiers.testFlag(Qt::ControlModifier)) {
            chord.append(QStringLiteral("Control"));
        }
        if (modifiers.testFlag(Qt::AltModifier)) {
            chord.append(QStringLiteral("Alt"));
        }
        if (modifiers.testFlag(Qt::ShiftModifier)) {
            chord.append(QStringLiteral("Shift"));
        }
        if (modifiers.testFlag(Qt::MetaModifier)) {
            chord.append(QStringLiteral("Super"));
        }
        chord.append(keysymName(combination.key()));
        chords.append(chord);
    }
    return chords;
}

QVariantMap dbusMenuProperties(const QAction &action)
{
    QVariantMap properties;
    if (!action.isVisible()) {
        properties.insert(QStringLiteral("visible"), false);
    }
    if (action.isSeparator()) {
        properties.insert(QStringLiteral("type"), QStringLiteral("separator"));
        return properties;
    }
    properties.insert(QStringLiteral("label"), dbusMenuLabel(action.text()));
    if (!action.isEnabled()) {
        properties.insert(QStringLiteral("enabled"), false);
    }
    if (action.isCheckable()) {
        properties.insert(
            QStringLiteral("toggle-type"),
            isOneOfSeveral(action) ? QStringLiteral("radio") : QStringLiteral("checkmark"));
        properties.insert(QStringLiteral("toggle-state"), action.isChecked() ? 1 : 0);
    }
    if (!action.shortcut().isEmpty()) {
        properties.insert(
            QStringLiteral("shortcut"), QVariant::fromValue(dbusMenuShortcut(action.shortcut())));
    }
    if (!action.icon().name().isEmpty()) {
        properties.insert(QStringLiteral("icon-name"), action.icon().name());
    } else if (!action.icon().isNull() && action.isIconVisibleInMenu()) {
        properties.insert(QStringLiteral("icon-data"), iconBytes(action.icon()));
    }
    if (action.menu<QObject *>() != nullptr) {
        properties.insert(QStringLiteral("children-display"), QStringLiteral("submenu"));
    }
    if (!action.whatsThis().isEmpty()) {
        properties.insert(QStringLiteral("accessible-desc"), action.whatsThis());
    }
    return properties;
}
