#include "hostsupport.h"

#include <Orvek/Host/ColourButton.h>
#include <Orvek/Host/EditorUndo.h>

using namespace hostsupport;
using orvek::host::ColourButton;
using orvek::host::EditorUndo;

namespace
{
using Choices = Table<Create, Create, bool>; // window, editor, whether it is accepted

QVector<double> valueOf(const QWidget* editor)
{
    if (const auto* colour = qobject_cast<const QColourEdit*>(editor))
        return {colour->colour()[0], colour->colour()[1], colour->colour()[2], colour->colour()[3]};
    const QVector3D value = editor->property("value").value<QVector3D>();
    return {double(value.x()), double(value.y()), double(value.z())};
}

} // namespace

class tst_ColourButton : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void choosesLiveInOneStep_data()
    {
        const Choices row;
        for (const bool accept : {true, false})
        {
            row(accept ? "vector, accepted" : "vector, rejected", create<QWidget>, create<QVectorEdit>, accept);
            row(accept ? "colour, accepted" : "colour, rejected", create<QDialog>, create<QColourEdit>, accept);
        }
    }

    void choosesLiveInOneStep()
    {
        const auto [window, editor, accept] = Choices::current();
        const Hosted hosted({window, editor});
        const QVector<QLineEdit*> fields = hosted.fields;
        QWidget* edited = hosted.editor;
        edited->setWindowTitle(QStringLiteral("Glow"));
        auto* button = ColourButton::addTo(edited);
        QCOMPARE(button->accessibleName(), QStringLiteral("Glow, colour"));
        QUndoStack stack;
        EditorUndo undo(&stack);
        undo.follow(hosted.window.get());
        showActive(*hosted.window);
        // A step that was undone can be redone until something comes of the dialog.
        fields.first()->setFocus();
        commitText(fields.first(), "1");
        stack.undo();
        edited->setProperty("value", QVector3D(1.0f / 3.0f, 0.5f, 2.5f)); // brighter than a screen
        if (auto* colourEdit = qobject_cast<QColourEdit*>(edited))
            colourEdit->setColour(1.0 / 3.0, 0.5, 2.5, 0.25);
        const QVector<double> before = valueOf(edited);

        // By the keyboard, and by Tab from the last field.
        fields.last()->setFocus();
        for (int i = 0; i < 3 && !button->hasFocus(); ++i)
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        const QString text = fields.last()->text();
        const QSignalSpy changed(edited, SIGNAL(valueChanged()));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        QColorDialog* dialog = button->dialog();
        QVERIFY(dialog && dialog->isVisible());
        QCOMPARE(dialog->testOption(QColorDialog::ShowAlphaChannel), fields.size() == 4);
        QColor colour = dialog->currentColor();
        QCOMPARE(colour.blue(), 255);
        for (const int green : {10, 20, 51})
        {
            colour.setGreen(green);
            dialog->setCurrentColor(colour);
        }
        QCOMPARE(changed.count(), 3); // the trap: each is a change
        QVector<double> live = before;
        live[1] = fields.size() == 4 ? colour.greenF() : double(float(colour.greenF()));
        QCOMPARE(valueOf(edited), live);
        QVERIFY(stack.canRedo());

        QTest::keyClick(dialog, accept ? Qt::Key_Return : Qt::Key_Escape);
        QVERIFY(!dialog->isVisible() && !button->dialog());
        QCOMPARE(valueOf(edited), accept ? live : before);
        QCOMPARE(changed.count(), accept ? 3 : 4);
        QCOMPARE(stack.canRedo(), !accept);
        QCOMPARE(stack.index(), accept ? 1 : 0);
        stack.undo();
        QCOMPARE(valueOf(edited), before);
        QVERIFY(accept || fields.last()->text() == text);
    }

    void showsTheColourHoweverItIsSet()
    {
        QColourEdit edited;
        auto* button = ColourButton::addTo(&edited);
        showActive(edited);
        struct Paints : QObject
        {
            bool eventFilter(QObject*, QEvent* event) override
            {
                count += event->type() == QEvent::Paint || event->type() == QEvent::UpdateRequest ? 1 : 0;
                return false;
            }
            int count = 0;
        } paints;
        button->installEventFilter(&paints);
        const auto pixel = [button](int dx)
        {
            const QImage image = button->grab().toImage();
            return image.pixelColor(image.rect().center() + QPoint(dx, 0));
        };
        edited.setColour(1.0, 0.0, 0.0, 1.0);
        QTRY_VERIFY(paints.count > 0);
        QCOMPARE(pixel(0), QColor(Qt::red));
        edited.setColour(1.0, 0.0, 0.0, 0.5);
        QVERIFY(pixel(0) != pixel(4)); // the checks
        edited.setShowAlpha(false);
        QCOMPARE(pixel(0), QColor(Qt::red));
        // Nothing happens while nothing changes, even without a colour or anything to see of it.
        edited.setColour(std::numeric_limits<double>::quiet_NaN(), 0.0, 0.0, 1.0);
        button->setMask(QRegion(-1, -1, 1, 1));
        QTest::qWait(50);
        paints.count = 0;
        edited.installEventFilter(&paints);
        QTest::qWait(50);
        QCOMPARE(paints.count, 0);
        QVectorEdit vector;
        ColourButton::addTo(&vector)->installEventFilter(&paints);
        showActive(vector);
        QTest::qWait(50);
        paints.count = 0;
        vector.setValue(QVector3D(1.0f, 0.0f, 0.0f));
        QTRY_VERIFY(paints.count > 0);
    }

    void takesTheEmptyPlaceOfTheUnits()
    {
        QVectorEdit edit;
        edit.resize(500, 40);
        showActive(edit);
        const QPoint reset = child<QPushButton>(edit, "reset")->pos();
        ColourButton* button = ColourButton::addTo(&edit);
        QCoreApplication::processEvents();
        auto* units = child<QLabel>(edit, "units");
        QVERIFY(button->isVisible() && units->rect().contains(button->geometry()) && button->width() >= 16);
        QCOMPARE(child<QPushButton>(edit, "reset")->pos(), reset);
        delete button;
        QVERIFY(!units->layout());
        edit.setUnits(QStringLiteral("nits"));
        QCOMPARE(ColourButton::addTo(&edit)->parentWidget(), &edit);
    }

    void survivesWhatGoes()
    {
        QSliderEdit number;
        QVERIFY(!ColourButton::addTo(&number) && !ColourButton(&number).isEnabled());
        QWidget window;
        auto* edit = new QVectorEdit(&window);
        showActive(window);
        auto* button = new ColourButton(edit, &window);
        button->openDialog();
        showActive(window);
        button->openDialog(); // comes back to the front
        QTRY_COMPARE(QApplication::activeWindow(), button->dialog());
        button->dialog()->setCurrentColor(Qt::red);
        delete button;
        QCOMPARE(edit->value(), QVector3D());
        button = new ColourButton(edit, &window);
        button->openDialog();
        // A host deletes the row for the colour that it was given.
        connect(edit, &QVectorEdit::valueChanged, &window, [&edit] { delete std::exchange(edit, nullptr); });
        button->dialog()->setCurrentColor(Qt::green);
        QVERIFY(!edit && !button->isEnabled() && !button->editor() && !button->dialog());
    }
};

QTEST_MAIN(tst_ColourButton)
#include "tst_colourbutton.moc"
