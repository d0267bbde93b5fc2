#include "hostsupport.h"

#include <Orvek/Host/ChoiceButton.h>
#include <Orvek/Host/EditorUndo.h>

#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QSlider>
#include <QtWidgets/QUndoStack>

using namespace hostsupport;
using orvek::host::ChoiceButton;
using orvek::host::EditorUndo;

namespace
{
QStringList entries(const ChoiceButton* button)
{
    QStringList texts;
    for (int i = 0; i < button->count(); ++i)
        texts << button->itemText(i);
    return texts;
}
} // namespace

class tst_ChoiceButton : public WatchedTest
{
    Q_OBJECT

private Q_SLOTS:
    void choiceIsOneChange_data()
    {
        QTest::addColumn<Create>("window");
        for (const Kind& window : windowKinds)
            QTest::newRow(window.name) << window.create;
    }

    void choiceIsOneChange()
    {
        QFETCH(Create, window);
        const std::unique_ptr<QWidget> root(window());
        QIntSliderEdit* edit = fill(root.get());
        auto* button = ChoiceButton::addTo(edit);
        QUndoStack stack;
        EditorUndo undo(&stack);
        undo.follow(root.get());
        showActive(*root);
        const QSignalSpy changed(edit, &QIntSliderEdit::valueChanged);
        const QSignalSpy started(edit, &QIntSliderEdit::startedEdit);
        QVector<int> values;
        connect(edit, &QIntSliderEdit::valueChanged, this, [&values, edit] { values << edit->value().toInt(); });
        edit->setValue(1);
        button->setFocus();
        QTest::keyClick(button, Qt::Key_Down);
        QCOMPARE(values, QVector<int>{2});
        QTest::keyClick(button, Qt::Key_Up);
        QTest::keyClick(button, Qt::Key_Up);
        QCOMPARE(values, (QVector<int>{2, 1, 0}));
        QCOMPARE(stack.count(), 1);

        // From the open list; the same once more is no change.
        for (int i = 0; i < 2; ++i)
        {
            QTest::mouseClick(button, Qt::LeftButton);
            QAbstractItemView* list = button->view();
            QTRY_VERIFY(list->isVisible());
            edit->setValue(edit->value()); // a push meanwhile
            QTest::qWait(QApplication::doubleClickInterval() +
                         50); // the list takes a quick click for that of its opening
            const QPoint place = list->visualRect(list->model()->index(3, 0)).center();
            QTest::mouseMove(list->viewport(), place);
            QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, place);
            QTRY_VERIFY(!list->isVisible());
        }
        QCOMPARE(values, (QVector<int>{2, 1, 0, 3}));
        QCOMPARE(changed.count(), 4);
        QCOMPARE(started.count(), 0);
        QCOMPARE(stack.count(), 2);
        stack.undo();
        QCOMPARE(edit->value().toInt(), 0);
        QTRY_COMPARE(button->currentText(), QStringLiteral("None"));
        stack.undo();
        QCOMPARE(edit->value().toInt(), 1);
    }

    void offersWhatNamesAndRangeSay()
    {
        QWidget window;
        QIntSliderEdit* edit = fill(&window);
        edit->setMinimum(1);
        auto* button = ChoiceButton::addTo(edit);
        showActive(window);
        QCOMPARE(entries(button), (QStringList{"Low", "Medium", "High"}));
        edit->setValue(2);
        QTRY_COMPARE(button->currentText(), QStringLiteral("Medium"));
        edit->setMaximum(9);
        edit->setValue(7);
        QTRY_COMPARE(button->currentText(), QStringLiteral("7"));
        edit->setValue(8);
        QTRY_COMPARE(entries(button), (QStringList{"Low", "Medium", "High", "8"}));
        edit->setValue(3);
        QTRY_COMPARE(entries(button), (QStringList{"Low", "Medium", "High"}));
        edit->setEnums({QStringLiteral("Off"), QStringLiteral("On")});
        QTRY_COMPARE(entries(button), (QStringList{"On", "3"}));
        edit->setEnums({"0", "1", "2", "3", "4"});
        edit->setPowerOfTwo(true);
        QTRY_COMPARE(entries(button), (QStringList{"1", "2", "4", "3"}));
        // A host that refuses a choice.
        edit->setPowerOfTwo(false);
        QTRY_COMPARE(button->count(), 4);
        connect(edit, &QIntSliderEdit::valueChanged, edit, [edit] { edit->setValue(1); });
        QTest::keyClick(button, Qt::Key_Down);
        QCOMPARE(button->currentText(), QStringLiteral("1"));
    }

    void wheelChoosesNothing()
    {
        const auto turn = [](QComboBox* box)
        {
            const QPoint centre = box->rect().center();
            QWheelEvent wheel(centre, box->mapToGlobal(centre), QPoint(), QPoint(0, -120), Qt::NoButton, Qt::NoModifier,
                              Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(box, &wheel);
            return wheel.isAccepted();
        };
        QWidget window;
        QIntSliderEdit* edit = fill(&window);
        auto* button = ChoiceButton::addTo(edit);
        QComboBox plain;
        plain.addItems(edit->enums());
        QVERIFY(turn(&plain));
        QCOMPARE(plain.currentIndex(), 1); // the trap
        showActive(window);
        for (const bool focus : {false, true})
        {
            if (focus)
                button->setFocus();
            QVERIFY(!turn(button));
            QCOMPARE(edit->value().toInt(), 0);
            QCOMPARE(button->currentIndex(), 0);
        }
    }

    void takesThePlaceOfTheSliderAndGivesItBack()
    {
        QWidget window;
        QIntSliderEdit* edit = fill(&window);
        edit->setTitle(QStringLiteral("Quality"));
        auto* slider = child<QSlider>(*edit, "slider");
        auto* field = child<QLineEdit>(*edit, "lineEdit");
        showActive(window);
        const QRect place = slider->geometry().united(field->geometry());
        auto* button = ChoiceButton::addTo(edit);
        QCoreApplication::processEvents();
        QVERIFY(!slider->isVisible() && !field->isVisible() && button->isVisible());
        QCOMPARE(button->geometry().left(), place.left());
        QCOMPARE(button->geometry().right(), place.right());
        QCOMPARE(button->accessibleName(), QStringLiteral("Quality, choice"));
        edit->setTitle(QStringLiteral("Detail"));
        QCOMPARE(button->accessibleName(), QStringLiteral("Detail, choice"));
        delete button;
        QCoreApplication::processEvents();
        QVERIFY(slider->isVisible() && field->isVisible());
        QCOMPARE(slider->geometry().united(field->geometry()), place);

        ChoiceButton beside(edit);
        delete edit;
        QVERIFY(!beside.editor() && !beside.isEnabled());
        QCOMPARE(beside.count(), 0);
        QVERIFY(!ChoiceButton::addTo(nullptr));
    }

private:
    static QIntSliderEdit* fill(QWidget* window)
    {
        auto* edit = new QIntSliderEdit;
        edit->setMaximum(3);
        edit->setEnums(
            {QStringLiteral("None"), QStringLiteral("Low"), QStringLiteral("Medium"), QStringLiteral("High")});
        (new QVBoxLayout(window))->addWidget(edit);
        return edit;
    }
};

QTEST_MAIN(tst_ChoiceButton)
#include "tst_choicebutton.moc"
