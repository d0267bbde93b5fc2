#include "hostsupport.h"

#include <Orvek/Host/ChoiceButton.h>
#include <Orvek/Host/ColumnAligner.h>

#include <QtWidgets/QToolTip>

using namespace orvek::host;
using hostsupport::Panel;

namespace
{
// Numbers in a text are no values.
const QString longText = QStringLiteral("Index 1.52345678 of refraction of the outermost layer, from here");

void settle()
{
    for (int i = 0; i < 4; ++i)
        QCoreApplication::processEvents();
}

bool isWhole(const QLabel* label)
{
    return label->fontMetrics().horizontalAdvance(label->text()) <= label->contentsRect().width();
}

// Every kind of editor, some in a section within a section.
struct Rows
{
    explicit Rows(int width, hostsupport::Create create = hostsupport::create<QWidget>) : window(create())
    {
        (new QVBoxLayout(window.get()))->addWidget(&panel.panel);
        Panel::addRow<QSliderEdit>(inner, "Ior")->setUnits("m");
        auto* list = Panel::addRow<QIntSliderEdit>(inner, "Filter");
        list->setEnums({"Nearest", "Linear"});
        ChoiceButton::addTo(list);
        all = panel.panel.findChildren<QWidget*>(QRegularExpression("^Q[A-Za-z]+Edit$"));
        window->resize(width, 900);
    }
    // Whether all titles and all fields end in one place, and no parts are squeezed.
    bool areInLine() const
    {
        QSet<int> titles;
        QSet<int> fields;
        for (const QWidget* row : all)
        {
            const auto endOf = [row](const QWidget* part)
            { return part->mapTo(row->window(), QPoint(row->isRightToLeft() ? 0 : part->width(), 0)).x(); };
            const QVector<QLineEdit*> parts = hostsupport::fieldsOf(*row);
            const QWidget* last = row->findChild<ChoiceButton*>();
            if (!last)
                last = parts.last()->isVisible() ? parts.last() : parts[parts.size() - 2];
            titles << endOf(child<QLabel>(*row, "label"));
            fields << endOf(last);
            if (row->layout()->minimumSize().width() > row->width())
                return false;
        }
        return titles.size() == 1 && fields.size() == 1;
    }

    const std::unique_ptr<QWidget> window;
    Panel panel; // destroyed before the window, so it leaves it
    QAccordion* const outer = panel.addSection("Surface");
    QSliderEdit* const slider = Panel::addRow<QSliderEdit>(outer, "Roughness");
    QIntSliderEdit* const integer = Panel::addRow<QIntSliderEdit>(outer, "Samples");
    QVectorEdit* const vector = Panel::addRow<QVectorEdit>(outer, "Position");
    QAccordion* const inner = panel.addSection("Details", Panel::contentsOf(outer));
    QColourEdit* const colour = Panel::addRow<QColourEdit>(inner, "Emission");
    QFileEdit* const file = Panel::addRow<QFileEdit>(inner, "Mesh");
    QLabelEdit* const text = Panel::addRow<QLabelEdit>(inner, "Name");
    QList<QWidget*> all;
};

// What the widget shows once it has been painted, as fields scroll then.
QImage painted(QWidget* widget)
{
    widget->grab();
    settle();
    return widget->grab().toImage();
}

// Whether the widget looks like one of Qt's in its place with one of the texts.
template <typename Widget>
bool shows(Widget* widget, const QStringList& texts)
{
    const auto looksLike = [widget, image = painted(widget)](const QString& text)
    {
        Widget other(widget->parentWidget());
        other.setText(text);
        other.setGeometry(widget->geometry());
        if constexpr (std::is_same_v<Widget, QLineEdit>)
            other.home(false);
        return painted(&other) == image;
    };
    return std::any_of(texts.cbegin(), texts.cend(), looksLike);
}

// Whether it is the beginning of its text. Styles take different space beside it.
bool showsBeginning(QLineEdit* field)
{
    QStringList texts;
    for (int frame = 6; frame < 16; ++frame)
        texts << field->fontMetrics().elidedText(field->text(), Qt::ElideRight, field->width() - frame);
    return shows(field, texts);
}

QString toolTipOf(QWidget* widget)
{
    QToolTip::hideText();
    QHelpEvent event(QEvent::ToolTip, QPoint(3, 3), widget->mapToGlobal(QPoint(3, 3)));
    QCoreApplication::sendEvent(widget, &event);
    return QToolTip::text();
}
} // namespace

class tst_ColumnAligner : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    // The platform may want the first picture before any posted event is delivered.
    void columnsAreInLineFromTheStart()
    {
        for (const bool isPolished : {false, true}) // as by a style sheet
        {
            Rows rows(560);
            if (isPolished)
                rows.panel.panel.ensurePolished();
            ColumnAligner aligner(&rows.panel.panel);
            rows.window->show();
            QVERIFY(rows.areInLine());
        }
    }

    void columnsAreInLine()
    {
        for (const hostsupport::Kind& window : hostsupport::windowKinds)
        {
            Rows rows(760, window.create);
            showActive(*rows.window);
            QVERIFY(!rows.areInLine()); // without it
            ColumnAligner aligner(&rows.panel.panel);
            settle();
            QSignalSpy aligned(&aligner, &ColumnAligner::aligned);
            const auto setTitles = [&rows](const QString& title)
            {
                for (QWidget* row : qAsConst(rows.all))
                    child<QLabel>(*row, "label")->setText(title);
            };
            QFont font = rows.panel.panel.font();
            font.setPixelSize(QFontInfo(font).pixelSize() + 2);
            const struct
            {
                const char* name;
                int wider;  // the titles' column: 1 for wider, -1 for narrower, 0 for as wide
                int passes; // that changed something
                std::function<void()> act;
            } steps[] = {
                {"values", 0, 0,
                 [&] {
                     rows.slider->setValue(0.123456), rows.vector->setValue({0.123456F, 9, 1e9F});
                 }},
                {"longer titles", 1, 1, [&] { setTitles("A longer name"); }},
                {"shorter titles", -1, 1, [&] { setTitles("Name"); }},
                {"parts", 0, 0, [&] { rows.colour->setShowAlpha(false), rows.slider->setShowButtons(true); }},
                {"units", 0, 1, [&] { rows.slider->setUnits("cd/m²"); }},
                // Rows of a nested section are 63 pixels narrower than the panel with its scroll bar.
                {"the narrowest panel", 0, 1, [&] { rows.window->resize(390, 900); }},
                {"from the right", 0, 1, [&] { rows.window->setLayoutDirection(Qt::RightToLeft); }},
                {"a font", 1, 1, [&] { rows.panel.panel.setFont(font); }},
                {"one that comes", 1, 1, [&] { rows.all << Panel::addRow<QVectorEdit>(rows.outer, "Latecomer"); }},
                {"one that goes", -1, 1, [&] { delete rows.all.takeLast(); }},
            };
            const auto* label = child<QLabel>(*rows.slider, "label");
            for (const auto& step : steps)
            {
                const int before = label->width();
                aligned.clear();
                step.act();
                settle();
                QVERIFY2(rows.areInLine() && isWhole(label), step.name);
                QVERIFY2(qBound(-1, label->width() - before, 1) == step.wider, step.name);
                QVERIFY2(aligned.count() == step.passes, step.name);
            }
        }
    }

    void textsAreCutWhereItDoesNoHarm()
    {
        Rows rows(470);
        rows.window->setStyleSheet("* { font-size: 15px; } QLabel { padding: 0 5px; border: 1px solid blue; }");
        const QVector3D value(1.0F / 3, -1234567, 0.5F);
        rows.vector->setValue(value);
        rows.slider->setTitle(longText);
        rows.text->setValue(longText);
        rows.file->setFilename("/somewhere/deep/in/the/directories/of/a/project/mesh.obj");
        rows.integer->setEnums({longText});
        showActive(*rows.window);
        auto* label = child<QLabel>(*rows.slider, "label");
        auto* x = child<QLineEdit>(*rows.vector, "x");
        auto* name = child<QLineEdit>(*rows.text, "lineEdit");
        auto* path = child<QLineEdit>(*rows.file, "lineEdit");
        const QStringList third = {"0.3", "0.33", "0.333", "0.3333"};
        rows.window->setFocus();
        ColumnAligner aligner(rows.window.get());
        aligner.setElidesTitles(false);
        aligner.setFitsTexts(false);
        settle();
        // The columns alone: half a title, half a number, and the end of the name.
        QVERIFY(shows(label, {longText}) && toolTipOf(label).isEmpty());
        QVERIFY(!shows(x, third) && !showsBeginning(name) && toolTipOf(x).isEmpty());

        aligner.setElidesTitles(true);
        settle();
        aligner.setFitsTexts(true);
        const int room = label->contentsRect().width() - label->fontMetrics().horizontalAdvance('x') / 2; // its indent
        QVERIFY(shows(label, {label->fontMetrics().elidedText(longText, Qt::ElideRight, room)}));
        QVERIFY(label->width() <= int(0.35 * rows.window->width()));
        label->setToolTip("of <glass>");
        QVERIFY(toolTipOf(label).contains(longText) && toolTipOf(label).contains("of &lt;glass&gt;"));
        QVERIFY(!toolTipOf(child<QLabel>(*rows.integer, "label")).contains("Samples"));
        QVERIFY(shows(x, third) && toolTipOf(x).contains(x->text()));
        QVERIFY(shows(child<QLineEdit>(*rows.vector, "y"), {"-1e+06", "-1.2e+06", QChar(0x2026)}));
        QVERIFY(shows(child<QLineEdit>(*rows.vector, "z"), {"0.5"}));
        QVERIFY(showsBeginning(name) && showsBeginning(child<QLineEdit>(*rows.integer, "lineEdit")));

        // Whoever edits sees the text itself; whoever leaves finds the beginning or end again.
        path->setFocus();
        path->home(false);
        name->setFocus();
        QVERIFY(!showsBeginning(name));
        painted(path);
        QCOMPARE(path->cursorPosition(), path->text().size());
        name->selectAll();
        QTest::keyClick(name, Qt::Key_Tab);
        QVERIFY(showsBeginning(name));
        QCOMPARE(x->text(), QString("0.333333"));
        QCOMPARE(rows.vector->value(), value);
    }

    void leavesEverythingAsItWas()
    {
        Rows rows(500);
        rows.slider->setTitle(longText);
        rows.integer->setTextWidth(33);
        rows.text->setValue(longText);
        child<QLineEdit>(*rows.text, "lineEdit")->home(false);
        showActive(*rows.window);
        rows.window->setFocus();
        const auto picture = [&rows] { return settle(), painted(rows.window.get()); };
        const QImage before = picture();
        auto aligner = std::make_unique<ColumnAligner>(rows.window.get());
        QVERIFY(picture() != before);
        const char* const switches[] = {"alignsColumns", "elidesTitles", "fitsTexts"};
        for (const char* part : switches)
            aligner->setProperty(part, false);
        QCOMPARE(picture(), before);
        for (const char* part : switches)
        {
            aligner->setProperty(part, true);
            QVERIFY2(picture() != before, part);
            aligner->setProperty(part, false);
            QVERIFY2(picture() == before, part);
        }
        for (const char* part : switches)
            aligner->setProperty(part, true);
        QVERIFY(picture() != before);
        QCOMPARE(rows.integer->textWidth(), 33);
        aligner.reset();
        QCOMPARE(picture(), before);

        // Editors that leave, and vertical ones.
        const ColumnAligner other(rows.window.get());
        settle();
        const auto* label = child<QLabel>(*rows.vector, "label");
        const auto* turned = child<QLabel>(*rows.slider, "label");
        QVERIFY(label->maximumWidth() > 80 && turned->maximumWidth() > 80);
        QWidget elsewhere;
        rows.vector->setParent(&elsewhere);
        rows.slider->setOrientation(Qt::Vertical);
        settle();
        QCOMPARE(label->maximumWidth(), 80);
        QCOMPARE(turned->maximumWidth(), 80);
    }

    void uncutWidthCutsNothing()
    {
        Rows rows(420);
        rows.slider->setTitle("A title of some length");
        rows.slider->setUnits("cd/m²");
        auto* field = child<QLineEdit>(*rows.colour, "blue");
        field->setText("-8.88888e-88");
        showActive(*rows.window);
        ColumnAligner aligner(&rows.panel.panel);
        settle();
        const int width = aligner.uncutWidth() + rows.window->width() - rows.panel.panel.width();
        for (const bool isEnough : {true, false})
        {
            rows.window->resize(isEnough ? width : width - 20, 900);
            settle();
            const bool isUncut = isWhole(child<QLabel>(*rows.slider, "label")) && toolTipOf(field).isEmpty() &&
                                 isWhole(child<QLabel>(*rows.slider, "units"));
            QCOMPARE(isUncut, isEnough);
        }
        rows.slider->setTitle(longText); // most of the width
        settle();
        rows.window->resize(aligner.uncutWidth() + rows.window->width() - rows.panel.panel.width(), 900);
        settle();
        QVERIFY(isWhole(child<QLabel>(*rows.slider, "label")));
        const int wide = aligner.uncutWidth();
        aligner.setTitleShare(0.9);
        QVERIFY(aligner.uncutWidth() < wide);
    }

    void outlivesItsRoot()
    {
        auto rows = std::make_unique<Rows>(420);
        ColumnAligner aligner(&rows->panel.panel);
        showActive(*rows->window);
        rows->panel.panel.setFont(QFont("Sans", 17)); // a pass is asked for
        rows.reset();
        settle();
        aligner.setAlignsColumns(false);
        QCOMPARE(aligner.uncutWidth(), 270);
    }
};

QTEST_MAIN(tst_ColumnAligner)
#include "tst_columnaligner.moc"
