#include "hostsupport.h"

#include <Orvek/Host/ColourButton.h>
#include <Orvek/Host/EditorUndo.h>

#include <QtWidgets/QColorDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QUndoStack>

using namespace hostsupport;
using orvek::host::ColourButton;
using orvek::host::EditorUndo;

namespace
{
constexpr double third = 1.0 / 3.0;

class EventCount : public QObject
{
public:
    EventCount(QWidget* widget, QEvent::Type type) : m_type(type) { widget->installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == m_type ? 1 : 0;
        return false;
    }
    int count = 0;

private:
    const QEvent::Type m_type;
};

QVector<double> valueOf(const QWidget* editor)
{
    if (const auto* colour = qobject_cast<const QColourEdit*>(editor))
        return {colour->colour()[0], colour->colour()[1], colour->colour()[2], colour->colour()[3]};
    const QVector3D value = editor->property("value").value<QVector3D>();
    return {double(value.x()), double(value.y()), double(value.z())};
}

void setThird(QWidget* editor, double green = 0.5)
{
    if (auto* colour = qobject_cast<QColourEdit*>(editor))
        colour->setColour(third, green, 2.5, 0.25); // brighter than a screen
    else
        editor->setProperty("value", QVector3D(float(third), float(green), 2.5f));
}
} // namespace

class tst_ColourButton : public WatchedTest
{
    Q_OBJECT

private Q_SLOTS:
    void choosesLiveInOneStep_data()
    {
        QTest::addColumn<Create>("window");
        QTest::addColumn<Create>("editor");
        QTest::addColumn<bool>("accept");
        for (const Kind& window : windowKinds)
            for (const Kind& editor : {editorKinds[2], editorKinds[3]})
                for (const bool accept : {true, false})
                    QTest::addRow("%s in %s, accept %d", editor.name, window.name, accept)
                        << window.create << editor.create << accept;
    }

    void choosesLiveInOneStep()
    {
        QFETCH(Create, window);
        QFETCH(Create, editor);
        QFETCH(bool, accept);
        const std::unique_ptr<QWidget> root(window());
        auto* rows = new QVBoxLayout(root.get());
        QWidget* edited = editor();
        edited->setWindowTitle(QStringLiteral("Glow"));
        rows->addWidget(edited);
        auto* button = ColourButton::addTo(edited);
        QCOMPARE(button->accessibleName(), QStringLiteral("Glow, colour"));
        QUndoStack stack;
        EditorUndo undo(&stack);
        undo.follow(root.get());
        showActive(*root);
        // A step that was undone stays until something else comes of it.
        setThird(edited, 0.75);
        QLineEdit* first = fieldsOf(*edited).first();
        first->setFocus();
        first->selectAll();
        QTest::keyClick(first, Qt::Key_1);
        QTest::keyClick(first, Qt::Key_Return);
        stack.undo();
        setThird(edited);
        const QVector<double> before = valueOf(edited);

        // By the keyboard, and by Tab from the last field.
        fieldsOf(*edited).last()->setFocus();
        for (int i = 0; i < 3 && !button->hasFocus(); ++i)
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QVERIFY(button->hasFocus());
        const QSignalSpy changed(edited, SIGNAL(valueChanged()));
        const QStringList texts = [edited]
        {
            QStringList all;
            for (const QLineEdit* field : fieldsOf(*edited))
                all << field->text();
            return all;
        }();
        QTest::keyClick(button, Qt::Key_Space);
        QColorDialog* dialog = button->dialog();
        QVERIFY(dialog && dialog->isVisible());
        QCOMPARE(dialog->testOption(QColorDialog::ShowAlphaChannel), before.size() == 4);
        QColor colour = dialog->currentColor();
        QCOMPARE(colour.blue(), 255);
        for (const int green : {10, 20, 51})
        {
            colour.setGreen(green);
            dialog->setCurrentColor(colour);
        }
        QCOMPARE(changed.count(), 3);
        QVector<double> live = before;
        live[1] = before.size() == 4 ? QColor(0, 51, 0).greenF() : double(float(QColor(0, 51, 0).greenF()));
        QCOMPARE(valueOf(edited), live);
        QVERIFY(stack.canRedo());

        QTest::keyClick(dialog, accept ? Qt::Key_Return : Qt::Key_Escape);
        QVERIFY(!dialog->isVisible());
        QCOMPARE(valueOf(edited), accept ? live : before);
        QCOMPARE(changed.count(), accept ? 3 : 4);
        QCOMPARE(stack.canRedo(), !accept);
        QCOMPARE(stack.index(), accept ? 1 : 0);
        stack.undo();
        QCOMPARE(valueOf(edited), before);
        if (!accept)
            for (int i = 0; i < texts.size(); ++i)
                QCOMPARE(fieldsOf(*edited)[i]->text(), texts[i]);
        QVERIFY(!button->dialog());
    }

    void showsTheColourHoweverItIsSet_data()
    {
        QTest::addColumn<Create>("editor");
        QTest::newRow("vector") << editorKinds[2].create;
        QTest::newRow("colour") << editorKinds[3].create;
    }

    void showsTheColourHoweverItIsSet()
    {
        QFETCH(Create, editor);
        const std::unique_ptr<QWidget> edited(editor());
        auto* button = ColourButton::addTo(edited.get());
        auto* colourEdit = qobject_cast<QColourEdit*>(edited.get());
        showActive(*edited);
        EventCount paints(button, QEvent::Paint);
        const auto set = [&](double red, double alpha)
        {
            if (colourEdit)
                colourEdit->setColour(red, 0.0, 0.0, alpha);
            else
                edited->setProperty("value", QVector3D(float(red), 0.0f, 0.0f));
        };
        const auto pixel = [button](int dx)
        { return button->grab().toImage().pixelColor(button->grab().toImage().rect().center() + QPoint(dx, 0)); };
        set(1.0, 1.0);
        QTRY_VERIFY(paints.count > 0);
        QCOMPARE(pixel(0), QColor(Qt::red));
        set(1.0, 0.5);
        if (colourEdit)
        {
            const QSet<QRgb> checks = {pixel(0).rgb(), pixel(1).rgb(), pixel(2).rgb(), pixel(3).rgb(), pixel(4).rgb()};
            QVERIFY(checks.size() >= 2);
            QCOMPARE(button->colour().alpha(), 128);
            colourEdit->setShowAlpha(false);
        }
        QCOMPARE(pixel(0), QColor(Qt::red));
        // Nothing happens while nothing changes, also if there is no colour, or nothing to see of it.
        set(std::numeric_limits<double>::quiet_NaN(), 1.0);
        button->setMask(QRegion(-1, -1, 1, 1));
        QTest::qWait(50);
        EventCount requests(edited.get(), QEvent::UpdateRequest);
        QTest::qWait(50);
        QCOMPARE(requests.count, 0);
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
        QCOMPARE(button->parentWidget(), units);
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
        auto* button = new ColourButton(edit, &window);
        showActive(window);
        edit->setValue(QVector3D(0.5f, 0.5f, 0.5f));
        QTest::mouseClick(button, Qt::LeftButton);
        button->dialog()->setCurrentColor(Qt::red);
        auto* second = new ColourButton(edit, &window);
        second->openDialog();
        delete second;
        delete button;
        QCOMPARE(edit->value(), QVector3D(0.5f, 0.5f, 0.5f));
        button = new ColourButton(edit, &window);
        button->openDialog();
        // A host deletes the row for the colour that it was given.
        connect(edit, &QVectorEdit::valueChanged, &window, [&edit] { delete std::exchange(edit, nullptr); });
        button->dialog()->setCurrentColor(Qt::green);
        QVERIFY(!edit && !button->isEnabled() && !button->editor());
        QTRY_VERIFY(!button->dialog());
    }
};

QTEST_MAIN(tst_ColourButton)
#include "tst_colourbutton.moc"
