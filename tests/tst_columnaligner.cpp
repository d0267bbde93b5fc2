#include "hostsupport.h"

#include <Orvek/Host/ChoiceButton.h>
#include <Orvek/Host/ColumnAligner.h>

#include <QtGui/QHelpEvent>
#include <QtWidgets/QLabel>
#include <QtWidgets/QSlider>
#include <QtWidgets/QToolTip>

using namespace orvek::host;
using hostsupport::Panel;

namespace
{
const QString longTitle = QStringLiteral("Index of refraction of the outermost layer");

// Every kind of editor, some in a section within a section.
struct Rows
{
    explicit Rows(QWidget* window)
    {
        auto* column = new QVBoxLayout(window);
        column->addWidget(&panel.panel);
        QAccordion* outer = panel.addSection("Surface");
        slider = Panel::addRow<QSliderEdit>(outer, "Roughness");
        integer = Panel::addRow<QIntSliderEdit>(outer, "Samples");
        vector = Panel::addRow<QVectorEdit>(outer, "Position");
        QAccordion* inner = panel.addSection("Details", Panel::contentsOf(outer));
        colour = Panel::addRow<QColourEdit>(inner, "Emission");
        file = Panel::addRow<QFileEdit>(inner, "Mesh");
        text = Panel::addRow<QLabelEdit>(inner, "Name");
        Panel::addRow<QSliderEdit>(inner, "Ior")->setUnits("m");
        all = panel.panel.findChildren<QWidget*>(QRegularExpression("^Q[A-Za-z]+Edit$"));
    }
    ~Rows() { panel.panel.setParent(nullptr); }
    // The places of the titles' ends and of the fields' ends, seen from where the rows begin and end.
    QSet<int> titleEnds() const
    {
        return ends([](QWidget* row) { return child<QWidget>(*row, "label"); });
    }
    QSet<int> fieldEnds() const
    {
        return ends(
            [](QWidget* row) -> QWidget*
            {
                QWidget* last = row->findChild<ChoiceButton*>();
                for (QLineEdit* field : hostsupport::fieldsOf(*row))
                    last = field->isVisible() ? field : last;
                return last;
            });
    }
    template <typename Part>
    QSet<int> ends(Part part) const
    {
        QSet<int> found;
        for (QWidget* row : all)
        {
            const QWidget* widget = part(row);
            const QPoint corner = row->isRightToLeft() ? QPoint(0, 0) : QPoint(widget->width(), 0);
            found << widget->mapTo(row->window(), corner).x();
        }
        return found;
    }

    Panel panel;
    QSliderEdit* slider;
    QIntSliderEdit* integer;
    QVectorEdit* vector;
    QColourEdit* colour;
    QFileEdit* file;
    QLabelEdit* text;
    QList<QWidget*> all;
};

void settle()
{
    for (int i = 0; i < 4; ++i)
        QCoreApplication::processEvents();
}

// What the widget shows once it has been painted.
QImage painted(QWidget* widget)
{
    widget->grab();
    settle();
    return widget->grab().toImage();
}

// A widget of the same class, place and size that shows the text as Qt does.
template <typename Widget>
QImage paintedAs(const Widget* widget, const QString& text)
{
    Widget other(widget->parentWidget());
    other.setText(text);
    other.setGeometry(widget->geometry());
    if constexpr (std::is_same_v<Widget, QLineEdit>)
        other.home(false);
    return painted(&other);
}

QString toolTipOf(QWidget* widget)
{
    QToolTip::hideText();
    QHelpEvent event(QEvent::ToolTip, QPoint(3, 3), widget->mapToGlobal(QPoint(3, 3)));
    QCoreApplication::sendEvent(widget, &event);
    return QToolTip::text();
}

bool isWhole(const QLabel* label)
{
    return label->fontMetrics().horizontalAdvance(label->text()) <= label->contentsRect().width();
}

bool isSqueezed(QWidget* row)
{
    const auto children = row->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    for (const QWidget* child : children)
        for (const QWidget* other : children)
            if (child != other && child->isVisible() && other->isVisible() &&
                (child->geometry().intersects(other->geometry()) || !row->rect().contains(child->geometry())))
                return true;
    return false;
}
} // namespace

class tst_ColumnAligner : public WatchedTest
{
    Q_OBJECT
private Q_SLOTS:
    void columnsAreInLine_data()
    {
        QTest::addColumn<hostsupport::Create>("create");
        QTest::addColumn<int>("width");
        QTest::addColumn<Qt::LayoutDirection>("direction");
        for (const hostsupport::Kind& kind : hostsupport::windowKinds)
        {
            // Rows of a nested section are 63 pixels narrower than the panel with its scroll bar.
            QTest::addRow("%s, narrowest", kind.name) << kind.create << 390 << Qt::LeftToRight;
            QTest::addRow("%s, wide", kind.name) << kind.create << 760 << Qt::LeftToRight;
            QTest::addRow("%s, from the right", kind.name) << kind.create << 560 << Qt::RightToLeft;
        }
    }
    void columnsAreInLine()
    {
        QFETCH(hostsupport::Create, create);
        QFETCH(int, width);
        const std::unique_ptr<QWidget> window(create());
        QFETCH(Qt::LayoutDirection, direction);
        window->setLayoutDirection(direction);
        Rows rows(window.get());
        window->resize(width, 900);
        hostsupport::showActive(*window);
        QVERIFY(rows.titleEnds().size() > 1); // without it
        QVERIFY(rows.fieldEnds().size() > 1);

        ColumnAligner aligner(&rows.panel.panel);
        const auto check = [&rows](const char* after)
        {
            settle();
            QVERIFY2(rows.titleEnds().size() == 1, after);
            QVERIFY2(rows.fieldEnds().size() == 1, after);
            for (QWidget* row : rows.all)
                QVERIFY2(!isSqueezed(row), qPrintable(row->objectName() + after));
        };
        const auto titleWidth = [&rows] { return child<QLabel>(*rows.slider, "label")->width(); };
        check(" at first");
        QVERIFY(isWhole(child<QLabel>(*rows.slider, "label")));
        int before = titleWidth();
        rows.text->setTitle("A longer name");
        check(" after another title");
        QVERIFY(titleWidth() > before);
        before = titleWidth();
        rows.text->setTitle("Name");
        check(" after a shorter one");
        QVERIFY(titleWidth() < before);
        before = titleWidth();
        rows.slider->setUnits("px");
        QFont font = rows.panel.panel.font();
        font.setPixelSize(QFontInfo(font).pixelSize() + 2);
        rows.panel.panel.setFont(font);
        check(" after units and a font");
        QVERIFY(titleWidth() > before);
        rows.colour->setShowAlpha(false);
        rows.slider->setShowButtons(true);
        window->resize(width + 33, 900);
        check(" after another size");
        rows.all << Panel::addRow<QVectorEdit>(panelSection(rows), "Latecomer");
        check(" with a row that came later");
        delete rows.all.takeLast();
        check(" without it");
        rows.integer->setEnums({"Low", "Medium", "High"});
        ChoiceButton::addTo(rows.integer);
        check(" with a list of names");
    }

    void longTitlesEndInDots_data()
    {
        QTest::addColumn<QString>("sheet");
        QTest::addRow("plain") << QString();
        QTest::addRow("style sheet") << "QLabel { padding: 0 5px; color: #a03000; border: 1px solid blue; }";
    }
    void longTitlesEndInDots()
    {
        QFETCH(QString, sheet);
        QWidget window;
        window.setStyleSheet(sheet);
        Rows rows(&window);
        window.resize(520, 900);
        auto* label = child<QLabel>(*rows.slider, "label");
        rows.slider->setTitle(longTitle);
        hostsupport::showActive(window);
        QVERIFY(!painted(label).isNull());
        QCOMPARE(painted(label), paintedAs(label, longTitle)); // without it: cut off
        QVERIFY(toolTipOf(label).isEmpty());

        ColumnAligner aligner(&window);
        settle();
        const int room =
            label->contentsRect().width() - (sheet.isEmpty() ? 0 : label->fontMetrics().horizontalAdvance('x') / 2);
        const QString elided = label->fontMetrics().elidedText(longTitle, Qt::ElideRight, room);
        QVERIFY(elided != longTitle);
        QCOMPARE(painted(label), paintedAs(label, elided));
        QVERIFY(label->width() <= int(0.35 * window.width()));
        QCOMPARE(rows.slider->title(), longTitle);
        QCOMPARE(rows.slider->windowTitle(), longTitle);
        QVERIFY(toolTipOf(label).contains(longTitle));
        label->setToolTip("of <glass>");
        QVERIFY(toolTipOf(label).contains("of &lt;glass&gt;"));
        QVERIFY(!toolTipOf(child<QLabel>(*rows.integer, "label")).contains("Samples"));

        aligner.setElidesTitles(false);
        settle();
        QCOMPARE(painted(label), paintedAs(label, longTitle));
        aligner.setTitleShare(0.9);
        rows.slider->setTitle("A title of thirty five characters");
        settle();
        QVERIFY(isWhole(label));
        QToolTip::hideText();
    }

    void fieldsShowWhatFits()
    {
        QWidget window;
        Rows rows(&window);
        window.resize(390, 900);
        QFont font = window.font();
        font.setPixelSize(15);
        window.setFont(font);
        rows.vector->setValue({1.0F / 3, -1234567, 0.5F});
        rows.text->setValue("A name that has no end, or at least not here, as it goes on and on");
        rows.file->setFilename("/somewhere/deep/in/the/directories/of/a/project/mesh.obj");
        rows.integer->setEnums({"Twelve 123456789 samples for each of the pixels"});
        hostsupport::showActive(window);
        auto* x = child<QLineEdit>(*rows.vector, "x");
        auto* name = child<QLineEdit>(*rows.text, "lineEdit");
        auto* path = child<QLineEdit>(*rows.file, "lineEdit");
        auto* choice = child<QLineEdit>(*rows.integer, "lineEdit");
        window.setFocus();

        auto aligner = std::make_unique<ColumnAligner>(&window);
        aligner->setFitsTexts(false); // the columns alone: half numbers, and the end of the name
        settle();
        QVERIFY(painted(x) != paintedAs(x, "0.3") && painted(name) != paintedAs(name, name->text()));

        aligner->setFitsTexts(true);
        window.resize(470, 900);
        settle();
        const auto dotted = [](const QLineEdit* field)
        {
            // Those that Qt would cut are no proof of anything.
            QStringList candidates;
            const int room = field->width() - 8;
            for (QString text = field->text(); !text.isEmpty(); text.chop(1))
                if (field->fontMetrics().horizontalAdvance(text + QChar(0x2026)) <= room)
                    candidates << text + QChar(0x2026);
            return candidates;
        };
        const auto isOneOf = [](QLineEdit* field, const QStringList& candidates)
        {
            const QImage image = painted(field);
            return std::any_of(candidates.cbegin(), candidates.cend(),
                               [&](const QString& candidate) { return image == paintedAs(field, candidate); });
        };
        QVERIFY(isOneOf(x, {"0.3", "0.33", "0.333", "0.3333"}));
        QVERIFY(isOneOf(child<QLineEdit>(*rows.vector, "y"), {"-1e+06", "-1.2e+06", QString(QChar(0x2026))}));
        QVERIFY(isOneOf(child<QLineEdit>(*rows.vector, "z"), {"0.5"}));
        QVERIFY(isOneOf(name, dotted(name)));
        QVERIFY(isOneOf(choice, dotted(choice)));
        QCOMPARE(x->text(), QString("0.333333"));
        QVERIFY(toolTipOf(x).contains("0.333333"));
        QToolTip::hideText();

        // Whoever edits sees the text itself; whoever leaves finds the beginning or end again.
        path->setFocus();
        path->home(false);
        name->setFocus();
        QVERIFY(!isOneOf(name, dotted(name)));
        painted(path);
        QCOMPARE(path->cursorPosition(), path->text().size());
        name->selectAll();
        QTest::keyClick(name, Qt::Key_Tab);
        painted(name);
        QCOMPARE(name->cursorPosition(), 0);
        QCOMPARE(rows.vector->value(), QVector3D(1.0F / 3, -1234567, 0.5F));
        window.setFocus();

        aligner.reset();
        QVERIFY(!isOneOf(name, dotted(name)));
    }

    void leavesEverythingAsItWas()
    {
        QWidget window;
        Rows rows(&window);
        window.resize(500, 900);
        rows.slider->setTitle(longTitle);
        rows.integer->setTextWidth(33);
        hostsupport::showActive(window);
        const auto geometries = [&window]
        {
            settle();
            QVector<QRect> found;
            const auto widgets = window.findChildren<QWidget*>();
            for (const QWidget* widget : widgets)
                found << (widget->isVisible() ? widget->geometry() : QRect());
            return found;
        };
        const QVector<QRect> before = geometries();
        auto aligner = std::make_unique<ColumnAligner>(&window);
        QVERIFY(geometries() != before);
        QCOMPARE(rows.integer->textWidth(), 33);
        aligner->setAlignsColumns(false);
        QCOMPARE(geometries(), before);
        aligner->setAlignsColumns(true);
        QVERIFY(geometries() != before);
        aligner.reset();
        QCOMPARE(geometries(), before);

        // Editors that leave, and vertical ones.
        ColumnAligner other(&window);
        settle();
        auto* label = child<QLabel>(*rows.vector, "label");
        const int aligned = label->maximumWidth();
        QVERIFY(aligned > 80);
        QWidget elsewhere;
        rows.vector->setParent(&elsewhere);
        QCOMPARE(label->maximumWidth(), 80);
        rows.slider->setOrientation(Qt::Vertical);
        settle();
        QCOMPARE(child<QLabel>(*rows.slider, "label")->maximumWidth(), 80);
        rows.slider->setOrientation(Qt::Horizontal);
        settle();
        QVERIFY(child<QLabel>(*rows.slider, "label")->maximumWidth() > 80);
    }

    void worksOnceForManyChanges()
    {
        QWidget window;
        Rows rows(&window);
        ColumnAligner aligner(&window);
        QSignalSpy aligned(&aligner, &ColumnAligner::aligned);
        QVector<QSliderEdit*> more;
        for (int i = 0; i < 50; ++i)
            more << Panel::addRow<QSliderEdit>(panelSection(rows), QString::number(i));
        window.resize(700, 900);
        hostsupport::showActive(window);
        settle();
        QVERIFY(aligned.count() > 0);
        aligned.clear();
        for (QSliderEdit* row : more)
            row->setTitle(QString(12, 'x'));
        settle();
        QCOMPARE(aligned.count(), 1);
        for (QSliderEdit* row : more)
            row->setValue(0.123456); // nothing that columns depend on
        settle();
        QCOMPARE(aligned.count(), 1);
    }

    void tellsTheWidthThatCutsNothing()
    {
        QWidget window;
        Rows rows(&window);
        rows.slider->setTitle("A title of some length");
        rows.slider->setUnits("cd/m²");
        const QVector<QLineEdit*> fields = hostsupport::fieldsOf(*rows.vector) + hostsupport::fieldsOf(*rows.colour);
        for (QLineEdit* field : fields)
            field->setText("-8.88888e-88");
        hostsupport::showActive(window);
        ColumnAligner aligner(&rows.panel.panel);
        settle();
        const int around = window.width() - rows.panel.panel.width();
        const int width = aligner.uncutWidth();
        const auto cutOnes = [&]
        {
            settle();
            int found = 0;
            for (QWidget* row : rows.all)
                for (const char* name : {"label", "units"})
                    if (const auto* label = row->findChild<QLabel*>(name))
                        found += isWhole(label) ? 0 : 1;
            for (QLineEdit* field : fields)
                found += toolTipOf(field).isEmpty() ? 0 : 1;
            return found;
        };
        window.resize(width + around, 900);
        QCOMPARE(cutOnes(), 0);
        window.resize(width + around - 20, 900);
        QVERIFY(cutOnes() > 0);
        QToolTip::hideText();
    }

    void outlivesItsRoot()
    {
        auto window = std::make_unique<QWidget>();
        auto rows = std::make_unique<Rows>(window.get());
        ColumnAligner aligner(&rows->panel.panel);
        window->show();
        settle();
        rows->panel.panel.setFont(QFont("Sans", 17)); // a pass is asked for
        rows.reset();
        settle();
        aligner.align();
        aligner.setAlignsColumns(false);
        QCOMPARE(aligner.uncutWidth(), 270);
    }

private:
    static QAccordion* panelSection(const Rows& rows)
    {
        return rows.panel.panel.findChild<QAccordion*>(QStringLiteral("Surface"));
    }
};

QTEST_MAIN(tst_ColumnAligner)
#include "tst_columnaligner.moc"
