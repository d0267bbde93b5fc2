#include "hostsupport.h"

#include <examples/DerivedEditor/AngleEdit.h>
#include <examples/DerivedEditor/PercentEdit.h>
#include <Orvek/Host/EditorInput.h>

#include <QShortcut>
#include <QtTest/qtestspontaneevent.h>
#include <QtWidgets/QScrollBar>

using namespace hostsupport;
using orvek::host::EditorInput;

namespace
{
constexpr double third = 1.0 / 3.0;

// A host's own, connected in its own way, with conversions that can be invoked by name.
class OwnEditor : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(double value MEMBER m_value NOTIFY valueChanged)
public:
    OwnEditor()
    {
        auto* field = new QLineEdit("0 px", this);
        field->setObjectName("lineEdit");
        connect(field, &QLineEdit::editingFinished, this,
                [this, field] { setProperty("value", qMin(9.0, textToValue(field->text(), nullptr))); });
    }
    Q_INVOKABLE double textToValue(QString text, bool* ok) { return text.remove("px").trimmed().toDouble(ok); }
    Q_INVOKABLE QString valueToText(double value) { return QString::number(value) + " px"; }
Q_SIGNALS:
    void valueChanged();

private:
    double m_value = 0.0;
};

// An editor in a scroll area in a window, with a button that Return presses in a dialog.
struct Scene
{
    Scene(Create createWindow, Create createEditor, bool isControl = false)
        : window(createWindow()), editor(createEditor()), field(fieldsOf(*editor).first())
    {
        auto* column = new QWidget;
        (new QVBoxLayout(column))->addWidget(editor);
        column->setMinimumHeight(900);
        area->setWidgetResizable(true);
        area->setWidget(column);
        auto* rows = new QVBoxLayout(window.get());
        rows->addWidget(area);
        rows->addWidget(button);
        window->resize(600, 300);
        if (!isControl)
            input = std::make_unique<EditorInput>(window.get());
        showActive(*window);
    }
    void type(const QString& text) const
    {
        field->setFocus(Qt::TabFocusReason);
        typeText(field, text);
    }
    QVariant value() const
    {
        const auto* colour = qobject_cast<QColourEdit*>(editor);
        return colour ? colour->colour()[0] : editor->property(qobject_cast<QFileEdit*>(editor) ? "filename" : "value");
    }
    QByteArray setOddValue() const
    {
        hostsupport::setOddValue(editor);
        return bitsOf(editor);
    }
    const std::unique_ptr<QWidget> window;
    QWidget* const editor;
    QLineEdit* const field;
    QScrollArea* const area = new QScrollArea;
    QPushButton* const button = new QPushButton("OK");
    std::unique_ptr<EditorInput> input;
};

using Texts = Table<Create, QString, QVariant, QString>; // editor, typed, value (none if refused), shown

void wheel(QWidget* widget, Qt::ScrollPhase phase)
{
    const QPointF centre = widget->rect().center();
    QWheelEvent event(centre, widget->mapToGlobal(centre.toPoint()), {0, -15}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                      phase, false);
    QSpontaneKeyEvent::setSpontaneous(&event);
    qApp->notify(widget, &event);
}
} // namespace

class tst_EditorInput : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void passingByDoesNoHarm_data() { everyKind(); }
    void passingByDoesNoHarm()
    {
        const auto [window, editor] = Kinds::current();
        QWidget other;
        const auto leave = [&other](const Scene& scene, int way)
        {
            if (way == 0)
                scene.button->setFocus(Qt::MouseFocusReason);
            else if (way == 1)
                showActive(other);
            else
                QTest::keyClick(scene.field, way == 2 ? Qt::Key_Return : Qt::Key_Tab);
        };
        for (const bool isControl : {true, false})
        {
            const Scene scene(window, editor, isControl);
            const bool isDialog = qobject_cast<QDialog*>(scene.window.get());
            const bool isText = scene.editor->metaObject()->indexOfProperty("readOnly") >= 0;
            QByteArray before = scene.setOddValue();
            for (QWidget* part : scene.editor->findChildren<QWidget*>())
            {
                for (const Qt::ScrollPhase phase : {Qt::NoScrollPhase, Qt::ScrollBegin, Qt::ScrollUpdate})
                {
                    scene.area->verticalScrollBar()->setValue(0);
                    wheel(part, phase);
                    QCOMPARE(scene.area->verticalScrollBar()->value() == 0, isControl && qobject_cast<QSlider*>(part));
                    wheel(part, Qt::ScrollEnd);
                }
            }
            QCOMPARE(bitsOf(scene.editor), before);

            QSignalSpy changes(scene.editor, SIGNAL(valueChanged()));
            for (const int way : {0, 1, 2, 3})
            {
                showActive(*scene.window);
                before = scene.setOddValue();
                scene.field->setFocus(Qt::TabFocusReason);
                for (const Qt::Key key : {Qt::Key_End, Qt::Key_1, Qt::Key_Backspace})
                    if (way > 1) // typed back to what it was
                        QTest::keyClick(scene.field, key);
                leave(scene, way);
                QCOMPARE(changes.isEmpty(), !isControl);
                QCOMPARE(bitsOf(scene.editor) == before, !isControl || isText);
                changes.clear();
            }
            // Another window gets what was typed, but half an expression may still be finished.
            for (const char* text : {"2*(", "1"})
            {
                showActive(*scene.window);
                scene.type(text);
                changes.clear();
                showActive(other);
                QVERIFY(*text == '1' ? !changes.isEmpty() : scene.field->text() == text);
            }
            for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return})
            {
                showActive(*scene.window);
                before = scene.setOddValue();
                const QString shown = scene.field->text();
                const QSignalSpy presses(scene.button, &QPushButton::clicked);
                scene.type(key == Qt::Key_Escape ? "2" : "0");
                QTest::keyClick(scene.field, key);
                const bool restores = !isControl && key == Qt::Key_Escape;
                QCOMPARE(scene.field->text() == shown, restores);
                QVERIFY(isControl || (bitsOf(scene.editor) == before) == restores);
                QCOMPARE(scene.window->isVisible(), !(isControl && isDialog && key == Qt::Key_Escape));
                QCOMPARE(presses.size(), isControl && isDialog && key == Qt::Key_Return ? 1 : 0);
            }
            QVERIFY(isControl || scene.field->hasFocus());
            QTest::keyClick(scene.field, Qt::Key_Escape); // nothing to take back
            QCOMPARE(scene.window->isVisible(), !isDialog);
        }
    }

    void textsBecomeValues_data()
    {
        const Texts row;
        const auto add = [&row](Create editor, const char* typed, const QVariant& value, const char* shown)
        { row(typed, editor, typed, value, shown); };
        const Create slider = []() -> QWidget*
        {
            auto* editor = new QSliderEdit;
            editor->setMaximum(10.0);
            editor->setUnits("m");
            return editor;
        };
        const Create names = []() -> QWidget*
        {
            auto* editor = new QIntSliderEdit;
            editor->setEnums({"1", "2", "4", "Off"});
            return editor;
        };
        add(slider, "0.50", 0.5, "0.50");
        add(slider, "50", 10.0, "10");
        for (const char* text : {"abc", "0,5", "", "1/0", "2*(3", "1 2"})
            add(slider, text, {}, "0");
        add(slider, "3*2", 6.0, "6");
        add(slider, "1/3", third, "0.333333");
        add(slider, "sqrt(2)", std::sqrt(2.0), "1.41421");
        add(slider, "2pi - (1+1)2 + 2 sqrt(1)", 2 * M_PI - 4 + 2, "4.28319");
        add(slider, "1e0 + log10(1e2)", 3.0, "3");
        add(slider, "2min(0.2m*2,0.5)", 0.8, "0.8");
        const Create angle = []() -> QWidget*
        {
            auto* editor = new AngleEdit;
            editor->setMinimum(-M_PI_2);
            editor->setMaximum(M_PI_2);
            return editor;
        };
        add(angle, "45", M_PI_4, "45");
        add(angle, "-30 °", qDegreesToRadians(-30.0), "-30 °");
        add(angle, "1000", M_PI_2, "90°");
        add(angle, "flat", {}, "0");
        add(create<PercentEdit>, "12.5", 0.125, "12.5");
        add(create<PercentEdit>, "%", {}, "0");
        add(create<PercentEdit>, "50 %/2", 0.25, "25 %");
        add(create<PercentEdit>, "+=25 %", 0.25, "25 %");
        add(create<QIntSliderEdit>, "2.6*10", 26, "26");
        add(create<QIntSliderEdit>, "99999999999", 100, "100");
        add(create<QIntSliderEdit>, "letters", {}, "0");
        add(names, "off", 3, "Off");
        add(names, "4", 2, "4");
        add(create<QVectorEdit>, "1./3", QVector3D(float(third), 0, 0), "0.333333");
        add(create<QVectorEdit>, "nan", {}, "0");
        add(create<QVectorEdit>, "1 2.5 -3", QVector3D(1, 2.5, -3), "1");
        add(create<OwnEditor>, "2 px", 2.0, "2 px");
        add(create<OwnEditor>, "2*8 px", 9.0, "9 px");
        add(create<OwnEditor>, "px px", {}, "0 px");
        add(create<QLabelEdit>, "3 *2", "3 *2", "3 *2");
    }
    void textsBecomeValues()
    {
        const auto [editor, typed, value, shown] = Texts::current();
        for (const Qt::Key leave : {Qt::Key_Tab, Qt::Key_Return})
        {
            const Scene scene(create<QDialog>, editor);
            const QVariant before = scene.value();
            const QSignalSpy changes(scene.editor, SIGNAL(valueChanged()));
            scene.type(typed);
            QCOMPARE(scene.field->property("invalid").toBool(), !value.isValid());
            QTest::keyClick(scene.field, leave);
            const bool isRejected = !value.isValid() && leave == Qt::Key_Return;
            QCOMPARE(scene.field->text(), isRejected ? typed : shown);
            QCOMPARE(scene.field->property("invalid").isValid(), isRejected);
            QCOMPARE(scene.value(), value.isValid() ? value : before);
            if (value.userType() == QMetaType::Double)
                QVERIFY(scene.value().toDouble() == value.toDouble()); // all bits
            QCOMPARE(changes.isEmpty(), !value.isValid());
        }
    }

    void keysStepAndTypeAPoint()
    {
        const struct
        {
            Create create;
            QVector<double> values; // after Up, Shift+Up, Ctrl+Up, Down
            QVector<QPair<const char*, double>> properties;
        } cases[] = {{create<QSliderEdit>, {0.01, 0.11, 0.111, 0.101}, {}},
                     {create<QSliderEdit>, {0.18, 1, 1, 0.82}, {{"step", 0.18}}},
                     {create<QSliderEdit>, // 1.01 to the power of 100
                      {10.1, 11.1567, 11.1678, 11.0572},
                      {{"maximum", 27.0481382942153}, {"minimum", 10}, {"logarithmic", 1}}},
                     {create<QIntSliderEdit>, {1, 11, 12, 11}, {}},
                     {create<QIntSliderEdit>, {2, 2048, 4096, 2048}, {{"maximum", 1 << 20}, {"powerOfTwo", 1}}},
                     {create<QVectorEdit>, {0.1, 1.1, 1.11, 1.01}, {}},
                     {create<QColourEdit>, {0.01, 0.11, 0.111, 0.101}, {}}};
        for (const auto& test : cases)
        {
            const std::unique_ptr<QWidget> editor(test.create());
            for (const auto& property : test.properties)
                editor->setProperty(property.first, property.second);
            QLineEdit* field = fieldsOf(*editor).first();
            QSignalSpy changes(editor.get(), SIGNAL(valueChanged()));
            const auto press = [field, &changes](Qt::Key key, Qt::KeyboardModifiers modifiers, const QString& text = {})
            {
                changes.clear();
                QTest::sendKeyEvent(QTest::Click, field, key, text, modifiers);
                return changes.size();
            };
            const QString before = field->text();
            QCOMPARE(press(Qt::Key_Up, {}) + press(Qt::Key_Period, Qt::KeypadModifier, ","), 0);
            QCOMPARE(field->text(), before + ','); // the control run
            field->setText(before);
            const EditorInput input(editor.get()); // also of an editor alone
            const Qt::KeyboardModifiers modifiers[] = {Qt::KeypadModifier, Qt::ShiftModifier, Qt::ControlModifier, {}};
            for (int i = 0; i < 4; ++i)
            {
                const bool isSame = i > 0 && test.values[i] == test.values[i - 1];
                QCOMPARE(press(i < 3 ? Qt::Key_Up : Qt::Key_Down, modifiers[i]), isSame ? 0 : 1);
                QCOMPARE(field->text(), QString::number(test.values[i]));
                const QVariant value = editor->property("value");
                if (value.userType() == QMetaType::Double && test.properties.size() < 3)
                    QVERIFY(value.toDouble() == test.values[i]); // no odd last digits
            }
            press(Qt::Key_Period, Qt::KeypadModifier, ",");
            QCOMPARE(field->text(), QString::number(test.values[3]) + '.');
            field->setReadOnly(true);
            QCOMPARE(press(Qt::Key_Up, {}), 0);
        }
        QLabelEdit text;
        const EditorInput input(&text);
        QTest::sendKeyEvent(QTest::Click, fieldsOf(text).first(), Qt::Key_Period, ",", Qt::KeypadModifier);
        QCOMPARE(fieldsOf(text).first()->text(), ",");
    }

    void wholeValuesAreCopiedAndPasted()
    {
        QWidget root;
        QVectorEdit vector(&root);
        QColourEdit colour(&root);
        QSliderEdit slider(&root);
        QClipboard* clipboard = QApplication::clipboard();
        const auto copy = [clipboard](const QWidget& editor)
        {
            clipboard->setText("before");
            QTest::keySequence(fieldsOf(editor).last(), QKeySequence::Copy);
            return clipboard->text();
        };
        const QSignalSpy changes(&vector, SIGNAL(valueChanged()));
        const auto paste = [&changes](const QWidget& editor)
        {
            QTest::keySequence(fieldsOf(editor).last(), QKeySequence::Paste);
            return changes.size();
        };
        vector.setValue({0.1F, -2, float(third)});
        QCOMPARE(copy(vector), "before"); // the control run
        const EditorInput input(&root);
        fieldsOf(vector).last()->selectAll();
        QCOMPARE(copy(vector), "0.333333");
        fieldsOf(vector).last()->deselect();
        QCOMPARE(copy(vector), "0.1 -2 0.33333334");
        vector.setValue({});
        QCOMPARE(paste(vector), 1);
        QCOMPARE(vector.value(), QVector3D(0.1F, -2, float(third)));
        clipboard->setText("#ff8000");
        QCOMPARE(paste(vector), 1); // no colour
        QVERIFY(fieldsOf(vector).last()->property("invalid").toBool());
        vector.setColourEdit(true);
        QCOMPARE(paste(vector), 2);
        QCOMPARE(vector.value(), QVector3D(1, 128.0F / 255.0F, 0));
        colour.setColour(0.4, 0.4, third, 1);
        QCOMPARE(copy(colour), "#666655");
        colour.setColour(0, 0, 0, 0);
        paste(colour); // without a loss
        QVERIFY(colour.colour()[2] == third && colour.colour()[3] == 1.0);
        clipboard->setText("#ff8000");
        paste(colour);
        QVERIFY(colour.colour()[1] == 128.0 / 255.0 && colour.colour()[3] == 1.0);
        clipboard->setText("(2, 0.5; 1)");
        paste(colour);
        QCOMPARE(copy(colour), "2 0.5 1 1");

        const auto choose = [&slider](const char* text)
        {
            auto* label = child<QLabel>(slider, "label");
            QContextMenuEvent event(QContextMenuEvent::Mouse, {2, 2}, label->mapToGlobal(QPoint(2, 2)));
            QCoreApplication::sendEvent(label, &event);
            const std::unique_ptr<QMenu> menu(slider.findChild<QMenu*>());
            for (QAction* action : menu->actions())
                if (action->text() == text && action->isEnabled())
                    action->trigger();
            return slider.value().toDouble();
        };
        slider.setValue(third);
        choose("Copy");
        slider.setValue(0.0);
        QVERIFY(choose("Paste") == third);
        slider.setDefaultValue(0.25);
        QCOMPARE(choose("Reset"), 0.25);
        clipboard->setText("letters");
        QCOMPARE(choose("Paste"), 0.25);
    }

    void editorsComeAndGo()
    {
        Panel panel;
        auto* section = panel.addSection("Fog");
        auto* editor = Panel::addRow(section, "Density");
        auto* field = child<QLineEdit>(*editor, "lineEdit");
        auto input = std::make_unique<EditorInput>(&panel.panel);
        const EditorInput inner(section);
        const auto press = [field, editor](Qt::Key key)
        {
            const QSignalSpy changes(editor, SIGNAL(valueChanged()));
            QTest::keyClick(field, key);
            return changes.size();
        };
        const QShortcut shortcut(Qt::Key_Up, &panel.panel); // the field's key comes first
        const QSignalSpy taken(&shortcut, &QShortcut::activated);
        showActive(panel.panel);
        field->setFocus();
        QCOMPARE(press(Qt::Key_Up), 1); // of two one
        QVERIFY(taken.isEmpty());
        input->setStepsWithArrows(false);
        QCOMPARE(press(Qt::Key_Up), 0);
        const auto* reset = child<QPushButton>(*editor, "reset");
        input->setTabsToReset(false);
        QCOMPARE(reset->focusPolicy(), Qt::ClickFocus);
        input.reset(); // the inner one follows
        QCOMPARE(reset->focusPolicy(), Qt::StrongFocus);
        QCOMPARE(press(Qt::Key_Up), 1);
        typeText(field, "0.5");
        QCOMPARE(press(Qt::Key_Up), 3); // what is typed comes first
        QCOMPARE(editor->value(), QVariant(0.51));
        panel.panel.setStyleSheet("QLineEdit[invalid=true] { color: red }");
        QTest::keyClicks(field, "x");
        QVERIFY(field->property("invalid").toBool() && field->palette().color(QPalette::Text) == QColor(Qt::red));
        QWidget elsewhere;
        editor->setParent(&elsewhere);
        QVERIFY(!field->property("invalid").isValid());
        field->setText("0.5");
        QCOMPARE(press(Qt::Key_Return), 2);
        Panel::contentsOf(section)->layout()->addWidget(editor);
        QCoreApplication::processEvents();
        QCOMPARE(press(Qt::Key_Return), 0);
        // A host's slot may delete the editor, and with it all else.
        connect(editor, &QSliderEdit::valueChanged, editor, &QObject::deleteLater);
        QTest::keyClicks(field, "1");
        QTest::keyClick(field, Qt::Key_Return);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!section->findChild<QSliderEdit*>());
    }
};

QTEST_MAIN(tst_EditorInput)
#include "tst_editorinput.moc"
