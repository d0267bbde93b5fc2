#include "hostlayouts.h"

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QPropertyPanel.h>

#include <cstdio>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

// Any widget with such a slot, also a private one, is told the search text.
class Listener : public QWidget
{
    Q_OBJECT
public:
    Listener(const QString& name, QStringList& log, QWidget* parent = nullptr) : QWidget(parent), m_log(log)
    {
        setObjectName(name);
    }

private Q_SLOTS:
    void setSearchText(const QString& text) { m_log << objectName() + ':' + text; }

private:
    QStringList& m_log;
};

namespace
{
QScrollArea* addScrollArea(QPropertyPanel& panel)
{
    auto* area = new QScrollArea(&panel);
    area->setObjectName("scrollArea");
    area->setWidget(new QWidget);
    return area;
}

QList<QObject*> itemsOf(const QWidget& widget)
{
    QList<QObject*> items;
    for (int i = 0; i < widget.layout()->count(); ++i)
        items << widget.layout()->itemAt(i)->widget();
    return items;
}

using Heights = Table<int, int, bool>; // needed (none without a layout), minimum, whether the event goes no further

#ifdef Q_OS_UNIX
template <typename Action>
QByteArray standardOutputOf(Action action)
{
    QTemporaryFile file;
    if (!file.open())
        qFatal("no temporary file");
    std::fflush(stdout);
    const int saved = dup(fileno(stdout));
    dup2(file.handle(), fileno(stdout));
    action();
    std::fflush(stdout);
    dup2(saved, fileno(stdout));
    close(saved);
    file.seek(0);
    return file.readAll();
}
#endif
} // namespace

class tst_PropertyPanel : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void outerListenersHearFirst()
    {
        QStringList log;
        QPropertyPanel panel;
        QWidget* contents = addScrollArea(panel)->widget();
        Listener outer("outer", log, contents);
        QPropertyPanel otherPanel(contents); // its signal of that name is none to connect to
        Listener inner("inner", log, new QWidget(&outer));
        Listener last("last", log, contents);
        panel.show();
        QSignalSpy otherSearches(&otherPanel, QOverload<const QString&>::of(&QPropertyPanel::setSearchText));

        QTest::keyClicks(child<QLineEdit>(panel, "search"), "fo");
        QCOMPARE(log, QStringList({"outer:f", "inner:f", "last:f", "outer:fo", "inner:fo", "last:fo"}));
        QVERIFY(otherSearches.isEmpty());
    }

    void widgetsAreLookedForOnce()
    {
        QStringList log;
        QPropertyPanel panel;
        QSignalSpy searches(&panel, QOverload<const QString&>::of(&QPropertyPanel::setSearchText));
        auto* search = child<QLineEdit>(panel, "search");
        panel.setSearchText(); // does not look for any
        QScrollArea* area = addScrollArea(panel);
        Listener early("early", log, area->widget());
        panel.show();
        QTest::keyClicks(search, "a");
        Listener late("late", log, area->widget());
        QTest::keyClicks(search, "b");
        panel.setSearchText();
        auto* clearButton = search->findChild<QToolButton*>();
        QTRY_VERIFY(clearButton->isVisible());
        QTest::mouseClick(clearButton, Qt::LeftButton);
        QCOMPARE(log, QStringList({"early:a", "early:ab", "early:ab", "early:"}));
        QCOMPARE(searches, QList<QVariantList>({{""}, {"a"}, {"ab"}, {"ab"}, {""}}));

        QPropertyPanel tooEarly;
        QTest::keyClicks(child<QLineEdit>(tooEarly, "search"), "a");
        Listener never("never", log, addScrollArea(tooEarly)->widget());
        tooEarly.show();
        QTest::keyClicks(child<QLineEdit>(tooEarly, "search"), "b");
        QCOMPARE(log.size(), 4);
    }

    void finishedWidgetsMovedInAreConnected()
    {
        QStringList log;
        QPropertyPanel panel;
        auto* search = child<QLineEdit>(panel, "search");
        Listener section("section", log);
        Listener nested("nested", log, new QLabel(&section));
        section.setParent(&panel);
        Listener unfinished("unfinished", log, &panel);
        QTest::keyClicks(search, "a");
        QCOMPARE(log, QStringList({"nested:a", "section:a"}));

        // A finished scroll area is reached by the move and by the first text.
        log.clear();
        QPropertyPanel other;
        QScrollArea area;
        area.setWidget(new Listener("inside", log));
        area.setParent(&other);
        QTest::keyClicks(child<QLineEdit>(other, "search"), "a");
        QCOMPARE(log, QStringList({"inside:a", "inside:a"}));
    }

    void firstScrollAreaIsLaidOut()
    {
        QStringList log;
        QPropertyPanel panel;
        auto* search = child<QLineEdit>(panel, "search");
        QScrollArea* first = addScrollArea(panel);
        QCOMPARE(itemsOf(panel), QList<QObject*>({search})); // not yet recognizable
        panel.show();
        QCOMPARE(itemsOf(panel), QList<QObject*>({search, first}));
        QScrollArea* second = addScrollArea(panel);
        new Listener("ignored", log, second->widget());
        second->show();
        QCOMPARE(itemsOf(panel), QList<QObject*>({search, first}));
        QTest::keyClicks(search, "a");
        QCOMPARE(log, QStringList());

        delete first;
        QCOMPARE(itemsOf(panel), QList<QObject*>({search, second}));
        for (int i = 0; i < 2; ++i) // by a host; Qt removes one item only
            panel.layout()->addItem(new QWidgetItem(second));
        delete second;
        QCOMPARE(itemsOf(panel), QList<QObject*>({search}));
        panel.resize(panel.size() * 2);
        QTest::keyClicks(search, "b");
        QScrollArea* third = addScrollArea(panel);
        third->show();
        QCOMPARE(itemsOf(panel), QList<QObject*>({search, third}));
        third->setViewport(new QWidget); // deletes the one before
        panel.resize(panel.size() / 2);
    }

    void scrollAreaStaysWhereTheHostLaidIt_data() { addHostLayouts(); }
    void scrollAreaStaysWhereTheHostLaidIt()
    {
        // A finished one is found while the host's call is under way, one made as a child only later.
        QPropertyPanel panel;
        checkHostLayout(panel, new QScrollArea);
        QPropertyPanel other;
        checkHostLayout(other, new QScrollArea(&other));
    }

    void searchFieldReturnsToEmptyLayout()
    {
        QPropertyPanel panel;
        auto* search = child<QLineEdit>(panel, "search");
        QObject first(&panel);
        QCOMPARE(itemsOf(panel), QList<QObject*>({search}));
        delete panel.layout()->takeAt(0);
        QObject second(&panel);
        QCOMPARE(itemsOf(panel), QList<QObject*>({search}));

        // From elsewhere the field comes as a child of its own.
        search->setParent(nullptr);
        QCOMPARE(itemsOf(panel), QList<QObject*>());
        QObject third(&panel);
        QCOMPARE(search->parent(), &panel);
        QTRY_COMPARE(itemsOf(panel), QList<QObject*>({search}));

        // Both come back within one call of the host: the panel lays out the field, and so finds the scroll area.
        auto* area = new QScrollArea;
        search->setParent(area);
        search->setParent(nullptr);
        panel.layout()->addWidget(area);
        QCOMPARE(panel.layout()->count(), 2);
        QVERIFY(panel.layout()->indexOf(search) >= 0 && panel.layout()->indexOf(area) >= 0);

        delete area;
        delete panel.layout();
        QScrollArea last;
        last.setParent(&panel);
        QCOMPARE(panel.layout(), nullptr);
    }

    void searchFieldMayBeDestroyed()
    {
        QPropertyPanel panel;
        auto* search = child<QLineEdit>(panel, "search");
        QSignalSpy searches(&panel, QOverload<const QString&>::of(&QPropertyPanel::setSearchText));
        QTest::keyClicks(search, "a");
        delete search;
        panel.setSearchText();
        addScrollArea(panel);
        panel.show();
        panel.on_search_textChanged("b");
        QCOMPARE(searches, QList<QVariantList>({{"a"}, {""}, {"b"}}));
    }

    void contentsGrowToTheirMinimum_data()
    {
        const Heights row;
        row("no layout", -1, 0, false);
        row("nothing needed", 0, 0, false);
        row("little needed", 10, 16, false);
        row("some needed", 20, 20, false);
        row("more than the scroll area", 300, 300, true);
    }

    void contentsGrowToTheirMinimum()
    {
        const auto [needed, minimumHeight, consumed] = Heights::current();
        QPropertyPanel panel;
        QScrollArea area;
        QWidget* viewport = area.viewport();
        if (needed >= 0)
        {
            auto* rows = new QVBoxLayout(viewport);
            rows->setContentsMargins(0, 0, 0, 0);
            rows->addSpacing(needed);
        }
        QResizeEvent resize(QSize(50, 50), QSize(40, 40));
        QEvent move(QEvent::Move);
        QVERIFY(!panel.eventFilter(viewport, &resize)); // no scroll area yet
        area.setParent(&panel);
        QVERIFY(!panel.eventFilter(viewport, &move));
        QCOMPARE(viewport->minimumHeight(), 0);
        QApplication::sendEvent(&panel, &resize);
        QCOMPARE(viewport->minimumHeight(), minimumHeight);
        QVERIFY(!panel.eventFilter(&panel, &resize));
        viewport->setMinimumHeight(0);
        QApplication::sendEvent(viewport, &resize);
        QCOMPARE(viewport->minimumHeight(), minimumHeight);
        QCOMPARE(panel.eventFilter(viewport, &resize), consumed);
    }

    void styleSheetIsPainted()
    {
        QWidget host;
        QPropertyPanel panel(&host);
        panel.resize(100, 100);
        panel.setStyleSheet("QPropertyPanel {background: rgb(10, 20, 30); border: 1px solid rgb(200, 0, 0);}");
        const QImage image = panel.grab().toImage();
        QCOMPARE(image.pixelColor(0, 0), QColor(200, 0, 0));
        QCOMPARE(image.pixelColor(1, 98), QColor(10, 20, 30));
    }

#ifdef Q_OS_UNIX

    void childNamesGoToStandardOutput()
    {
        QPropertyPanel panel;
        const QByteArray form = "verticalLayoutsearch";
        QObject* added = nullptr;
        QCOMPARE(standardOutputOf([&] { added = new QObject(&panel); }), form);
        added->setObjectName(QStringLiteral("100%s%n\u00e4\u20ac"));
        QObject* second = nullptr;
        QCOMPARE(standardOutputOf([&] { second = new QObject(&panel); }), form + "100%s%n\xc3\xa4\xe2\x82\xac");
        QCOMPARE(standardOutputOf([&] { delete added; }), form);
        delete second;
        QCOMPARE(standardOutputOf([] { const QPropertyPanel unchanged; }), QByteArray());
    }
#endif
};

QTEST_MAIN(tst_PropertyPanel)
#include "tst_propertypanel.moc"
