#include "hostsupport.h"

#include <Orvek/Host/Editor.h>
#include <Orvek/Host/EditorTree.h>

#include <QtWidgets/QSpinBox>

using namespace orvek::host;

namespace
{
// A host's own, with the names that count.
class OwnEditor : public QWidget
{
    Q_OBJECT
public:
    OwnEditor()
    {
        auto* field = new QLineEdit(this);
        field->setObjectName("lineEdit");
    }
Q_SIGNALS:
    void valueChanged();
};

// What was told, in order.
struct Log
{
    explicit Log(EditorTree* tree)
    {
        QObject::connect(tree, &EditorTree::entered, tree, [this](QWidget* widget) { entered << widget; });
        QObject::connect(tree, &EditorTree::left, tree, [this](QWidget* widget) { left << widget; });
    }
    QVector<QWidget*> entered;
    QVector<QWidget*> left;
};
} // namespace

class tst_EditorTree : public WatchedTest
{
    Q_OBJECT
private Q_SLOTS:
    void tellsEditorsAndSections()
    {
        for (const hostsupport::Kind& kind : hostsupport::editorKinds)
        {
            const std::unique_ptr<QWidget> editor(kind.create());
            QVERIFY2(isEditor(editor.get()) && !isSection(editor.get()), kind.name);
            QVERIFY2(!partsOf(editor.get()).fields.isEmpty(), kind.name);
            QVERIFY2(readValue(editor.get()).isKnown, kind.name);
        }
        QVERIFY(isEditor(std::make_unique<OwnEditor>().get()));
        QVERIFY(!readValue(std::make_unique<OwnEditor>().get()).isKnown);
        QVERIFY(!isEditor(std::make_unique<QSpinBox>().get()));
        QVERIFY(isSection(std::make_unique<QAccordion>().get()));
        QColourEdit colour;
        QCOMPARE(partsOf(&colour).fields.first()->objectName(), QStringLiteral("red"));
    }

    void followsWhatComesAndLeaves()
    {
        hostsupport::Panel panel;
        QAccordion* section = panel.addSection("Fog");
        auto* there = hostsupport::Panel::addRow(section, "Density");
        const auto tree = EditorTree::of(&panel.panel);
        QCOMPARE(EditorTree::of(&panel.panel), tree);
        QVERIFY(tree->widgets().contains(there) && tree->widgets().contains(section));
        QVERIFY(!tree->widgets().contains(child<QWidget>(*there, "slider")));
        Log log(tree.get());

        auto* later = hostsupport::Panel::addRow(section, "Colour");
        QVERIFY(tree->widgets().contains(later)); // also before the event loop runs
        QCOMPARE(log.entered.count(later), 1);

        // Told when its constructor has ended, so as what it is.
        const QWidget* asChild = new QVectorEdit(hostsupport::Panel::contentsOf(section));
        QTRY_VERIFY(log.entered.contains(const_cast<QWidget*>(asChild)));

        QWidget elsewhere;
        section->setParent(&elsewhere);
        QVERIFY(log.left.contains(section) && log.left.contains(there) && log.left.contains(later));
        log.left.clear();
        delete there;
        QVERIFY(log.left.isEmpty());
        panel.column->layout()->addWidget(section);
        QTRY_VERIFY(tree->widgets().contains(later));
        delete section;
        QVERIFY(log.left.contains(later));
    }

    void outlivesItsRoot()
    {
        auto root = std::make_unique<hostsupport::Panel>();
        const auto tree = EditorTree::of(&root->panel);
        root->addSection("Fog");
        root.reset();
        QVERIFY(!tree->root());
        QVERIFY(tree->widgets().isEmpty());
        QCoreApplication::processEvents();
    }
};

QTEST_MAIN(tst_EditorTree)
#include "tst_editortree.moc"
