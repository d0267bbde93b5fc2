#include "hostsupport.h"

#include <Orvek/Host/PanelSearch.h>

#include <QShortcut>
#include <QtWidgets/QGroupBox>

using namespace hostsupport;
using orvek::host::PanelSearch;

namespace
{
// Counts the texts that it receives.
class CountingSection : public QAccordion
{
    Q_OBJECT
public:
    explicit CountingSection(const QString& title = "Counting")
    {
        setTitle(title);
        new QVBoxLayout(new QWidget(this));
    }
    QStringList texts;
public Q_SLOTS:
    void setSearchText(const QString& text)
    {
        texts << text;
        QAccordion::setSearchText(text);
    }
};

// Camera, closed, with Lens inside it; Fog with a hidden row; Light.
struct Scene : Panel
{
    explicit Scene(bool searches = true)
    {
        camera->setOpen(false);
        lens->setOpen(false);
        hidden->hide();
        if (searches)
            searching = std::make_unique<PanelSearch>(&panel);
        showActive(panel);
    }
    void find(const QString& words) { search()->setText(words); }
    QWidget* line() const { return panel.findChild<QLabel*>("nothingFound"); }
    QVector<bool> state() const
    {
        QVector<bool> all;
        for (const QAccordion* section : {camera, lens, fog, light})
            all << section->isOpen() << section->isHidden();
        for (const QWidget* row : {exposure, focal, aperture, density, hidden, intensity})
            all << row->isHidden();
        return all;
    }
    QAccordion* camera = addSection("Camera");
    QSliderEdit* exposure = addRow(camera, "Exposure");
    QAccordion* lens = addSection("Lens", contentsOf(camera));
    QSliderEdit* focal = addRow(lens, "Focal length");
    QSliderEdit* aperture = addRow(lens, "Aperture");
    QAccordion* fog = addSection("Fog");
    QSliderEdit* density = addRow(fog, "Density");
    QSliderEdit* hidden = addRow(fog, "Falloff");
    QAccordion* light = addSection("Light");
    QSliderEdit* intensity = addRow(light, "Intensity");
    std::unique_ptr<PanelSearch> searching;
};
} // namespace

class tst_PanelSearch : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    // The control run of what follows.
    void thePanelAloneForgetsAndHides()
    {
        Scene scene(false);
        scene.find("focal");
        QVERIFY(!scene.focal->isVisible() && scene.light->isVisible() && !scene.line());
        auto* row = Panel::addRow(scene.addSection("Late"), "Speed");
        QTRY_VERIFY(row->isVisible());
        scene.find("");
        QVERIFY(scene.hidden->isVisible() && scene.camera->isOpen());
    }

    void clearingBringsBackWhatWas()
    {
        Scene scene;
        const QVector<bool> before = scene.state();
        for (const QStringList& words :
             {QStringList{"focal"}, {"falloff"}, {"camera", "fog"}, {"e", "zzz", "lens", "i"}})
        {
            for (const QString& text : words)
                scene.find(text);
            scene.panel.setSearchText();
            QVERIFY(scene.state() != before);
            scene.find("");
            QCOMPARE(scene.state(), before);
        }
        // What the user folds, and the host shows or hides, during a search stays.
        scene.find("e");
        for (const QAccordion* section : {scene.fog, scene.camera})
            child<QCheckBox>(*section, "accordionCheckBox")->click();
        scene.density->hide();
        auto* late = Panel::addRow(scene.fog, "Start");
        QTRY_VERIFY(late->isHidden());
        QVERIFY(!scene.fog->isOpen() && !scene.camera->isOpen()); // a new row does not open it again
        scene.hidden->show();
        scene.find("");
        QVERIFY(!scene.fog->isOpen() && !scene.camera->isOpen());
        QVERIFY(!scene.hidden->isHidden() && scene.density->isHidden());
        scene.searching->setRestores(false);
        scene.find("e");
        scene.find("");
        QVERIFY(scene.camera->isOpen() && !scene.density->isHidden());
    }

    void matchesAreSeenAndNothingElse()
    {
        Scene scene;
        auto* group = new QGroupBox;
        new QVBoxLayout(group);
        Panel::contentsOf(scene.light)->layout()->addWidget(group);
        auto* deep = Panel::addRow(scene.addSection("Deep", group), "Needle");
        scene.find("focal");
        QVERIFY(scene.focal->isVisible() && !scene.aperture->isVisible() && !scene.exposure->isVisible());
        QVERIFY(!scene.fog->isVisible() && !scene.light->isVisible() && !scene.line());
        scene.find("needle");
        QVERIFY(deep->isVisible() && !scene.intensity->isVisible());
        scene.find("zzz");
        QTRY_VERIFY(scene.line()->isVisible());
        scene.find("");
        QVERIFY(!scene.line()->isVisible());
        group->hide(); // by the host: stays so
        scene.find("needle");
        QVERIFY(!deep->isVisible() && !scene.light->isVisible());
        QTRY_VERIFY(scene.line()->isVisible() && scene.line()->y() >= scene.search()->geometry().bottom());
        const int width = scene.panel.minimumSizeHint().width();
        scene.find(QString(300, 'w'));
        QCOMPARE(scene.panel.minimumSizeHint().width(), width);
        scene.find("<b>zzz");
        QCOMPARE(static_cast<QLabel*>(scene.line())->text(), "Nothing matches \"<b>zzz\"");
        scene.searching->setTellsNothingFound(false);
        QVERIFY(!scene.line()->isVisible());

        scene.find("camera"); // everything in it, also inside Lens, which is folded as before
        scene.lens->setOpen(true);
        QVERIFY(scene.exposure->isVisible() && scene.focal->isVisible() && scene.aperture->isVisible());
        scene.searching->setShowsNested(false);
        scene.find("focal");
        QVERIFY(!scene.focal->isVisible() && !scene.camera->isVisible());
        scene.searching->setHidesUnmatched(false);
        QVERIFY(scene.camera->isVisible() && scene.fog->isVisible());
    }

    void lateSectionsAndRowsAreFiltered()
    {
        for (const char* first : {"", "x"})
        {
            Scene scene;
            scene.find(first);
            scene.find("");
            auto* early = new CountingSection;
            scene.column->layout()->addWidget(early);
            // The panel connects a finished section that is moved into it at once, and the one inside it first.
            auto* moved = new CountingSection;
            auto* inner = new CountingSection("Needles");
            Panel::contentsOf(moved)->layout()->addWidget(inner);
            moved->setParent(&scene.panel);
            scene.find("needle");
            for (const CountingSection* section : {early, moved, inner})
                QCOMPARE(section->texts, QStringList{"needle"});
            QVERIFY(early->isHidden() && !inner->isHidden());

            auto* late = new CountingSection;
            Panel::contentsOf(scene.camera)->layout()->addWidget(late);
            auto* match = Panel::addRow(late, "Needle");
            auto* hidden = Panel::addRow(late, "Eye");
            hidden->hide();
            late->setOpen(false);
            auto* matchInFog = Panel::addRow<QColourEdit>(scene.fog, "Needle");
            auto* rowInFog = Panel::addRow<QColourEdit>(scene.fog, "Colour");
            QTRY_VERIFY(match->isVisible() && matchInFog->isVisible() && !rowInFog->isVisible());
            late->texts.clear();
            scene.find("need");
            QCOMPARE(late->texts, QStringList{"need"});
            scene.find("");
            QVERIFY(!late->isOpen() && !scene.camera->isOpen() && scene.fog->isOpen());
            QVERIFY(hidden->isHidden() && rowInFog->isVisible());
        }
    }

    void whatLeavesIsAsBefore()
    {
        auto scene = std::make_unique<Scene>();
        scene->find("density");
        QWidget elsewhere;
        auto* rows = new QVBoxLayout(&elsewhere);
        elsewhere.show();
        rows->addWidget(scene->fog);
        rows->addWidget(scene->light);
        Panel::contentsOf(scene->camera)->layout()->addWidget(scene->aperture);
        QTRY_VERIFY(scene->intensity->isVisible() && scene->fog->styleSheet().isEmpty());
        QVERIFY(scene->hidden->isHidden());
        delete scene->lens;
        scene->find("int");
        QVERIFY(scene->density->isVisible());
        scene->find("");
        QVERIFY(!scene->aperture->isHidden()); // the search had hidden it, not the host
        // The panel has its sections back: also those that it never had connected, and during a search.
        auto* late = new CountingSection;
        scene->column->layout()->addWidget(late);
        scene->find("zzz");
        scene->searching.reset();
        QVERIFY(scene->camera->isVisible() && late->isVisible() && !scene->line());
        scene->find("light");
        QCOMPARE(late->texts, QStringList({"zzz", "light"}));
        PanelSearch search(&scene->panel); // comes during a search
        QVERIFY(!late->isVisible());
        scene->find("");
        QVERIFY(late->isVisible() && !scene->exposure->isHidden());
        scene->find("e");
        scene.reset();
        search.findNext();
        search.setHidesUnmatched(false);
        PanelSearch(nullptr).findFirst();
    }

    void keysGoToTheFieldAndBack()
    {
        for (const Kind& window : windowKinds)
        {
            const std::unique_ptr<QWidget> top(window.create());
            Scene scene;
            auto* rows = new QVBoxLayout(top.get());
            rows->addWidget(&scene.panel);
            auto* button = new QPushButton;
            rows->addWidget(button);
            const QSignalSpy pressed(button, &QPushButton::clicked);
            showActive(*top);
            auto* field = child<QLineEdit>(*scene.intensity, "lineEdit");
            field->setFocus();
            QTRY_COMPARE(QApplication::focusWidget(), field);
            for (const char* words : {"zzz", ""}) // without a text Esc only goes back
            {
                QTest::keySequence(top.get(), QKeySequence::Find);
                QTest::keyClicks(scene.search(), words);
                if (*words)
                    QTest::keyClick(scene.search(), Qt::Key_Return);
                QTest::keySequence(top.get(), QKeySequence::Find);
                QCOMPARE(scene.search()->selectedText(), words);
                QTest::keyClick(scene.search(), Qt::Key_Escape);
                QCOMPARE(scene.search()->text(), QString());
                QCOMPARE(QApplication::focusWidget(), field);
            }
            QVERIFY(pressed.isEmpty() && top->isVisible());
            scene.searching->setShortcut(false);
            QTest::keySequence(top.get(), QKeySequence::Find);
            QCOMPARE(QApplication::focusWidget(), field);
            scene.searching->setFieldKeys(false);
            QTest::keyClicks(scene.search(), "zzz");
            QTest::keyClick(scene.search(), Qt::Key_Escape);
            QCOMPARE(scene.search()->text(), "zzz");
            QCOMPARE(top->isVisible(), !qobject_cast<QDialog*>(top.get()));
        }
    }

    void keysGoFromMatchToMatch()
    {
        for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft})
        {
            Panel panel;
            const PanelSearch search(&panel.panel);
            panel.panel.setLayoutDirection(direction);
            panel.panel.resize(420, 220);
            QVector<QWidget*> matches;
            for (const Kind& kind : editorKinds)
            {
                auto* section = panel.addSection(kind.name);
                Panel::addRow(section, "Other");
                matches << kind.create();
                matches.last()->setWindowTitle("Needle");
                Panel::contentsOf(section)->layout()->addWidget(matches.last());
            }
            // Created last, seen first; the title matches.
            auto* top = panel.addSection("Needles");
            static_cast<QVBoxLayout*>(panel.column->layout())->insertWidget(0, top);
            matches.prepend(child<QCheckBox>(*top, "accordionCheckBox"));
            showActive(panel.panel);
            panel.search()->setFocus();
            QTest::keyClicks(panel.search(), "needle");
            QTest::keyClick(panel.search(), Qt::Key_Return);
            const QWidget* viewport = panel.panel.findChild<QScrollArea*>()->viewport();
            const auto isAt = [viewport](const QWidget* match)
            {
                const QWidget* focus = QApplication::focusWidget();
                const bool isField = match->isAncestorOf(focus) && qobject_cast<const QLineEdit*>(focus);
                return (focus == match || isField) &&
                       viewport->rect().contains(match->mapTo(viewport, match->rect().center()));
            };
            for (const QWidget* match : qAsConst(matches))
            {
                QVERIFY2(isAt(match), match->metaObject()->className());
                QTest::keySequence(&panel.panel, QKeySequence::FindNext);
            }
            QVERIFY(isAt(matches.first()));
            QTest::keySequence(&panel.panel, QKeySequence::FindPrevious);
            QVERIFY(isAt(matches.last()));
            QTest::keySequence(&panel.panel, QKeySequence::Find);
            QTest::keyClick(panel.search(), Qt::Key_Escape);
            const QShortcut own(QKeySequence::FindNext, &panel.panel);
            const QSignalSpy taken(&own, &QShortcut::activated);
            QTest::keySequence(&panel.panel, QKeySequence::FindNext); // the host's again
            QCOMPARE(taken.size(), 1);
            QVERIFY(isAt(matches.last()));
        }
    }
};

QTEST_MAIN(tst_PanelSearch)
#include "tst_panelsearch.moc"
