#include "hostsupport.h"

#include <Orvek/Host/ChoiceButton.h>
#include <Orvek/Host/EditorUndo.h>

#include <QtWidgets/QAbstractItemView>

using namespace hostsupport;
using orvek::host::ChoiceButton;
using orvek::host::EditorUndo;

namespace
{
// A list in place of slider and field.
struct Row
{
    explicit Row(Create create) : window(create())
    {
        edit->setTitle(QStringLiteral("Quality"));
        edit->setMaximum(3);
        edit->setEnums({"None", "Low", "Medium", "High"});
        (new QVBoxLayout(window.get()))->addWidget(edit);
        button = ChoiceButton::addTo(edit);
        showActive(*window);
    }
    QStringList entries() const
    {
        QStringList texts;
        for (int i = 0; i < button->count(); ++i)
            texts << button->itemText(i);
        return texts;
    }

    const std::unique_ptr<QWidget> window;
    QIntSliderEdit* const edit = new QIntSliderEdit;
    QSlider* const slider = child<QSlider>(*edit, "slider");
    QLineEdit* const field = child<QLineEdit>(*edit, "lineEdit");
    ChoiceButton* button = nullptr;
};
} // namespace

class tst_ChoiceButton : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void choiceIsOneChange()
    {
        for (const Kind& window : windowKinds)
        {
            const Row r(window.create);
            QUndoStack stack;
            EditorUndo undo(&stack);
            undo.follow(r.window.get());
            const QSignalSpy started(r.edit, &QIntSliderEdit::startedEdit);
            QVector<int> values;
            connect(r.edit, &QIntSliderEdit::valueChanged, this, [&] { values << r.edit->value().toInt(); });
            r.edit->setValue(1);
            r.button->setFocus();
            for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_Up})
                QTest::keyClick(r.button, key);
            QCOMPARE(values, (QVector<int>{2, 1, 0}));
            QCOMPARE(stack.count(), 1);

            // From the open list; the same once more is no change.
            for (int i = 0; i < 2; ++i)
            {
                QTest::mouseClick(r.button, Qt::LeftButton);
                QAbstractItemView* list = r.button->view();
                QTRY_VERIFY(list->isVisible());
                r.edit->setValue(r.edit->value()); // a push meanwhile
                QTest::qWait(QApplication::doubleClickInterval() +
                             50); // a quick click is taken for that of its opening
                const QPoint at = list->visualRect(list->model()->index(3, 0)).center();
                QTest::mouseMove(list->viewport(), at);
                QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, at);
                QTRY_VERIFY(!list->isVisible());
            }
            QCOMPARE(values, (QVector<int>{2, 1, 0, 3}));
            QCOMPARE(started.count(), 0);
            QCOMPARE(stack.count(), 2);
            // Closed by the system, as when another window comes to the front.
            QTest::mouseClick(r.button, Qt::LeftButton);
            QTRY_VERIFY(QApplication::activePopupWidget());
            QApplication::activePopupWidget()->close();
            for (const int value : {0, 1})
            {
                stack.undo();
                QCOMPARE(r.edit->value().toInt(), value);
                QTRY_COMPARE(r.button->currentIndex(), value);
            }
        }
    }

    void offersWhatNamesAndRangeSay()
    {
        const Row r(create<QWidget>);
        r.edit->setMinimum(1);
        r.edit->setMaximum(9);
        r.edit->setValue(7);
        QTRY_COMPARE(r.button->currentText(), QStringLiteral("7"));
        r.edit->setValue(8);
        QTRY_COMPARE(r.entries(), (QStringList{"Low", "Medium", "High", "8"}));
        r.edit->setValue(3);
        QTRY_COMPARE(r.entries(), (QStringList{"Low", "Medium", "High"}));
        r.edit->setEnums({"Off", "On"});
        QTRY_COMPARE(r.entries(), (QStringList{"On", "3"}));
        r.edit->setEnums({"0", "1", "2", "3", "4"});
        r.edit->setPowerOfTwo(true);
        QTRY_COMPARE(r.entries(), (QStringList{"1", "2", "4", "3"}));
        // A host that refuses a choice.
        connect(r.edit, &QIntSliderEdit::valueChanged, r.edit, [&r] { r.edit->setValue(1); });
        QTest::keyClick(r.button, Qt::Key_Up);
        QCOMPARE(r.button->currentText(), QStringLiteral("1"));
    }

    void wheelChoosesNothing()
    {
        const Row r(create<QWidget>);
        QComboBox plain;
        plain.addItems(r.edit->enums());
        r.button->setFocus();
        for (QComboBox* box : {&plain, static_cast<QComboBox*>(r.button)})
        {
            const QPoint centre = box->rect().center();
            QWheelEvent wheel(centre, box->mapToGlobal(centre), QPoint(), QPoint(0, -120), Qt::NoButton, Qt::NoModifier,
                              Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(box, &wheel);
            QCOMPARE(wheel.isAccepted(), box == &plain);
            QCOMPARE(box->currentIndex(), box == &plain ? 1 : 0); // the trap
        }
        QCOMPARE(r.edit->value().toInt(), 0);
    }

    void takesThePlaceOfTheSliderAndGivesItBack()
    {
        const Row r(create<QWidget>);
        QVERIFY(!r.slider->isVisible() && !r.field->isVisible() && r.button->isVisible());
        const QRect place = r.button->geometry();
        r.edit->setTitle(QStringLiteral("Detail"));
        QCOMPARE(r.button->accessibleName(), QStringLiteral("Detail, choice"));
        delete r.button;
        QCoreApplication::processEvents();
        QVERIFY(r.slider->isVisible() && r.field->isVisible());
        const QRect parts = r.slider->geometry().united(r.field->geometry());
        QCOMPARE(place.left(), parts.left());
        QCOMPARE(place.right(), parts.right());
        const ChoiceButton beside(r.edit);
        delete r.edit;
        QVERIFY(!beside.editor() && !beside.isEnabled());
        QCOMPARE(beside.count(), 0);
    }
};

QTEST_MAIN(tst_ChoiceButton)
#include "tst_choicebutton.moc"
