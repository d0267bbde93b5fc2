#include "hostsupport.h"

#include <Orvek/Host/ChoiceButton.h>
#include <Orvek/Host/ColourButton.h>
#include <Orvek/Host/EditorInput.h>
#include <Orvek/Host/EditorUndo.h>
#include <Orvek/Host/PanelHost.h>
#include <Orvek/Host/PanelSearch.h>

using namespace orvek::host;
using hostsupport::Panel;

namespace
{
// A panel with one editor of each trap.
struct Traps : Panel
{
    Traps()
    {
        section = addSection("Material");
        advanced = addSection("Advanced");
        advanced->setOpen(false);
        roughness = addRow(section, "Roughness");
        roughness->setValue(1.0 / 3.0);
        kind = addRow<QIntSliderEdit>(section, "Kind");
        kind->setMaximum(2);
        kind->setEnums({"matte", "metal", "glass"});
        colour = addRow<QVectorEdit>(section, "Colour");
        colour->setColourEdit(true);
        addRow(advanced, "Anisotropy of the coat");
        showActive(panel);
    }
    QAccordion* section;
    QAccordion* advanced;
    QSliderEdit* roughness;
    QIntSliderEdit* kind;
    QVectorEdit* colour;
};
} // namespace

class tst_PanelHost : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    // Each part acts in the panel while the object is there, and no longer.
    void oneLineSetsUpEverything()
    {
        for (const bool hosted : {false, true})
        {
            Traps traps;
            QUndoStack stack;
            std::unique_ptr<PanelHost> host;
            if (hosted)
                host = std::make_unique<PanelHost>(&traps.panel, &stack);
            QCoreApplication::processEvents();
            QCOMPARE(traps.kind->findChild<ChoiceButton*>() != nullptr, hosted);
            QCOMPARE(traps.colour->findChild<ColourButton*>() != nullptr, hosted);

            auto* field = child<QLineEdit>(*traps.roughness, "lineEdit");
            field->setFocus();
            QTest::keyClick(field, Qt::Key_Return);
            QCOMPARE(traps.roughness->value().toDouble() == 1.0 / 3.0, hosted);
            QCOMPARE(stack.count(), 0);
            field->selectAll();
            QTest::keyClicks(field, "0.5");
            QTest::keyClick(field, Qt::Key_Return);
            QCOMPARE(stack.count(), hosted ? 1 : 0);

            traps.search()->setText("coat");
            QCOMPARE(traps.section->isHidden(), hosted);
            traps.search()->clear();
            QCOMPARE(traps.advanced->isOpen(), !hosted);

            QCOMPARE(QAccessible::queryAccessibleInterface(field)->text(QAccessible::Name).contains("Roughness"),
                     hosted);
            QTRY_COMPARE(child<QLabel>(*traps.roughness, "label")->width() == 80, !hosted);
        }
    }

    void buttonsComeAndGoWithTheirSwitches()
    {
        Traps traps;
        auto* own = ColourButton::addTo(traps.colour);
        auto host = std::make_unique<PanelHost>(&traps.panel);
        QVERIFY(!host->undo());
        auto* later = Panel::addRow<QVectorEdit>(traps.section, "Emission");
        later->setColourEdit(true);
        QTRY_VERIFY(later->findChild<ColourButton*>());
        host->setColourButtons(false);
        host->setChoiceButtons(false);
        QVERIFY(!later->findChild<ColourButton*>() && child<QSlider>(*traps.kind, "slider")->isVisible());
        QCOMPARE(traps.colour->findChildren<ColourButton*>(), QList<ColourButton*>{own});
        host->setChoiceButtons(true);
        QVERIFY(traps.kind->findChild<ChoiceButton*>());
        host.reset();
        QVERIFY(!traps.kind->findChild<ChoiceButton*>() && child<QSlider>(*traps.kind, "slider")->isVisible());
    }

    void partsOutliveThePanel()
    {
        auto traps = std::make_unique<Traps>();
        auto stack = std::make_unique<QUndoStack>();
        const PanelHost host(&traps->panel, stack.get());
        host.search()->find();
        stack.reset();
        traps.reset();
        QCoreApplication::processEvents();
        host.search()->findNext();
    }
};

QTEST_MAIN(tst_PanelHost)
#include "tst_panelhost.moc"
