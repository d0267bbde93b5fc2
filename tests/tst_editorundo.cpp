#include "hostsupport.h"

#include <Orvek/Host/EditorUndo.h>

#include <QtGui/QColor>
#include <QtWidgets/QAction>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSlider>
#include <QtWidgets/QStyleOptionSlider>
#include <QtWidgets/QUndoStack>

Q_DECLARE_METATYPE(Qt::MouseButton)

using namespace hostsupport;
using orvek::host::EditorUndo;

namespace
{
// The mouse on a slider's handle, with moves that QTest would send without the button.
class HandleDrag
{
public:
    explicit HandleDrag(QSlider* slider, Qt::MouseButton button = Qt::LeftButton, int offset = 0)
        : m_slider(slider), m_button(button)
    {
        QStyleOptionSlider option;
        option.initFrom(slider);
        option.orientation = slider->orientation();
        option.minimum = slider->minimum();
        option.maximum = slider->maximum();
        option.sliderPosition = slider->sliderPosition();
        option.sliderValue = slider->value();
        m_position =
            slider->style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, slider).center();
        m_position.rx() += offset;
        QTest::mousePress(m_slider, m_button, Qt::NoModifier, m_position);
    }

    void moveBy(int pixels)
    {
        m_position.rx() += pixels;
        QMouseEvent move(QEvent::MouseMove, m_position, m_slider->mapToGlobal(m_position), Qt::NoButton, m_button,
                         Qt::NoModifier);
        QCoreApplication::sendEvent(m_slider, &move);
    }

    void release() { QTest::mouseRelease(m_slider, m_button, Qt::NoModifier, m_position); }

private:
    QSlider* const m_slider;
    const Qt::MouseButton m_button;
    QPoint m_position;
};

// Shows a share as per cent.
class PercentEdit : public QSliderEdit
{
public:
    using QSliderEdit::QSliderEdit;
    QString valueToText(double value) override { return QSliderEdit::valueToText(value * 100.0); }
    double textToValue(QString text, bool* ok) override { return QSliderEdit::textToValue(text, ok) / 100.0; }
};

// Steps the number in a field and keeps the keys for itself, as a class of a host's may that came later.
class KeySteps : public QObject
{
public:
    KeySteps(QSliderEdit* editor, QLineEdit* field) : m_editor(editor) { field->installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override
    {
        const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
        if (!isKey || static_cast<QKeyEvent*>(event)->key() != Qt::Key_Up)
            return false;
        event->accept();
        if (event->type() == QEvent::KeyPress)
        {
            m_editor->setValue(m_editor->value().toDouble() + 0.1);
            Q_EMIT m_editor->valueChanged();
        }
        return true;
    }

private:
    QSliderEdit* const m_editor;
};

// Editors of a host's own: with a value that is neither number nor text, and with none.
class ValuelessEdit : public QWidget
{
    Q_OBJECT
public:
    explicit ValuelessEdit(QWidget* parent = nullptr) : QWidget(parent)
    {
        (new QLineEdit(this))->setObjectName(QStringLiteral("lineEdit"));
    }
Q_SIGNALS:
    void valueChanged();
};

class NamedColourEdit : public ValuelessEdit
{
    Q_OBJECT
    Q_PROPERTY(QColor value MEMBER m_value)
public:
    NamedColourEdit()
    {
        auto* field = child<QLineEdit>(*this, "lineEdit");
        connect(field, &QLineEdit::editingFinished, this,
                [this, field]
                {
                    m_value = QColor(field->text());
                    Q_EMIT valueChanged();
                });
    }

private:
    QColor m_value;
};

void type(QLineEdit* line, const char* text, bool clear = true)
{
    line->setFocus();
    if (clear)
        line->selectAll();
    QTest::keyClicks(line, QLatin1String(text));
    QTest::keyClick(line, Qt::Key_Return);
}

// A third, which no field shows all digits of; names and texts as they are.
void setThird(QWidget* editor)
{
    if (auto* colour = qobject_cast<QColourEdit*>(editor))
    {
        colour->setColour(1.0 / 3.0, 0.5, 0.75, 1.0);
        const QVector<QLineEdit*> fields = fieldsOf(*editor);
        for (int i = 0; i < fields.size(); ++i)
            fields[i]->setText(QString::number(colour->colour()[i]));
    }
    else if (auto* names = qobject_cast<QIntSliderEdit*>(editor))
    {
        names->setEnums({QStringLiteral("None"), QStringLiteral("Some"), QStringLiteral("All")});
        names->setValue(2);
    }
    else if (auto* vector = qobject_cast<QVectorEdit*>(editor))
        vector->setValue(QVector3D(1.0f / 3.0f, 2.0f, 3.0f));
    else if (auto* slider = qobject_cast<QSliderEdit*>(editor))
        slider->setValue(1.0 / 3.0);
    else
        editor->setProperty(editor->metaObject()->indexOfProperty("filename") >= 0 ? "filename" : "value", "first");
}

QVariantList valueOf(QWidget* editor)
{
    if (auto* colour = qobject_cast<QColourEdit*>(editor))
        return {colour->colour()[0], colour->colour()[1], colour->colour()[2], colour->colour()[3]};
    if (auto* vector = qobject_cast<QVectorEdit*>(editor))
        return {vector->value().x(), vector->value().y(), vector->value().z()};
    return {editor->property(editor->metaObject()->indexOfProperty("filename") >= 0 ? "filename" : "value")};
}
} // namespace

class tst_EditorUndo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_warnings.emplace();
        m_window = std::make_unique<QWidget>();
        auto* rows = new QVBoxLayout(m_window.get());
        rows->addWidget(m_number = new QSliderEdit);
        rows->addWidget(m_vector = new QVectorEdit);
        rows->addWidget(m_check = new QCheckBox(QStringLiteral("&Shadows")));
        m_number->setMaximum(100.0);
        m_number->setDefaultValue(10.0);
        m_number->setShowButtons(true);
        m_number->setValue(50.0);
        m_vector->setValue(QVector3D(1.0f, 2.0f, 3.0f));
        m_stack = std::make_unique<QUndoStack>();
        m_undo = std::make_unique<EditorUndo>(m_stack.get());
        m_undo->follow(m_window.get());
        m_window->resize(600, 300);
        showActive(*m_window);
    }

    void cleanup()
    {
        m_undo.reset();
        m_stack.reset();
        m_window.reset();
        m_warnings.reset();
        QCOMPARE(WarningWatch::count(), 0);
    }

    void pressIsOneStep_data()
    {
        QTest::addColumn<bool>("live");
        QTest::addColumn<Qt::MouseButton>("button");
        QTest::addColumn<int>("offset");
        for (const bool live : {true, false})
        {
            QTest::addRow("handle, live %d", live) << live << Qt::LeftButton << 0;
            QTest::addRow("middle button, live %d", live) << live << Qt::MiddleButton << 40;
        }
    }

    void pressIsOneStep()
    {
        QFETCH(bool, live);
        QFETCH(Qt::MouseButton, button);
        QFETCH(int, offset);
        m_number->setLiveUpdate(live);
        const QSignalSpy edited(m_undo.get(), &EditorUndo::edited);
        const QSignalSpy changed(m_number, &QSliderEdit::valueChanged);
        HandleDrag drag(slider(), button, offset);
        for (int i = 0; i < 5; ++i)
            drag.moveBy(8);
        QCOMPARE(edited.count() > 1, live);
        drag.release();
        // The trap: one act is several signals.
        QVERIFY(changed.count() > 1 || (!live && button == Qt::LeftButton));
        const double dragged = number();
        QVERIFY(dragged > 50.0);
        QCOMPARE(m_stack->count(), 1);

        // A second drag is a second step, also when it starts where the first one ended.
        HandleDrag second(slider(), button);
        second.moveBy(-20);
        second.release();
        QCOMPARE(m_stack->count(), 2);
        const int signalCount = changed.count();
        m_stack->undo();
        QCOMPARE(number(), dragged);
        m_stack->undo();
        QCOMPARE(number(), 50.0);
        QCOMPARE(field()->text(), QStringLiteral("50"));
        QCOMPARE(slider()->value(), 500);
        m_stack->redo();
        QCOMPARE(number(), dragged);
        QCOMPARE(changed.count(), signalCount);
    }

    void dragThatEndsWhereItBeganIsNoStep_data()
    {
        QTest::addColumn<bool>("live");
        QTest::addColumn<bool>("move");
        QTest::newRow("moved") << false << true;
        QTest::newRow("moved, live") << true << true;
        QTest::newRow("press only") << false << false;
    }

    void dragThatEndsWhereItBeganIsNoStep()
    {
        QFETCH(bool, live);
        QFETCH(bool, move);
        m_number->setLiveUpdate(live);
        // Onto a pixel, from where the handle can come back to the same value.
        HandleDrag first(slider());
        first.moveBy(20);
        first.release();
        m_stack->clear();
        const double start = number();
        HandleDrag drag(slider());
        if (move)
        {
            drag.moveBy(40);
            drag.moveBy(-40);
        }
        drag.release();
        QCOMPARE(number(), start);
        QCOMPARE(m_stack->count(), 0);
        // What follows is not taken for a part of the drag.
        type(field(), "60");
        type(field(), "70");
        QCOMPARE(m_stack->count(), 2);
    }

    void undoKeyDuringADragTakesBackTheDrag()
    {
        m_number->setLiveUpdate(true);
        type(field(), "40");
        HandleDrag drag(slider());
        drag.moveBy(30);
        QTest::keyClick(slider(), Qt::Key_Z, Qt::ControlModifier);
        m_stack->undo();
        QCOMPARE(number(), 40.0);
        drag.moveBy(10);
        drag.moveBy(10);
        drag.release();
        QCOMPARE(m_stack->count(), 2);
        m_stack->undo();
        QCOMPARE(number(), 40.0);
    }

    void buttonHeldOnTheGrooveIsOneStep()
    {
        const QSignalSpy changed(m_number, &QSliderEdit::valueChanged);
        QTest::mousePress(slider(), Qt::LeftButton, Qt::NoModifier, QPoint(4, slider()->height() / 2));
        QTRY_VERIFY(changed.count() > 3);
        QTest::mouseRelease(slider(), Qt::LeftButton, Qt::NoModifier, QPoint(4, slider()->height() / 2));
        QTest::mouseClick(slider(), Qt::LeftButton, Qt::NoModifier, QPoint(4, slider()->height() / 2));
        QCOMPARE(m_stack->count(), 2);
    }

    void quickArrowsAreOneStep_data()
    {
        QTest::addColumn<bool>("inField");
        QTest::newRow("slider") << false;
        QTest::newRow("a field that steps") << true;
    }

    void quickArrowsAreOneStep()
    {
        QFETCH(bool, inField);
        QWidget* target = inField ? static_cast<QWidget*>(field()) : slider();
        const KeySteps steps(m_number, field());
        const auto press = [&] { QTest::keyClick(target, Qt::Key_Up); };
        target->setFocus();
        for (int i = 0; i < 20; ++i)
            press();
        QVERIFY(number() > 51.0);
        QCOMPARE(m_stack->count(), 1);
        m_undo->setRepeatInterval(20);
        QTest::qWait(40);
        press();
        QCOMPARE(m_stack->count(), 2);
        // Another act between them parts them.
        m_undo->setRepeatInterval(10000);
        QTest::mouseClick(child<QPushButton>(*m_number, "increment"), Qt::LeftButton);
        QTest::mouseClick(child<QPushButton>(*m_number, "increment"), Qt::LeftButton);
        press();
        QCOMPARE(m_stack->count(), 5);
        m_stack->setIndex(0);
        QCOMPARE(number(), 50.0);
    }

    void typedValueIsOneStep_data() { addKinds(); }

    void typedValueIsOneStep()
    {
        QFETCH(Create, window);
        QFETCH(Create, editor);
        const std::unique_ptr<QWidget> root(window());
        auto* rows = new QVBoxLayout(root.get());
        QWidget* edited = editor();
        rows->addWidget(edited);
        rows->addWidget(new QLineEdit);
        setThird(edited);
        m_undo->follow(root.get());
        showActive(*root);
        const QSignalSpy changed(edited, SIGNAL(valueChanged()));
        // Pushed after it was followed: nobody has to tell.
        setThird(edited);
        const QVariantList before = valueOf(edited);
        type(fieldsOf(*edited).first(), "1");
        const QVariantList after = valueOf(edited);
        QVERIFY(after != before);
        QCOMPARE(m_stack->count(), 1);
        QVERIFY(changed.count() > 0);
        const int signalCount = changed.count();
        m_stack->undo();
        QCOMPARE(valueOf(edited), before);
        m_stack->redo();
        QCOMPARE(valueOf(edited), after);
        QCOMPARE(changed.count(), signalCount);
        if (auto* reset = edited->findChild<QPushButton*>(QStringLiteral("reset")); reset && reset->isEnabled())
        {
            QTest::mouseClick(reset, Qt::LeftButton);
            QCOMPARE(m_stack->count(), 2);
            m_stack->undo();
            QCOMPARE(valueOf(edited), after);
        }
    }

    void untouchedFieldKeepsAllDigits_data()
    {
        addKinds();
        QTest::newRow("per cent") << Create(create<QWidget>) << Create(create<PercentEdit>);
    }

    void untouchedFieldKeepsAllDigits()
    {
        QFETCH(Create, window);
        QFETCH(Create, editor);
        const QByteArray tag = QTest::currentDataTag();
        const bool isText = tag.startsWith("text") || tag.startsWith("file");
        for (const bool control : {true, false})
        {
            const std::unique_ptr<QWidget> root(window());
            auto* rows = new QVBoxLayout(root.get());
            QWidget* edited = editor();
            rows->addWidget(edited);
            auto* other = new QLineEdit;
            rows->addWidget(other);
            setThird(edited);
            if (!control)
                m_undo->follow(root.get());
            showActive(*root);
            const QVariantList before = valueOf(edited);
            QLineEdit* line = fieldsOf(*edited).first();
            type(line, "", false);
            other->setFocus();
            line->setFocus(); // armed again, as its text was set
            other->setFocus();
            if (!isText)
                QCOMPARE(valueOf(edited) == before, !control);
            QCOMPARE(m_stack->count(), 0);
        }
    }

    void editorOfItsOwnIsFollowedOrRefused()
    {
        NamedColourEdit own;
        QVERIFY(m_undo->add(&own));
        type(child<QLineEdit>(own, "lineEdit"), "#ff8000");
        type(child<QLineEdit>(own, "lineEdit"), "#ff8000");
        QCOMPARE(m_stack->count(), 1);
        m_stack->undo();
        QCOMPARE(own.property("value").value<QColor>(), QColor());
        m_stack->redo();
        QCOMPARE(own.property("value").value<QColor>(), QColor(255, 128, 0));

        auto* none = new ValuelessEdit;
        none->setObjectName(QStringLiteral("stripes"));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("ValuelessEdit \"stripes\" has no prop")));
        m_window->layout()->addWidget(none);
        QCoreApplication::processEvents();
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("QLineEdit .* no signal valueChanged")));
        QVERIFY(!m_undo->add(field()));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("QPushButton .* cannot be checked")));
        QVERIFY(!m_undo->add(child<QPushButton>(*m_number, "reset")));
        WarningWatch::count() = 0;
    }

    void followsRowsThatComeAndLeave()
    {
        auto* section = new QAccordion;
        section->setTitle(QStringLiteral("Fog"));
        auto* contents = new QWidget(section);
        new QVBoxLayout(contents);
        m_window->layout()->addWidget(section);
        auto* density = Panel::addRow(section, QStringLiteral("Density"));
        QCoreApplication::processEvents();
        // The check box of a section is no value; one in a row is.
        QTest::mouseClick(child<QCheckBox>(*section, "accordionCheckBox"), Qt::LeftButton, Qt::NoModifier, {8, 8});
        QCOMPARE(m_stack->count(), 0);
        section->setOpen(true);
        QTest::mouseClick(m_check, Qt::LeftButton, Qt::NoModifier, {8, m_check->height() / 2});
        QCOMPARE(m_stack->undoText(), QStringLiteral("Change of Shadows"));
        m_stack->undo();
        QVERIFY(!m_check->isChecked());
        type(child<QLineEdit>(*density, "lineEdit"), "0.5");
        QCOMPARE(m_stack->undoText(), QStringLiteral("Change of Density"));

        m_undo->remove(density);
        type(child<QLineEdit>(*density, "lineEdit"), "0.6");
        m_vector->setParent(nullptr);
        const std::unique_ptr<QVectorEdit> outside(m_vector);
        type(child<QLineEdit>(*outside, "x"), "9");
        QCOMPARE(m_stack->count(), 1);
        m_window.reset();
        m_stack->undo();
        m_stack->redo();
    }

    void hostSetsTheNextStartAndTheContext()
    {
        type(field(), "20");
        m_undo->setContext(7);
        m_number->setValue(30.0);
        type(field(), "40");
        QVector<int> contexts;
        connect(m_undo.get(), &EditorUndo::aboutToRestore, this,
                [&contexts](QWidget*, const QVariant& context) { contexts << context.toInt(); });
        m_stack->undo();
        QCOMPARE(number(), 30.0);
        m_stack->undo();
        QCOMPARE(number(), 50.0);
        QCOMPARE(contexts, (QVector<int>{7, 0}));
        m_number->setValue(60.0);
        m_undo->reread();
        m_number->on_reset_clicked(); // no input at all
        m_stack->undo();
        QCOMPARE(number(), 60.0);
    }

    void hostCanRefuseAValueOrDeleteTheEditor()
    {
        const auto refusal =
            connect(m_undo.get(), &EditorUndo::edited, m_vector,
                    [this] { m_vector->setValue(QVector3D(qMin(m_vector->value().x(), 5.0f), 2, 3)); });
        type(child<QLineEdit>(*m_vector, "x"), "9");
        type(child<QLineEdit>(*m_vector, "x"), "8");
        QCOMPARE(m_stack->count(), 1);
        m_stack->undo();
        m_stack->redo();
        QCOMPARE(m_vector->value().x(), 5.0f);
        disconnect(refusal);
        connect(m_undo.get(), &EditorUndo::edited, this, [this](QWidget* editor) { m_undo->remove(editor); });
        type(field(), "3");
        QCOMPARE(m_stack->count(), 1);
    }

    void changesInABracketAreOneStepAtItsEnd()
    {
        type(field(), "20");
        m_stack->undo();
        for (const double last : {50.0, 70.0})
        {
            m_undo->beginAct(m_number);
            for (const double value : {55.0, 60.0, last})
            {
                m_number->setValue(value);
                Q_EMIT m_number->valueChanged();
            }
            // Until then what was undone can be redone, and for good if nothing came of it.
            QVERIFY(m_stack->canRedo());
            m_undo->endAct(m_number);
        }
        QCOMPARE(m_stack->count(), 1);
        m_stack->undo();
        QCOMPARE(number(), 50.0);
    }

    void undoKeyBelongsToTheWindowOnceTypingIsCommitted()
    {
        auto* undo = m_stack->createUndoAction(m_window.get());
        undo->setShortcut(QKeySequence::Undo);
        m_window->addAction(undo);
        type(field(), "20");
        QTest::keyClicks(field(), "5");
        QTest::keySequence(field(), QKeySequence::Undo);
        QCOMPARE(number(), 20.0);
        QCOMPARE(field()->text(), QStringLiteral("20"));
        QTest::keySequence(field(), QKeySequence::Undo);
        QCOMPARE(number(), 50.0);
    }

    void stepsOutliveEditorAndUndo()
    {
        type(field(), "20");
        type(child<QLineEdit>(*m_vector, "x"), "2");
        delete m_number;
        m_stack->undo();
        QCOMPARE(m_vector->value().x(), 1.0f);
        m_stack->undo();
        m_stack->redo();
        m_undo.reset();
        m_stack->redo();
        QCOMPARE(m_vector->value().x(), 1.0f);
    }

private:
    QSlider* slider() { return child<QSlider>(*m_number, "slider"); }
    QLineEdit* field() { return child<QLineEdit>(*m_number, "lineEdit"); }
    double number() { return m_number->value().toDouble(); }

    std::optional<WarningWatch> m_warnings;
    std::unique_ptr<QWidget> m_window;
    QSliderEdit* m_number = nullptr;
    QVectorEdit* m_vector = nullptr;
    QCheckBox* m_check = nullptr;
    std::unique_ptr<QUndoStack> m_stack;
    std::unique_ptr<EditorUndo> m_undo;
};

QTEST_MAIN(tst_EditorUndo)
#include "tst_editorundo.moc"
