#include "hostsupport.h"

#include <Orvek/Host/PanelSearch.h>
#include <Orvek/Host/SectionStates.h>

using namespace orvek::host;
using hostsupport::Panel;
using States = QVector<bool>;

namespace
{
QCheckBox* boxOf(const QAccordion* section)
{
    return child<QCheckBox>(*section, "accordionCheckBox");
}

struct Store : QTemporaryDir
{
    QSettings file{filePath("states.ini"), QSettings::IniFormat};
};

// Two sections, and one of the same name inside each.
struct Scene : Panel
{
    States open() const { return {material->isOpen(), light->isOpen(), inMaterial->isOpen(), inLight->isOpen()}; }
    QAccordion* material = addSection("Material");
    QAccordion* light = addSection("Light");
    QAccordion* inMaterial = addSection("Advanced", contentsOf(material));
    QAccordion* inLight = addSection("Advanced", contentsOf(light));
};
} // namespace

class tst_SectionStates : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void eachSectionHasItsOwnState()
    {
        Store store;
        auto scene = std::make_unique<Scene>();
        scene->inLight->setOpen(false);
        // The control run: names collide, and a missing key closes.
        scene->inLight->writeSettings(store.file);
        scene->inMaterial->readSettings(store.file);
        scene->light->readSettings(store.file);
        QCOMPARE(scene->open(), States({true, false, false, false}));
        store.file.clear();

        Panel::contentsOf(scene->material)->setObjectName("contents"); // is in no key
        auto* page = new QWidget(scene->column);
        page->setObjectName("Page");
        scene->addSection("Fog", Panel::contentsOf(scene->light))->setParent(page);
        SectionStates states(&scene->panel);
        states.save(store.file);
        QCOMPARE(store.file.allKeys().join(' '), "Light Light/Advanced Material Material/Advanced Page/Fog");
        store.file.remove("Light"); // and what is inside
        store.file.setValue("Light/Late", false);
        for (QAccordion* section : {scene->material, scene->inMaterial, scene->inLight})
            section->setOpen(!section->isOpen());
        states.restore(store.file);
        QCOMPARE(scene->open(), States({true, false, false, true}));
        for (const bool wasThere : {false, true})
        {
            auto* late = scene->addSection("Late", Panel::contentsOf(scene->light));
            QCoreApplication::processEvents();
            QCOMPARE(late->isOpen(), wasThere); // as stored, then as it left
            late->setOpen(true);
            delete late;
            states.save(store.file);
            QVERIFY(store.file.value("Light/Late").toBool());
        }
        scene->inMaterial->setOpen(true);
        scene->addSection("Last");
        scene.reset();
        QCoreApplication::processEvents();
        states.save(store.file);
        QVERIFY(store.file.value("Material/Advanced").toBool());
    }

    void namesThatNeedCare()
    {
        Store store;
        store.file.beginGroup("group");
        Panel panel;
        QVector<QAccordion*> sections{panel.addSection("a")};
        sections << panel.addSection("b", Panel::contentsOf(sections[0]));
        for (const char* name : {"a/b", "a%2Fb", "a\\b", "a", "a#2", "", "Accordion", "qt_own"})
        {
            sections << panel.addSection(*name ? "Title" : "");
            sections.last()->setObjectName(name);
        }
        for (const QAccordion* odd : qAsConst(sections))
        {
            for (const bool restores : {false, true})
            {
                for (QAccordion* section : qAsConst(sections))
                    section->setOpen((section == odd) == restores);
                SectionStates states(&panel.panel);
                restores ? states.restore(store.file) : states.save(store.file);
            }
            for (const QAccordion* section : qAsConst(sections))
                QCOMPARE(section->isOpen(), section != odd);
        }
    }

    void aSearchSpoilsNothing()
    {
        for (const bool withPanelSearch : {false, true})
        {
            Store store;
            Scene scene;
            Panel::addRow(scene.inMaterial, "Anisotropy");
            SectionStates states(&scene.panel);
            const PanelSearch search(withPanelSearch ? &scene.panel : nullptr);
            const auto saved = [&]
            {
                states.save(store.file);
                return store.file.value("Material").toBool();
            };
            scene.material->setOpen(false);
            for (const char* words : {"zzz", "", "a", "aniso", "", "material"})
            {
                scene.search()->setText(words);
                QVERIFY(!saved());
            }
            // What the user folds counts; restoring waits for the end of the search.
            for (const bool open : {false, true})
            {
                boxOf(scene.material)->click();
                QCOMPARE(saved(), open);
            }
            for (const bool open : {false, true})
            {
                scene.search()->setText("material");
                store.file.setValue("Material", open);
                states.restore(store.file);
                QVERIFY(scene.material->isOpen());
                scene.search()->clear();
                QCOMPARE(scene.material->isOpen(), open);
            }
            scene.material->setOpen(false);
            scene.material->setOpen(true); // outside of a search the host counts too
            scene.search()->setText("zzz");
            QVERIFY(saved());
        }
    }

    void titleLinesFold()
    {
        for (const bool mirrored : {false, true})
        {
            Scene scene;
            const std::unique_ptr<QWidget> top(mirrored ? new QDialog : new QWidget);
            top->setLayoutDirection(mirrored ? Qt::RightToLeft : Qt::LeftToRight);
            top->setStyleSheet(mirrored ? "QCheckBox { padding: 4px; } QCheckBox::indicator { width: 9px; }" : "");
            (new QVBoxLayout(top.get()))->addWidget(scene.column);
            top->resize(500, 300);
            showActive(*top);
            QCheckBox* box = boxOf(scene.light);
            const QPoint left(12, box->height() / 2);
            const QPoint right(box->width() - 12, box->height() / 2);
            const QPoint far = mirrored ? left : right;
            const QPoint outside(left.x(), 200);
            const auto folds = [box](const QPoint& press, const QPoint& release, Qt::KeyboardModifiers modifiers)
            {
                const bool wasOpen = box->isChecked();
                QTest::mousePress(box, Qt::LeftButton, modifiers, press);
                QTest::mouseRelease(box, Qt::LeftButton, modifiers, release);
                return box->isChecked() != wasOpen && !box->isDown();
            };
            QVERIFY(!folds(far, far, {})); // the control run
            SectionStates states(top.get());
            for (const QPoint& point : {left, right, box->rect().center()})
                QVERIFY(folds(point, point, {}));
            QVERIFY(!folds(far, outside, {}) && !folds(outside, far, {}));
            QTest::mouseClick(box, Qt::RightButton, {}, far);
            QTest::mouseDClick(box, Qt::LeftButton, {}, far);
            QTest::mouseRelease(box, Qt::LeftButton, {}, far);
            QCOMPARE(scene.open(), States({true, true, true, true}));

            QVERIFY(folds(far, far, Qt::ControlModifier));
            QCOMPARE(scene.open(), States({false, false, true, true}));
            scene.material->hide();
            QTest::keyClick(box, Qt::Key_Space, Qt::ControlModifier);
            QCOMPARE(scene.open(), States({false, true, true, true}));
            scene.material->show();
            states.setCtrlFoldsAll(false);
            QVERIFY(folds(far, far, Qt::ControlModifier));
            states.setWholeTitleFolds(false);
            QVERIFY(!folds(far, far, {}));
            QCOMPARE(scene.open(), States({false, false, true, true}));
        }
    }
};

QTEST_MAIN(tst_SectionStates)
#include "tst_sectionstates.moc"
