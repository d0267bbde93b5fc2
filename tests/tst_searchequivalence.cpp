#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QLabelEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QPropertyPanel.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QSliderEdit.h>

#include <tests/literalsearch.h>
#include <tests/testsupport.h>

#include <QtWidgets/QGridLayout>

namespace
{
const QStringList titles{"Roughness", "Rough edges", "Metallic", "Radius", "Exposure", "Edge", "", "Red", "gh"};
const QStringList texts{"",  "r",       "ro",        "rou", "rough", "edge", "E",
                        "x", "section", "Section 1", "gh",  "d",     "Red",  "zzz"};
const QStringList sheets{
    "",
    "",
    "QLabel {color: red;}",
    "*[highlighted=\"true\"] {background: #335;}",
    "*[highlighted=\"true\"] QLabel {font-weight: bold; color: blue;}",
    "QAccordion {margin: 3px; background: #ddd;} QAccordion[highlighted=\"true\"] > QCheckBox {color: green;}",
    "QSliderEdit[highlighted=\"false\"] QLineEdit {min-height: 30px;}"};

// A panel with random contents; two of the same seed are alike. A step is the same act on each of them.
struct Tree
{
    Tree(quint32 seed, bool styled, bool literal) : random(seed), isStyled(styled), isLiteral(literal)
    {
        scrollArea = new QScrollArea(&panel);
        scrollArea->setWidgetResizable(true);
        contents = new QWidget;
        auto* column = new QVBoxLayout(contents);
        const int count = 2 + int(random.bounded(4));
        for (int i = 0; i < count; ++i)
            column->addWidget(makeSection(0));
        scrollArea->setWidget(contents);
        panel.setStyleSheet(pickSheet());
        panel.resize(420, 700);
        panel.show();
    }

    const QString& pick(const QStringList& list) { return list.at(int(random.bounded(quint32(list.size())))); }
    QString pickSheet()
    {
        const QString sheet = pick(sheets);
        return isStyled ? sheet : QString();
    }

    QAccordion* makeSection(int depth)
    {
        auto* section = new QAccordion;
        section->setTitle(QStringLiteral("Section %1").arg(random.bounded(30)));
        if (random.bounded(4) == 0)
            section->setStyleSheet(pickSheet());
        auto* rows = new QWidget(section);
        auto* layout = random.bounded(5) == 0 ? static_cast<QLayout*>(new QGridLayout(rows)) : new QVBoxLayout(rows);
        const int count = int(random.bounded(6));
        for (int i = 0; i < count; ++i)
            layout->addWidget(makeRow(depth));
        section->setOpen(random.bounded(3) != 0);
        return section;
    }

    QWidget* makeRow(int depth)
    {
        const int kind = int(random.bounded(depth < 2 ? 7 : 5));
        if (kind > 4)
            return makeSection(depth + 1);
        const QString title = pick(titles);
        QWidget* row = kind == 0   ? new QPushButton(title)
                       : kind == 1 ? new QCheckBox(title)
                       : kind == 2 ? new QLabel(title)
                       : kind == 3 ? static_cast<QWidget*>(new QLabelEdit)
                                   : new QSliderEdit;
        if (kind > 2)
            row->setProperty("title", title);
        if (random.bounded(8) == 0)
            row->setStyleSheet(pickSheet());
        if (random.bounded(8) == 0)
            row->hide();
        return row;
    }

    void search(const QString& text)
    {
        if (isLiteral)
        {
            if (!connected)
                for (QAccordion* section : contents->findChildren<QAccordion*>())
                    reached.append(section);
            connected = true;
            for (const QPointer<QAccordion>& section : qAsConst(reached))
                if (section)
                    LiteralSearch::apply(*section, text);
            return;
        }
        auto* field = panel.findChild<QLineEdit*>(QStringLiteral("search"));
        if (field->text() == text) // which Qt does not announce
            panel.on_search_textChanged(text);
        field->setText(text);
    }

    void act()
    {
        const QList<QAccordion*> sections = contents->findChildren<QAccordion*>();
        QAccordion* section = sections.isEmpty() ? nullptr : sections.at(int(random.bounded(quint32(sections.size()))));
        const int what = int(random.bounded(12)); // often nothing
        if (what == 0)
            panel.setStyleSheet(pickSheet());
        if (what == 1)
            panel.resize(380 + int(random.bounded(200)), 700);
        if (what == 2)
            contents->layout()->addWidget(makeSection(1));
        if (!section)
            return;
        if (what == 3)
            section->setOpen(!section->isOpen());
        if (what == 4)
            section->setStyleSheet(pickSheet());
        if (what == 5 && LiteralSearch::contents(*section) && LiteralSearch::contents(*section)->layout())
            LiteralSearch::contents(*section)->layout()->addWidget(makeRow(2));
        if (what == 6)
            delete section;
    }

    QPropertyPanel panel;
    QScrollArea* scrollArea;
    QWidget* contents;
    QRandomGenerator random;
    const bool isStyled;
    const bool isLiteral;
    bool connected = false;
    QVector<QPointer<QAccordion>> reached;
};

// Qt gives a squeezed widget a negative size unless something has set a limit on it before; either way it has none.
QStringList describeAll(const QWidget* root)
{
    QStringList lines;
    for (const QWidget* widget : root->findChildren<QWidget*>())
    {
        const QVariant mark = widget->property("highlighted");
        const QRect geometry(widget->pos(), widget->size().expandedTo({0, 0}));
        QString line;
        QDebug(&line) << widget->metaObject()->className() << widget->windowTitle() << widget->styleSheet() << mark
                      << widget->isHidden() << widget->isVisible() << geometry;
        lines << line;
    }
    return lines;
}

// One round of events moves widgets that ask for the next.
void settle()
{
    for (int round = 0; round < 12; ++round)
        QCoreApplication::processEvents();
}

using Worlds = Table<quint32, bool>; // seed, with style sheets
} // namespace

// The search saves work where nobody can tell. Beside it runs the literal one on a tree of the same kind.
class TestSearchEquivalence : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void looksLikeTheLiteralSearch_data()
    {
        const Worlds row;
        for (quint32 seed = 70; seed < 100; ++seed)
        {
            row("plain " + QByteArray::number(seed), seed, false);
            row("styled " + QByteArray::number(seed), seed, true);
        }
    }

    void looksLikeTheLiteralSearch()
    {
        const auto [seed, styled] = Worlds::current();
        qApp->setStyleSheet(styled && seed % 3 == 0 ? sheets.at(int(seed / 3) % sheets.size()) : QString());
        Tree ours(seed, styled, false);
        Tree literal(seed, styled, true);
        for (int step = 0; step < 25; ++step)
        {
            // A keystroke comes through the event loop, behind what the host's last act has left to do.
            ours.act();
            literal.act();
            settle();
            QCOMPARE(describeAll(ours.contents), describeAll(literal.contents));
            ours.search(ours.pick(texts));
            literal.search(literal.pick(texts));
            QCOMPARE(describeAll(ours.contents), describeAll(literal.contents));
            settle();
            QCOMPARE(describeAll(ours.contents), describeAll(literal.contents));
            QCOMPARE(ours.scrollArea->grab().toImage(), literal.scrollArea->grab().toImage());
        }
    }

    void cleanup() { qApp->setStyleSheet(QString()); }
};

QTEST_MAIN(TestSearchEquivalence)
#include "tst_searchequivalence.moc"
