#include "renderOnChange.h"

#include <QTest>

#include <memory>

namespace {

class Model final : public ObservableObject {
public:
    Published<int> number{this, 0};
    Published<QString> text{this, {}};
};

} // namespace

class renderOnChangeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void manyChangesAreOneRendering();
    void renderingSeesTheNewValues();
    void aChangeWhileRenderingRendersOnceMore();
    void aViewThatIsGoneRendersNothing();
};

void renderOnChangeTest::manyChangesAreOneRendering()
{
    Model model;
    QObject view;
    int renderings = 0;
    renderOnChange(model, view, [&renderings] { ++renderings; });
    model.number.set(1);
    model.number.set(2);
    model.text.set(QStringLiteral("a"));
    QCOMPARE(renderings, 0);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(renderings, 1);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(renderings, 1);
}

void renderOnChangeTest::renderingSeesTheNewValues()
{
    Model model;
    QObject view;
    int seen = 0;
    renderOnChange(model, view, [&] { seen = model.number.get(); });
    model.number.set(7);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(seen, 7);
}

void renderOnChangeTest::aChangeWhileRenderingRendersOnceMore()
{
    Model model;
    QObject view;
    int renderings = 0;
    renderOnChange(model, view, [&] {
        ++renderings;
        model.number.set(5);
    });
    model.number.set(1);
    QTRY_COMPARE(renderings, 2);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(renderings, 2);
}

void renderOnChangeTest::aViewThatIsGoneRendersNothing()
{
    Model model;
    auto view = std::make_unique<QObject>();
    int renderings = 0;
    renderOnChange(model, *view, [&renderings] { ++renderings; });
    model.number.set(1);
    view.reset();
    QCoreApplication::sendPostedEvents();
    model.number.set(2);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(renderings, 0);
}

QTEST_GUILESS_MAIN(renderOnChangeTest)
#include "renderOnChangeTest.moc"
