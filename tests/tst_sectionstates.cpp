#include "hostsupport.h"

#include <Orvek/Host/PanelSearch.h>
#include <Orvek/Host/SectionStates.h>

#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>
#include <QtWidgets/QGroupBox>

using namespace orvek::host;
using hostsupport::Panel;

namespace
{
QString text(const char* latin1)
{
    return QLatin1String(latin1);
}

QCheckBox* boxOf(const QAccordion* section)
{
    return child<QCheckBox>(*section, "accordionCheckBox");
}

struct Store : QTemporaryDir
{
    QSettings file{filePath(text("states.ini")), QSettings::IniFormat};
};

// Material and Light, each with an Advanced section inside it.
struct Scene : Panel
{
    QVector<bool> open() const
    {
        return {material->isOpen(), light->isOpen(), inMaterial->isOpen(), inLight->isOpen()};
    }
    QAccordion* material = addSection(text("Material"));
    QAccordion* light = addSection(text("Light"));
    QAccordion* inMaterial = addSection(text("Advanced"), contentsOf(material));
    QAccordion* inLight = addSection(text("Advanced"), contentsOf(light));
    QWidget* roughness = addRow(material, text("Roughness"));
    QWidget* anisotropy = addRow(inMaterial, text("Anisotropy"));
};
} // namespace

class tst_SectionStates : public WatchedTest
{
    Q_OBJECT
private Q_SLOTS:
    void eachSectionHasItsOwnKey()
    {
        Store store;
        Scene scene;
        scene.inLight->setOpen(false);
        // The control run: names collide, and a missing key closes.
        scene.inLight->writeSettings(store.file);
        scene.inMaterial->readSettings(store.file);
        scene.light->readSettings(store.file);
        QCOMPARE(scene.open(), QVector<bool>({true, false, false, false}));
        store.file.clear();

        SectionStates states(&scene.panel);
        scene.inMaterial->setOpen(true);
        states.save(store.file);
        QStringList keys = store.file.allKeys();
        keys.sort();
        QCOMPARE(keys.join(QLatin1Char(' ')), text("Light Light/Advanced Material Material/Advanced"));
        store.file.remove(text("Light"));
        store.file.setValue(text("Light/Advanced"), false);
        scene.inLight->setOpen(true);
        states.restore(store.file);
        QCOMPARE(scene.open(), QVector<bool>({true, false, true, false}));
    }

    void namesThatNeedCare()
    {
        const auto build = [](Panel& panel)
        {
            QVector<QAccordion*> sections;
            for (const char* name : {"a/b", "a%2Fb", "a\\b", "a", "a", "a#2", "", "Accordion", "qt_own"})
            {
                sections << panel.addSection(text("Title"));
                sections.last()->setObjectName(text(name));
            }
            sections << panel.addSection(text("b"), Panel::contentsOf(sections[3]));
            for (const char* page : {"page1", "page2"})
            {
                auto* group = new QGroupBox;
                group->setObjectName(text(page));
                new QVBoxLayout(group);
                panel.column->layout()->addWidget(group);
                sections << panel.addSection(text("a"), group);
            }
            return sections << panel.addSection(QString()) << panel.addSection(QString());
        };
        Store store;
        Panel panel;
        const QVector<QAccordion*> sections = build(panel);
        const SectionStates states(&panel.panel);
        store.file.beginGroup(text("group"));
        for (int odd = 0; odd < sections.size(); ++odd)
        {
            for (int i = 0; i < sections.size(); ++i)
                sections[i]->setOpen(i != odd);
            states.save(store.file);
            QCOMPARE(store.file.allKeys().size(), sections.size());
            Panel again;
            const QVector<QAccordion*> restored = build(again);
            SectionStates(&again.panel).restore(store.file);
            for (int i = 0; i < restored.size(); ++i)
                QCOMPARE(restored[i]->isOpen(), i != odd);
        }
    }

    void lateSectionsGetTheirState()
    {
        Store store;
        store.file.setValue(text("Light/Late"), false);
        store.file.setValue(text("Light/Late/Inner"), false);
        auto scene = std::make_unique<Scene>();
        SectionStates states(&scene->panel);
        states.restore(store.file);
        store.file.clear();
        for (const bool wasThere : {false, true})
        {
            auto* late = new QAccordion(Panel::contentsOf(scene->light));
            auto* contents = new QWidget(late);
            new QVBoxLayout(contents);
            late->setObjectName(text("Late"));
            auto* inner = scene->addSection(text("Inner"), contents);
            QTRY_VERIFY(!inner->isOpen());
            QCOMPARE(late->isOpen(), wasThere);
            // What it leaves with is what it comes back with, and what is saved in between.
            late->setOpen(true);
            delete late;
            states.save(store.file);
            QCOMPARE(store.file.value(text("Light/Late")).toBool(), true);
            QCOMPARE(store.file.value(text("Light/Late/Inner")).toBool(), false);
        }
        store.file.clear();
        scene->light->setOpen(false);
        scene.reset();
        states.save(store.file);
        QCOMPARE(store.file.value(text("Light")).toString(), text("false"));
        states.restore(store.file);
        SectionStates(nullptr).save(store.file);
    }

    void aSearchSpoilsNothing_data()
    {
        QTest::addColumn<bool>("withPanelSearch");
        QTest::newRow("panel alone") << false;
        QTest::newRow("with PanelSearch") << true;
    }
    void aSearchSpoilsNothing()
    {
        QFETCH(bool, withPanelSearch);
        Store store;
        Scene scene;
        SectionStates states(&scene.panel);
        const PanelSearch search(withPanelSearch ? &scene.panel : nullptr);
        hostsupport::showActive(scene.panel);
        for (QAccordion* section : {scene.material, scene.light, scene.inMaterial})
            section->setOpen(false);
        const auto saved = [&]
        {
            states.save(store.file);
            QVector<bool> values;
            for (const char* key : {"Material", "Light", "Material/Advanced", "Light/Advanced"})
                values << store.file.value(text(key)).toBool();
            return values;
        };
        for (const char* words : {"a", "rough", "aniso", "", "zzz", "", "rough"})
        {
            scene.search()->setText(text(words));
            QCOMPARE(saved(), QVector<bool>({false, false, false, true}));
        }
        // What the user folds counts; restoring waits for the end of the search.
        QVERIFY(scene.material->isOpen());
        boxOf(scene.material)->click();
        boxOf(scene.material)->click();
        QCOMPARE(saved(), QVector<bool>({true, false, false, true}));
        store.file.setValue(text("Material"), false);
        store.file.setValue(text("Material/Advanced"), true);
        states.restore(store.file);
        QVERIFY(scene.material->isOpen());
        scene.search()->clear();
        QVERIFY(!scene.material->isOpen() && scene.inMaterial->isOpen());
        QCOMPARE(saved(), QVector<bool>({false, false, true, true}));
        // Outside of a search the host counts too.
        scene.light->setOpen(false);
        scene.light->setOpen(true);
        scene.search()->setText(text("zzz"));
        QCOMPARE(saved(), QVector<bool>({false, true, true, true}));
    }

    void theWholeTitleLineFolds_data()
    {
        QTest::addColumn<hostsupport::Create>("window");
        QTest::addColumn<Qt::LayoutDirection>("direction");
        QTest::addColumn<QString>("styleSheet");
        const QString looks = text("QCheckBox { padding: 4px; } QCheckBox::indicator { width: 9px; margin: 3px; }");
        for (const auto& window : hostsupport::windowKinds)
        {
            QTest::addRow("%s", window.name) << window.create << Qt::LeftToRight << QString();
            QTest::addRow("%s, mirrored and styled", window.name) << window.create << Qt::RightToLeft << looks;
        }
    }
    void theWholeTitleLineFolds()
    {
        QFETCH(hostsupport::Create, window);
        QFETCH(Qt::LayoutDirection, direction);
        QFETCH(QString, styleSheet);
        const std::unique_ptr<QWidget> top(window());
        top->setLayoutDirection(direction);
        top->setStyleSheet(styleSheet);
        new QVBoxLayout(top.get());
        Panel parts;
        QAccordion* section = parts.addSection(text("Fog"), top.get());
        top->resize(500, 300);
        hostsupport::showActive(*top);
        QCheckBox* box = boxOf(section);
        const QPoint left(12, box->height() / 2);
        const QPoint right(box->width() - 12, box->height() / 2);
        const QPoint far = direction == Qt::LeftToRight ? right : left;
        const QPoint outside(right.x(), 200);
        const QSignalSpy toggled(box, &QCheckBox::toggled);
        int expected = 0;

        QTest::mouseClick(box, Qt::LeftButton, {}, far);
        QCOMPARE(toggled.count(), expected); // the control run
        SectionStates states(top.get());
        for (const QPoint& point : {left, right, box->rect().center()})
        {
            QTest::mouseClick(box, Qt::LeftButton, {}, point);
            QCOMPARE(toggled.count(), ++expected);
        }
        QTest::mouseDClick(box, Qt::LeftButton, {}, far); // the second press of two in a row
        QTest::mouseRelease(box, Qt::LeftButton, {}, far);
        QCOMPARE(toggled.count(), ++expected);
        QTest::keyClick(box, Qt::Key_Space);
        QCOMPARE(toggled.count(), ++expected);

        QTest::mouseClick(box, Qt::RightButton, {}, far);
        QTest::mousePress(box, Qt::LeftButton, {}, far);
        QVERIFY(box->isDown());
        QTest::mouseRelease(box, Qt::LeftButton, {}, outside);
        QVERIFY(!box->isDown());
        QTest::mousePress(box, Qt::LeftButton, {}, outside);
        QTest::mouseRelease(box, Qt::LeftButton, {}, far);
        box->setEnabled(false);
        QTest::mouseClick(box, Qt::LeftButton, {}, far);
        box->setEnabled(true);
        states.setWholeTitleFolds(false);
        QTest::mouseClick(box, Qt::LeftButton, {}, far);
        QCOMPARE(toggled.count(), expected);
        states.setWholeTitleFolds(true);
        QTest::mouseClick(box, Qt::LeftButton, {}, far);
        QCOMPARE(toggled.count(), expected + 1);

        auto* late = new QAccordion;
        top->layout()->addWidget(late);
        QTRY_VERIFY(boxOf(late)->width() > 200);
        QTest::mouseClick(boxOf(late), Qt::LeftButton, {}, boxOf(late)->rect().center());
        QVERIFY(!late->isOpen());
    }

    void withCtrlThoseBesideFollow()
    {
        Scene scene;
        SectionStates states(&scene.panel);
        QAccordion* third = scene.addSection(text("Third"));
        third->setOpen(false);
        QAccordion* hidden = scene.addSection(text("Hidden"));
        hidden->hide();
        hostsupport::showActive(scene.panel);
        const QPoint indicator(8, 8);
        QTest::mouseClick(boxOf(scene.material), Qt::LeftButton, Qt::ControlModifier, indicator);
        QCOMPARE(scene.open(), QVector<bool>({false, false, true, true}));
        QVERIFY(!third->isOpen() && hidden->isOpen());
        QTest::keyClick(boxOf(third), Qt::Key_Space, Qt::ControlModifier);
        QCOMPARE(scene.open(), QVector<bool>({true, true, true, true}));
        states.setCtrlFoldsAll(false);
        QTest::mouseClick(boxOf(scene.material), Qt::LeftButton, Qt::ControlModifier, indicator);
        QCOMPARE(scene.open(), QVector<bool>({false, true, true, true}));
    }
};

QTEST_MAIN(tst_SectionStates)
#include "tst_sectionstates.moc"
