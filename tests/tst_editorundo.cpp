#include "testsupport.h"

#include <examples/SceneEditor/EditorUndo.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QColourEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QFileEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QIntSliderEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QLabelEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QSliderEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QVectorEdit.h>

#include <QtWidgets/QAction>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSlider>
#include <QtWidgets/QStyleOptionSlider>
#include <QtWidgets/QUndoStack>
#include <QtWidgets/QVBoxLayout>

using sceneeditor::EditorUndo;

namespace
{
// The mouse on a slider's handle, with moves that QTest would send without the button.
class HandleDrag
{
public:
    explicit HandleDrag(QSlider* slider) : m_slider(slider)
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
        QTest::mousePress(m_slider, Qt::LeftButton, Qt::NoModifier, m_position);
    }

    void moveBy(int pixels)
    {
        m_position.rx() += pixels;
        QMouseEvent move(QEvent::MouseMove, m_position, m_slider->mapToGlobal(m_position), Qt::NoButton, Qt::LeftButton,
                         Qt::NoModifier);
        QCoreApplication::sendEvent(m_slider, &move);
    }

    void release() { QTest::mouseRelease(m_slider, Qt::LeftButton, Qt::NoModifier, m_position); }

private:
    QSlider* const m_slider;
    QPoint m_position;
};
} // namespace

class tst_EditorUndo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_window = new QWidget;
        auto* rows = new QVBoxLayout(m_window);
        const auto add = [rows](auto* editor)
        {
            rows->addWidget(editor);
            return editor;
        };
        m_number = add(new QSliderEdit);
        m_number->setMaximum(100.0);
        m_number->setDefaultValue(10.0);
        m_number->setShowButtons(true);
        m_number->setValue(50.0);
        m_count = add(new QIntSliderEdit);
        m_count->setMaximum(2);
        m_count->setEnums({QStringLiteral("None"), QStringLiteral("Some"), QStringLiteral("All")});
        m_count->setValue(2);
        m_vector = add(new QVectorEdit);
        m_vector->setValue(QVector3D(1.0f, 2.0f, 3.0f));
        m_colour = add(new QColourEdit);
        m_colour->setColour(0.25, 0.5, 0.75, 1.0);
        m_text = add(new QLabelEdit);
        m_text->setValue(QStringLiteral("first"));
        m_file = add(new QFileEdit);
        m_file->setFilename(QStringLiteral("first.obj"));
        m_check = add(new QCheckBox(QStringLiteral("Shadows")));
        m_stack = new QUndoStack;
        m_undo = new EditorUndo(m_stack);
        for (QWidget* editor :
             std::initializer_list<QWidget*>{m_number, m_count, m_vector, m_colour, m_text, m_file, m_check})
            m_undo->add(editor);
        m_window->resize(600, 400);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window));
        QApplication::setActiveWindow(m_window);
    }

    void cleanup()
    {
        delete m_undo;
        delete m_stack;
        delete m_window;
        m_undo = nullptr;
        m_stack = nullptr;
        m_window = nullptr;
    }

    void dragIsOneStep_data()
    {
        QTest::addColumn<bool>("live");
        QTest::addColumn<bool>("keepDown");
        QTest::newRow("live") << true << false;
        QTest::newRow("on release") << false << false;
    }

    void dragIsOneStep()
    {
        QFETCH(bool, live);
        m_number->setLiveUpdate(live);
        const QSignalSpy edited(m_undo, &EditorUndo::edited);
        HandleDrag drag(slider());
        for (int i = 0; i < 5; ++i)
            drag.moveBy(8);
        QCOMPARE(edited.count() > 1, live);
        drag.release();
        const double dragged = m_number->value().toDouble();
        QVERIFY(dragged > 50.0);
        QCOMPARE(m_stack->count(), 1);

        // A second drag is a second step, also when it starts where the first one ended.
        HandleDrag second(slider());
        second.moveBy(-20);
        second.release();
        QCOMPARE(m_stack->count(), 2);

        const QSignalSpy changed(m_number, &QSliderEdit::valueChanged);
        m_stack->undo();
        QCOMPARE(m_number->value().toDouble(), dragged);
        m_stack->undo();
        QCOMPARE(m_number->value().toDouble(), 50.0);
        QCOMPARE(child<QLineEdit>(*m_number, "lineEdit")->text(), QStringLiteral("50"));
        QCOMPARE(slider()->value(), 500);
        m_stack->redo();
        QCOMPARE(m_number->value().toDouble(), dragged);
        QCOMPARE(changed.count(), 0);
    }

    void dragThatChangesNothingIsNoStep_data()
    {
        dragIsOneStep_data();
        QTest::newRow("press only") << false << true;
        QTest::newRow("press only, live") << true << true;
    }

    void dragThatChangesNothingIsNoStep()
    {
        QFETCH(bool, live);
        QFETCH(bool, keepDown);
        m_number->setLiveUpdate(live);
        // Onto a pixel, from where the handle can come back to the same value.
        HandleDrag first(slider());
        first.moveBy(20);
        first.release();
        m_stack->clear();
        const double start = m_number->value().toDouble();

        HandleDrag drag(slider());
        if (!keepDown)
        {
            drag.moveBy(40);
            drag.moveBy(-40);
        }
        drag.release();
        QCOMPARE(m_number->value().toDouble(), start);
        QCOMPARE(m_stack->count(), 0);
        // What follows is not taken for a part of the drag.
        type(m_number, "lineEdit", "60");
        type(m_number, "lineEdit", "70");
        QCOMPARE(m_stack->count(), 2);
    }

    void undoDuringADragTakesBackTheDrag()
    {
        m_number->setLiveUpdate(true);
        type(m_number, "lineEdit", "40");
        HandleDrag drag(slider());
        drag.moveBy(30);
        m_stack->undo();
        QCOMPARE(m_number->value().toDouble(), 40.0);
        drag.moveBy(10);
        drag.release();
        const double dragged = m_number->value().toDouble();
        m_stack->undo();
        QCOMPARE(m_number->value().toDouble(), 40.0);
        m_stack->redo();
        QCOMPARE(m_number->value().toDouble(), dragged);
    }

    void eachActIsOneStep_data()
    {
        QTest::addColumn<QString>("act");
        for (const char* act : {"slider typed", "slider typed beyond", "slider step", "slider key", "slider reset",
                                "names by key", "vector typed", "vector reset", "colour typed", "text typed",
                                "text reset", "file typed", "file reset", "check box"})
            QTest::newRow(act) << QString::fromLatin1(act);
    }

    void eachActIsOneStep()
    {
        QFETCH(QString, act);
        const auto texts = [this]
        {
            QStringList all;
            const auto fields = m_window->findChildren<QLineEdit*>();
            for (const QLineEdit* field : fields)
                all << field->text();
            const auto sliders = m_window->findChildren<QSlider*>();
            for (const QSlider* each : sliders)
                all << QString::number(each->value());
            return all << QString::number(m_check->isChecked()) << QString::number(m_colour->colour()[1]);
        };
        // The colour's fields start empty, so they are made to show the colour as a host would.
        const double* component = m_colour->colour();
        for (const char* field : {"red", "green", "blue", "alpha"})
            child<QLineEdit>(*m_colour, field)->setText(QString::number(*component++));
        m_undo->reread();
        const QStringList before = texts();

        if (act == QLatin1String("slider typed"))
            type(m_number, "lineEdit", "12.5");
        else if (act == QLatin1String("slider typed beyond"))
            type(m_number, "lineEdit", "1e300");
        else if (act == QLatin1String("slider step"))
            QTest::mouseClick(child<QPushButton>(*m_number, "increment"), Qt::LeftButton);
        else if (act == QLatin1String("slider key"))
            QTest::keyClick(slider(), Qt::Key_Right);
        else if (act == QLatin1String("slider reset"))
            QTest::mouseClick(child<QPushButton>(*m_number, "reset"), Qt::LeftButton);
        else if (act == QLatin1String("names by key"))
            QTest::keyClick(child<QSlider>(*m_count, "slider"), Qt::Key_Left);
        else if (act == QLatin1String("vector typed"))
            type(m_vector, "y", "-4");
        else if (act == QLatin1String("vector reset"))
            QTest::mouseClick(child<QPushButton>(*m_vector, "reset"), Qt::LeftButton);
        else if (act == QLatin1String("colour typed"))
            type(m_colour, "green", "0.125");
        else if (act == QLatin1String("text typed"))
            type(m_text, "lineEdit", "second");
        else if (act == QLatin1String("text reset"))
            QTest::mouseClick(child<QPushButton>(*m_text, "reset"), Qt::LeftButton);
        else if (act == QLatin1String("file typed"))
            type(m_file, "lineEdit", "second.obj");
        else if (act == QLatin1String("file reset"))
            QTest::mouseClick(child<QPushButton>(*m_file, "reset"), Qt::LeftButton);
        else
            QTest::mouseClick(m_check, Qt::LeftButton, Qt::NoModifier, QPoint(8, m_check->height() / 2));

        const QStringList after = texts();
        QVERIFY(after != before);
        QCOMPARE(m_stack->count(), 1);
        const QSignalSpy edited(m_undo, &EditorUndo::edited);
        m_stack->undo();
        QCOMPARE(texts(), before);
        m_stack->redo();
        QCOMPARE(edited.count(), 2);
        m_stack->undo();
        QCOMPARE(texts(), before);
        QCOMPARE(m_stack->count(), 1);
    }

    void confirmedFieldIsNoStepAndKeepsAllDigits_data()
    {
        QTest::addColumn<QString>("editor");
        for (const char* editor : {"number", "names", "vector", "text", "file"})
            QTest::newRow(editor) << QString::fromLatin1(editor);
    }

    void confirmedFieldIsNoStepAndKeepsAllDigits()
    {
        QFETCH(QString, editor);
        m_number->setValue(100.0 / 3.0);
        m_vector->setValue(QVector3D(1.0f / 3.0f, 0.0f, 0.0f));
        m_undo->reread();
        QWidget* widget = editor == QLatin1String("number")   ? static_cast<QWidget*>(m_number)
                          : editor == QLatin1String("names")  ? static_cast<QWidget*>(m_count)
                          : editor == QLatin1String("vector") ? static_cast<QWidget*>(m_vector)
                          : editor == QLatin1String("text")   ? static_cast<QWidget*>(m_text)
                                                              : static_cast<QWidget*>(m_file);
        const char* field = editor == QLatin1String("vector") ? "x" : "lineEdit";
        type(widget, field, "", false);
        child<QLineEdit>(*m_text, "lineEdit")->setFocus();
        m_check->setFocus();
        QCOMPARE(m_stack->count(), 0);
        QCOMPARE(m_number->value().toDouble(), 100.0 / 3.0);
        QCOMPARE(m_vector->value().x(), 1.0f / 3.0f);
        QCOMPARE(m_count->value().toInt(), 2);
    }

    void wheelDoesNothing()
    {
        const QPoint centre = slider()->rect().center();
        QWheelEvent wheel(centre, slider()->mapToGlobal(centre), QPoint(), QPoint(0, 120), Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(slider(), &wheel);
        QCOMPARE(m_number->value().toDouble(), 50.0);
        QCOMPARE(m_stack->count(), 0);
    }

    void hostSetsTheNextStart()
    {
        type(m_number, "lineEdit", "20");
        m_undo->setContext(7);
        m_number->setValue(30.0);
        m_undo->reread();
        type(m_number, "lineEdit", "40");
        QCOMPARE(m_stack->count(), 2);
        QVector<int> contexts;
        connect(m_undo, &EditorUndo::aboutToRestore, this,
                [&contexts](QWidget*, const QVariant& context) { contexts << context.toInt(); });
        m_stack->undo();
        QCOMPARE(m_number->value().toDouble(), 30.0);
        m_stack->undo();
        QCOMPARE(m_number->value().toDouble(), 50.0);
        QCOMPARE(contexts, (QVector<int>{7, 0}));
    }

    void rereadingLeavesUnfinishedTypingAlone()
    {
        auto* field = child<QLineEdit>(*m_number, "lineEdit");
        field->setFocus();
        field->selectAll();
        QTest::keyClicks(field, "20");
        m_undo->reread();
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(m_number->value().toDouble(), 20.0);
        QCOMPARE(m_stack->count(), 1);
    }

    void hostCanRefuseAValue()
    {
        connect(m_undo, &EditorUndo::edited, m_vector,
                [this]
                {
                    QVector3D value = m_vector->value();
                    value.setX(qMin(value.x(), 5.0f));
                    m_vector->setValue(value);
                });
        type(m_vector, "x", "9");
        QCOMPARE(m_stack->count(), 1);
        type(m_vector, "x", "8");
        QCOMPARE(m_stack->count(), 1);
        m_stack->undo();
        m_stack->redo();
        QCOMPARE(m_vector->value().x(), 5.0f);
    }

    void undoKeyBelongsToTheWindowOnceTypingIsTakenOver()
    {
        auto* undo = m_stack->createUndoAction(m_window);
        undo->setShortcut(QKeySequence::Undo);
        m_window->addAction(undo);
        auto* field = child<QLineEdit>(*m_number, "lineEdit");
        type(m_number, "lineEdit", "20");
        QTest::keyClicks(field, "5");
        QTest::keySequence(field, QKeySequence::Undo);
        QCOMPARE(m_number->value().toDouble(), 20.0);
        QCOMPARE(field->text(), QStringLiteral("20"));
        QTest::keySequence(field, QKeySequence::Undo);
        QCOMPARE(m_number->value().toDouble(), 50.0);
    }

    void stepsOutliveEditorAndUndo()
    {
        type(m_number, "lineEdit", "20");
        type(m_vector, "x", "2");
        delete m_number;
        m_stack->undo();
        QCOMPARE(m_vector->value().x(), 1.0f);
        m_stack->undo();
        m_stack->redo();
        delete m_undo;
        m_undo = nullptr;
        m_stack->redo();
        QCOMPARE(m_vector->value().x(), 1.0f);
    }

private:
    QSlider* slider() { return child<QSlider>(*m_number, "slider"); }
    void type(QWidget* editor, const char* field, const char* text, bool clear = true);

    QWidget* m_window = nullptr;
    QSliderEdit* m_number = nullptr;
    QIntSliderEdit* m_count = nullptr;
    QVectorEdit* m_vector = nullptr;
    QColourEdit* m_colour = nullptr;
    QLabelEdit* m_text = nullptr;
    QFileEdit* m_file = nullptr;
    QCheckBox* m_check = nullptr;
    QUndoStack* m_stack = nullptr;
    EditorUndo* m_undo = nullptr;
};

void tst_EditorUndo::type(QWidget* editor, const char* field, const char* text, bool clear)
{
    auto* line = child<QLineEdit>(*editor, field);
    line->setFocus();
    if (clear)
        line->selectAll();
    QTest::keyClicks(line, QLatin1String(text));
    QTest::keyClick(line, Qt::Key_Return);
}

QTEST_MAIN(tst_EditorUndo)
#include "tst_editorundo.moc"
