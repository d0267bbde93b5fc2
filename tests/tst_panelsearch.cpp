#include "hostsupport.h"

#include <Orvek/Host/PanelSearch.h>

#include <QtWidgets/QGroupBox>
#include <QtWidgets/QPushButton>

using namespace orvek::host;
using hostsupport::Panel;

namespace
{
QString text(const char* latin1)
{
    return QLatin1String(latin1);
}

// Counts the texts that it receives.
class CountingSection : public QAccordion
{
    Q_OBJECT
public:
    explicit CountingSection(const char* title = "Counting")
    {
        setTitle(text(title));
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
            search_ = std::make_unique<PanelSearch>(&panel);
        hostsupport::showActive(panel);
    }
    void find(const char* words) { search()->setText(text(words)); }
    QVector<bool> state() const
    {
        QVector<bool> all;
        for (const QAccordion* section : {camera, lens, fog, light})
            all << section->isOpen() << section->isHidden();
        for (const QWidget* row : {exposure, focal, aperture, density, hidden, intensity})
            all << row->isHidden();
        return all;
    }

    QAccordion* camera = addSection(text("Camera"));
    QSliderEdit* exposure = addRow(camera, text("Exposure"));
    QAccordion* lens = addSection(text("Lens"), contentsOf(camera));
    QSliderEdit* focal = addRow(lens, text("Focal length"));
    QSliderEdit* aperture = addRow(lens, text("Aperture"));
    QAccordion* fog = addSection(text("Fog"));
    QSliderEdit* density = addRow(fog, text("Density"));
    QSliderEdit* hidden = addRow(fog, text("Falloff"));
    QAccordion* light = addSection(text("Light"));
    QSliderEdit* intensity = addRow(light, text("Intensity"));
    std::unique_ptr<PanelSearch> search_;
};
} // namespace

class tst_PanelSearch : public WatchedTest
{
    Q_OBJECT
private Q_SLOTS:
    // The control run of what follows.
    void thePanelAloneForgetsAndHides()
    {
        Scene scene(false);
        scene.find("focal");
        QVERIFY(!scene.focal->isVisible() && scene.light->isVisible());
        QVERIFY(!scene.panel.findChild<QLabel*>(text("nothingFound")));
        auto* row = Panel::addRow(scene.addSection(text("Late")), text("Speed"));
        QTRY_VERIFY(row->isVisible());
        scene.find("");
        QVERIFY(scene.hidden->isVisible() && scene.camera->isOpen());
    }

    void clearingBringsBackWhatWas_data()
    {
        QTest::addColumn<QByteArrayList>("texts");
        QTest::newRow("nested match") << QByteArrayList{"focal"};
        QTest::newRow("hidden row") << QByteArrayList{"falloff"};
        QTest::newRow("own titles") << QByteArrayList{"camera", "fog"};
        QTest::newRow("many") << QByteArrayList{"e", "zzz", "lens", "i"};
    }
    void clearingBringsBackWhatWas()
    {
        QFETCH(QByteArrayList, texts);
        Scene scene;
        const QVector<bool> before = scene.state();
        for (int turn = 0; turn < 2; ++turn)
        {
            for (const QByteArray& words : qAsConst(texts))
                scene.find(words);
            scene.panel.setSearchText();
            QVERIFY(scene.state() != before);
            scene.find("");
            scene.panel.setSearchText();
            QCOMPARE(scene.state(), before);
        }
        scene.search_->setRestores(false);
        scene.find("e");
        scene.find("");
        QVERIFY(scene.camera->isOpen() && scene.hidden->isVisible());
    }

    void whatChangesDuringASearchStays()
    {
        Scene scene;
        scene.find("e");
        QVERIFY(scene.camera->isOpen());
        child<QCheckBox>(*scene.fog, "accordionCheckBox")->click();
        scene.hidden->show();
        scene.density->hide();
        Panel::addRow(scene.fog, text("Height"));
        auto* other = Panel::addRow(scene.fog, text("Start"));
        QTRY_VERIFY(other->isHidden());
        QVERIFY(!scene.fog->isOpen()); // a new row does not open it again
        scene.find("");
        QVERIFY(!scene.fog->isOpen() && !scene.camera->isOpen());
        QVERIFY(!scene.hidden->isHidden() && scene.density->isHidden());
    }

    void aNestedMatchIsSeen()
    {
        Scene scene;
        scene.find("focal");
        QVERIFY(scene.focal->isVisible() && !scene.aperture->isVisible() && !scene.exposure->isVisible());
        QVERIFY(!scene.fog->isVisible() && !scene.light->isVisible());
        scene.find("camera"); // everything in it, also inside Lens, which is folded as before
        scene.lens->setOpen(true);
        QVERIFY(scene.exposure->isVisible() && scene.focal->isVisible() && scene.aperture->isVisible());
        scene.search_->setShowsNested(false);
        scene.find("focal");
        QVERIFY(!scene.focal->isVisible() && !scene.camera->isVisible());
        scene.search_->setHidesUnmatched(false);
        QVERIFY(scene.camera->isVisible() && scene.fog->isVisible());
    }

    void rowsOnTheWayAreSeen()
    {
        Scene scene;
        auto* group = new QGroupBox;
        new QVBoxLayout(group);
        Panel::contentsOf(scene.light)->layout()->addWidget(group);
        auto* row = Panel::addRow(scene.addSection(text("Deep"), group), text("Needle"));
        scene.find("needle");
        QVERIFY(row->isVisible() && !scene.intensity->isVisible());
        scene.find("");
        group->hide(); // by the host: stays so
        scene.find("needle");
        QVERIFY(!row->isVisible() && !scene.light->isVisible());
        QVERIFY(child<QLabel>(scene.panel, "nothingFound")->isVisible());
    }

    void lateSectionsAndRowsAreFiltered_data()
    {
        QTest::addColumn<bool>("searchedBefore");
        QTest::newRow("first search") << false;
        QTest::newRow("second search") << true;
    }
    void lateSectionsAndRowsAreFiltered()
    {
        QFETCH(bool, searchedBefore);
        Scene scene;
        if (searchedBefore)
            scene.find("x");
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
            QCOMPARE(section->texts, QStringList{text("needle")});
        QVERIFY(early->isHidden() && !inner->isHidden());

        auto* late = new CountingSection;
        Panel::contentsOf(scene.camera)->layout()->addWidget(late);
        auto* match = Panel::addRow(late, text("Needle"));
        auto* hidden = Panel::addRow(late, text("Eye"));
        hidden->hide();
        late->setOpen(false);
        auto* matchInFog = Panel::addRow<QColourEdit>(scene.fog, text("Needle"));
        auto* rowInFog = Panel::addRow<QColourEdit>(scene.fog, text("Colour"));
        QTRY_VERIFY(match->isVisible() && matchInFog->isVisible());
        QVERIFY(!rowInFog->isVisible());
        late->texts.clear();
        scene.find("need");
        QCOMPARE(late->texts, QStringList{text("need")});
        scene.find("");
        QVERIFY(!late->isOpen() && !scene.camera->isOpen() && scene.fog->isOpen());
        QVERIFY(hidden->isHidden() && rowInFog->isVisible());
    }

    void thoseThatLeaveAreLetGo()
    {
        Scene scene;
        scene.find("intensity");
        QWidget elsewhere;
        auto* rows = new QVBoxLayout(&elsewhere);
        elsewhere.show();
        rows->addWidget(scene.fog);
        Panel::contentsOf(scene.light)->layout()->addWidget(scene.exposure);
        QTRY_VERIFY(scene.fog->isVisible() && scene.density->isVisible());
        QVERIFY(scene.hidden->isHidden() && scene.fog->styleSheet().isEmpty());
        delete scene.camera;
        scene.find("int");
        QVERIFY(scene.density->isVisible());
        scene.find("");
        QVERIFY(scene.exposure->isVisible()); // the search had hidden it, not the host

        auto dying = std::make_unique<Scene>();
        dying->find("e");
        const auto search = std::move(dying->search_);
        dying.reset();
        search->find();
        search->findNext();
        search->setHidesUnmatched(false);
        PanelSearch(nullptr).findFirst();
    }

    void withoutItThePanelIsAsBefore()
    {
        Scene scene;
        scene.find("focal");
        scene.search_.reset();
        QVERIFY(scene.light->isVisible() && !scene.panel.findChild<QLabel*>(text("nothingFound")));
        scene.find("density");
        QVERIFY(scene.light->isVisible() && !scene.intensity->isVisible());
        // Also if it goes before the panel has connected anything, and if it comes during a search.
        Panel panel;
        auto* section = new CountingSection;
        panel.column->layout()->addWidget(section);
        panel.panel.show();
        std::make_unique<PanelSearch>(&panel.panel).reset();
        panel.search()->setText(text("x"));
        QCOMPARE(section->texts.size(), 1);
        const PanelSearch late(&panel.panel);
        QVERIFY(!section->isVisible());
        panel.search()->clear();
        QVERIFY(section->isVisible());
    }

    void aLineSaysThatNothingMatches()
    {
        Scene scene;
        scene.find("<b>zzz");
        auto* line = child<QLabel>(scene.panel, "nothingFound");
        QCOMPARE(line->text(), text("Nothing matches \"<b>zzz\""));
        QTRY_VERIFY(line->isVisible() && line->y() >= scene.search()->geometry().bottom());
        const int width = scene.panel.minimumSizeHint().width();
        scene.search()->setText(QString(300, QLatin1Char('w')));
        QCOMPARE(scene.panel.minimumSizeHint().width(), width);
        for (const bool on : {false, true})
        {
            scene.search_->setTellsNothingFound(on);
            QCOMPARE(line->isVisible(), on);
        }
        for (const char* words : {"fog", "zzz", ""})
        {
            scene.find(words);
            QCOMPARE(line->isVisible(), *words == 'z');
        }
    }

    void keysGoToTheFieldAndBack_data()
    {
        QTest::addColumn<hostsupport::Create>("window");
        for (const auto& window : hostsupport::windowKinds)
            QTest::newRow(window.name) << window.create;
    }
    void keysGoToTheFieldAndBack()
    {
        QFETCH(hostsupport::Create, window);
        const std::unique_ptr<QWidget> top(window());
        Scene scene;
        auto* rows = new QVBoxLayout(top.get());
        rows->addWidget(&scene.panel);
        auto* button = new QPushButton;
        rows->addWidget(button);
        const QSignalSpy pressed(button, &QPushButton::clicked);
        hostsupport::showActive(*top);
        auto* field = child<QLineEdit>(*scene.intensity, "lineEdit");
        field->setFocus();
        QTRY_COMPARE(QApplication::focusWidget(), field);

        QTest::keySequence(top.get(), QKeySequence::Find);
        QTest::keyClicks(scene.search(), text("zzz"));
        QTest::keyClick(scene.search(), Qt::Key_Return);
        QCOMPARE(pressed.count(), 0);
        QTest::keySequence(top.get(), QKeySequence::Find);
        QCOMPARE(scene.search()->selectedText(), text("zzz"));
        QTest::keyClick(scene.search(), Qt::Key_Escape);
        QCOMPARE(scene.search()->text(), QString());
        QCOMPARE(QApplication::focusWidget(), field);

        // Without a text Esc only goes back, and without a place to go back to it is the window's.
        QTest::keySequence(top.get(), QKeySequence::Find);
        QTest::keyClick(scene.search(), Qt::Key_Escape);
        QCOMPARE(QApplication::focusWidget(), field);
        scene.search_->setShortcut(false);
        QTest::keySequence(top.get(), QKeySequence::Find);
        QCOMPARE(QApplication::focusWidget(), field);
        QVERIFY(top->isVisible());
        scene.search_->setFieldKeys(false);
        QTest::keyClicks(scene.search(), text("zzz"));
        QTest::keyClick(scene.search(), Qt::Key_Escape);
        QCOMPARE(scene.search()->text(), text("zzz"));
        QCOMPARE(top->isVisible(), !qobject_cast<QDialog*>(top.get()));
    }

    void keysGoFromMatchToMatch_data()
    {
        QTest::addColumn<Qt::LayoutDirection>("direction");
        QTest::newRow("left to right") << Qt::LeftToRight;
        QTest::newRow("right to left") << Qt::RightToLeft;
    }
    void keysGoFromMatchToMatch()
    {
        QFETCH(Qt::LayoutDirection, direction);
        Panel panel;
        const PanelSearch search(&panel.panel);
        panel.panel.setLayoutDirection(direction);
        panel.panel.resize(420, 220);
        QVector<QWidget*> matches;
        for (const hostsupport::Kind& kind : hostsupport::editorKinds)
        {
            auto* section = panel.addSection(text(kind.name));
            Panel::addRow(section, text("Other"));
            matches << kind.create();
            matches.last()->setWindowTitle(text("Needle"));
            Panel::contentsOf(section)->layout()->addWidget(matches.last());
        }
        // Created last, seen first; the title matches.
        auto* top = panel.addSection(text("Needles"));
        static_cast<QVBoxLayout*>(panel.column->layout())->insertWidget(0, top);
        matches.prepend(child<QCheckBox>(*top, "accordionCheckBox"));
        hostsupport::showActive(panel.panel);
        panel.search()->setFocus();
        QTRY_COMPARE(QApplication::focusWidget(), panel.search());
        QTest::keyClicks(panel.search(), text("needle"));
        QTest::keyClick(panel.search(), Qt::Key_Return);

        const QWidget* viewport = panel.panel.findChild<QScrollArea*>()->viewport();
        const auto isAt = [&](const QWidget* match)
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
        QVERIFY(isAt(matches.last()));
        QTest::keySequence(&panel.panel, QKeySequence::FindNext); // the host's again
        QVERIFY(isAt(matches.last()));
    }
};

QTEST_MAIN(tst_PanelSearch)
#include "tst_panelsearch.moc"
