#include "hostsupport.h"

#include <examples/DerivedEditor/PercentEdit.h>
#include <Orvek/Host/EditorInput.h>
#include <Orvek/Host/EditorUndo.h>

using namespace hostsupport;
using orvek::host::EditorInput;
using orvek::host::EditorUndo;

namespace
{
// A drag by these moves, with a modifier key meanwhile.
int drag(QSlider* slider, int x, const QVector<int>& moves, Qt::MouseButton button = Qt::LeftButton)
{
    QPoint at(x, slider->rect().center().y());
    QTest::mousePress(slider, button, Qt::NoModifier, at);
    for (const int pixels : moves)
    {
        at.rx() += pixels;
        moveMouse(slider, at, button);
        QTest::keyClick(slider, Qt::Key_Shift);
    }
    QTest::mouseRelease(slider, button, Qt::NoModifier, at);
    return at.x();
}

void type(const QWidget* editor, const char* text)
{
    QLineEdit* field = fieldsOf(*editor).first();
    field->setFocus();
    commitText(field, text);
}

// An editor of a host's own, whose value is neither a number nor a text.
class OwnEdit : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QVariant value MEMBER value)
public:
    OwnEdit()
    {
        field.setObjectName(QStringLiteral("lineEdit"));
        connect(&field, &QLineEdit::editingFinished, this, [this] { value = QColor(field.text()); });
        connect(&field, &QLineEdit::editingFinished, this, &OwnEdit::valueChanged);
        connect(&field, &QLineEdit::textEdited, &field, &QLineEdit::setText); // no longer modified then
    }
    QVariant value;
    QLineEdit field{this};
Q_SIGNALS:
    void valueChanged();
};

using Presses = Table<bool, bool>; // live, with the middle button

// A number at 50 of 100 in a window that is followed.
struct Scene
{
    Scene()
    {
        (new QVBoxLayout(&window))->addWidget(number);
        number->setMaximum(100.0);
        number->setShowButtons(true);
        number->setValue(50.0);
        undo->follow(&window);
        window.resize(600, 300);
        showActive(window);
    }
    double value() const { return number->value().toDouble(); }

    QWidget window;
    QSliderEdit* const number = new QSliderEdit;
    QSlider* const slider = child<QSlider>(*number, "slider");
    QLineEdit* const field = child<QLineEdit>(*number, "lineEdit");
    QUndoStack stack;
    EditorUndo* const undo = new EditorUndo(&stack, &stack);
};
} // namespace

class tst_EditorUndo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pressIsOneStep_data()
    {
        const Presses row;
        for (const bool live : {true, false})
            for (const bool middle : {true, false})
                row(live ? middle ? "live, middle button" : "live" : middle ? "middle button" : "plain", live, middle);
    }

    void pressIsOneStep()
    {
        const auto [live, middle] = Presses::current();
        Scene s;
        s.number->setLiveUpdate(live);
        const QSignalSpy edited(s.undo, &EditorUndo::edited);
        const QSignalSpy changed(s.number, &QSliderEdit::valueChanged);
        const int handle = s.slider->width() / 2 + (middle ? 40 : 0);
        const int at = drag(s.slider, handle, {8, 8, 8, 8}, middle ? Qt::MiddleButton : Qt::LeftButton);
        QVERIFY(changed.count() > 1 || (!live && !middle)); // the trap
        QCOMPARE(edited.count() > 2, live);
        const double dragged = s.value();
        QVERIFY(dragged > 50.0);
        drag(s.slider, at, {40, -40});
        drag(s.slider, at, {});
        QCOMPARE(s.stack.count(), 1);
        drag(s.slider, at, {-10, -10});
        QVERIFY(s.value() < dragged);
        QCOMPARE(s.stack.count(), 2);
        for (const double value : {dragged, 50.0})
        {
            s.stack.undo();
            QCOMPARE(s.value(), value);
        }
        QCOMPARE(s.field->text(), QStringLiteral("50"));
        QCOMPARE(s.slider->value(), 500);
    }

    void holdingAButtonIsOneStep()
    {
        Scene s;
        const QSignalSpy changed(s.number, &QSliderEdit::valueChanged);
        auto* increment = child<QPushButton>(*s.number, "increment");
        increment->setAutoRepeat(true);
        int steps = 0;
        for (QWidget* part : {static_cast<QWidget*>(s.slider), static_cast<QWidget*>(increment)})
        {
            const int before = changed.count();
            const QPoint at(4, part->height() / 2); // of the slider its groove
            QTest::mousePress(part, Qt::LeftButton, Qt::NoModifier, at);
            QTRY_VERIFY(changed.count() > before + 3);
            QTest::mouseRelease(part, Qt::LeftButton, Qt::NoModifier, at);
            QTest::mouseClick(part, Qt::LeftButton, Qt::NoModifier, at);
            QCOMPARE(s.stack.count(), steps += 2);
        }
    }

    void quickArrowsAreOneStep()
    {
        for (const char* part : {"slider", "lineEdit"})
        {
            Scene s;
            const EditorInput input(&s.window); // comes later and keeps the keys in fields for itself
            const QSignalSpy changed(s.number, &QSliderEdit::valueChanged);
            auto* target = child<QWidget>(*s.number, part);
            target->setFocus();
            for (int i = 0; i < 20; ++i)
                QTest::keyClick(target, Qt::Key_Up);
            QVERIFY(changed.count() >= 20); // the trap
            QCOMPARE(s.stack.count(), 1);
            s.undo->setRepeatInterval(20);
            QTest::qWait(40);
            QTest::keyClick(target, Qt::Key_Up);
            QCOMPARE(s.stack.count(), 2);
            // Another act between them parts them.
            s.undo->setRepeatInterval(10000);
            for (int i = 0; i < 2; ++i)
                QTest::mouseClick(child<QPushButton>(*s.number, "increment"), Qt::LeftButton);
            QTest::keyClick(target, Qt::Key_Up);
            QCOMPARE(s.stack.count(), 5);
            s.stack.setIndex(0);
            QCOMPARE(s.value(), 50.0);
        }
    }

    void typedIsOneStepAndUntouchedNone_data()
    {
        const Kinds row = everyKind();
        row("per cent", create<QWidget>, create<PercentEdit>);
    }

    void typedIsOneStepAndUntouchedNone()
    {
        const Hosted hosted;
        QWidget* edited = hosted.editor;
        auto* other = new QLineEdit;
        hosted.window->layout()->addWidget(other);
        const bool isText = edited->metaObject()->indexOfProperty("readOnly") >= 0;
        QUndoStack stack;
        EditorUndo undo(&stack);
        const auto visit = [edited, other, field = hosted.fields.first()]
        {
            setOddValue(edited);
            field->setFocus();
            QTest::keyClick(field, Qt::Key_Return);
            other->setFocus();
            field->setFocus(); // armed again if its text was set
            other->setFocus();
        };
        setOddValue(edited);
        const QByteArray odd = bitsOf(edited);
        showActive(*hosted.window);
        visit();
        QCOMPARE(bitsOf(edited) == odd, isText); // the trap
        undo.follow(hosted.window.get());
        undo.setKeepsUntouched(false);
        visit();
        QCOMPARE(stack.count(), isText ? 0 : 1);
        undo.setKeepsUntouched(true);
        stack.clear();
        visit();
        QCOMPARE(bitsOf(edited), odd);
        QCOMPARE(stack.count(), 0);

        type(edited, "1");
        const QByteArray typed = bitsOf(edited);
        QVERIFY(typed != odd);
        QCOMPARE(stack.count(), 1);
        const QSignalSpy changed(edited, SIGNAL(valueChanged()));
        stack.undo();
        QCOMPARE(bitsOf(edited), odd);
        stack.redo();
        QCOMPARE(bitsOf(edited), typed);
        QCOMPARE(changed.count(), 0);
        if (auto* reset = edited->findChild<QPushButton*>(QStringLiteral("reset")); reset && reset->isEnabled())
        {
            QTest::mouseClick(reset, Qt::LeftButton);
            QCOMPARE(stack.count(), 2);
            stack.undo();
            QCOMPARE(bitsOf(edited), typed);
        }
    }

    void valueOfAnyTypeIsFollowedOrRefused()
    {
        Scene s;
        OwnEdit own;
        const auto refuse = [&s](QWidget* widget, const char* reason)
        {
            expectWarning(reason);
            QVERIFY(!s.undo->add(widget));
        };
        refuse(&own, "OwnEdit .* has no property");
        refuse(s.field, "QLineEdit \"lineEdit\" has no signal valueChanged");
        refuse(child<QPushButton>(*s.number, "reset"), "QPushButton .* cannot be checked");
        own.value = QColor(Qt::red);
        QVERIFY(s.undo->add(&own));
        showActive(own);
        for (int i = 0; i < 2; ++i)
            type(&own, "#ff8000");
        QCOMPARE(s.stack.count(), 1);
        s.stack.undo();
        QCOMPARE(own.value.value<QColor>(), QColor(Qt::red));
        s.stack.redo();
        QCOMPARE(own.value.value<QColor>(), QColor(255, 128, 0));
    }

    void followsRowsThatComeAndLeave()
    {
        Panel panel;
        QUndoStack stack;
        EditorUndo undo(&stack);
        undo.follow(&panel.panel);
        showActive(panel.panel);
        QAccordion* fog = panel.addSection(QStringLiteral("Fog"));
        auto* density = Panel::addRow(fog, QStringLiteral("Density"));
        auto* shadows = new QCheckBox(QStringLiteral("&Shadows"));
        Panel::contentsOf(fog)->layout()->addWidget(shadows);
        QCoreApplication::processEvents();
        child<QCheckBox>(*fog, "accordionCheckBox")->click(); // opens it, which is no value
        QCOMPARE(stack.count(), 0);
        shadows->click();
        QCOMPARE(stack.undoText(), QStringLiteral("Change of Shadows"));
        stack.undo();
        QVERIFY(!shadows->isChecked());
        type(density, "0.5");
        QCOMPARE(stack.undoText(), QStringLiteral("Change of Density"));
        undo.remove(density);
        type(density, "0.6");
        QVERIFY(undo.add(density));
        density->setParent(nullptr);
        type(density, "0.7");
        QCOMPARE(stack.count(), 1);
        delete density;
        stack.undo();
        stack.redo();
    }

    void hostSetsStartContextAndResult()
    {
        Scene s;
        QVector<int> contexts;
        connect(s.undo, &EditorUndo::aboutToRestore, this,
                [&contexts](QWidget*, const QVariant& context) { contexts << context.toInt(); });
        connect(s.undo, &EditorUndo::edited, this, [&s] { s.number->setValue(qMin(s.value(), 60.0)); });
        type(s.number, "20");
        s.undo->setContext(7);
        s.number->setValue(30.0);
        type(s.number, "90"); // refused
        type(s.number, "80");
        QCOMPARE(s.stack.count(), 2);
        for (const double value : {30.0, 50.0})
        {
            s.stack.undo();
            QCOMPARE(s.value(), value);
        }
        QCOMPARE(contexts, (QVector<int>{7, 0}));
        s.number->setValue(55.0);
        s.undo->reread();
        s.number->on_reset_clicked(); // no input at all
        s.stack.undo();
        QCOMPARE(s.value(), 55.0);
        connect(s.undo, &EditorUndo::edited, this, [&s](QWidget* editor) { s.undo->remove(editor); });
        type(s.number, "40");
        QCOMPARE(s.stack.count(), 1);
        delete s.undo;
        s.stack.redo();
        QCOMPARE(s.value(), 40.0);
    }

    void undoKeyGoesToTheWindowOnceTypingIsCommitted()
    {
        Scene s;
        auto* action = s.stack.createUndoAction(&s.window);
        action->setShortcut(QKeySequence::Undo);
        s.window.addAction(action);
        type(s.number, "20");
        s.undo->setPassesUndoKeys(false);
        QTest::keySequence(s.field, QKeySequence::Undo);
        QCOMPARE(s.value(), 20.0); // the trap
        s.undo->setPassesUndoKeys(true);
        QTest::keyClicks(s.field, "5");
        for (const double value : {20.0, 50.0})
        {
            QTest::keySequence(s.field, QKeySequence::Undo);
            QCOMPARE(s.value(), value);
            QCOMPARE(s.field->text(), QString::number(value));
        }
    }
};

QTEST_MAIN(tst_EditorUndo)
#include "tst_editorundo.moc"
