#include "hostsupport.h"

#include <QtWidgets/QStyleFactory>

using namespace hostsupport;

namespace
{
constexpr int IntMin = std::numeric_limits<int>::min();
constexpr int IntMax = std::numeric_limits<int>::max();
constexpr int LargestPower = 1 << 30;

struct Fixture
{
    Fixture()
    {
        edit.resize(600, edit.height());
        showActive(edit);
    }
    QString range() const { return QString("%1..%2").arg(slider->minimum()).arg(slider->maximum()); }
    QString news() { return log.news(); }
    void type(const QString& typed)
    {
        text->setFocus();
        commitText(text, typed);
    }
    QPoint handle() const { return handleOf(slider, slider->sliderPosition()); }
    void dragTo(int x)
    {
        QTest::mousePress(slider, Qt::LeftButton, {}, handle());
        moveMouse(slider, QPoint(x, slider->height() / 2));
    }

    QIntSliderEdit edit;
    QSlider* slider = child<QSlider>(edit, "slider");
    QLineEdit* text = child<QLineEdit>(edit, "lineEdit");
    QPushButton* reset = child<QPushButton>(edit, "reset");
    Log<QIntSliderEdit> log{edit};
};

// Shows numbers in hexadecimal form, as a derived editor may.
class HexEdit : public QIntSliderEdit
{
public:
    QString valueToText(int value) override { return "0x" + QString::number(value, 16); }
    int textToValue(QString text) override { return text.remove(0, 2).toInt(nullptr, 16); }
};

using Commits = Table<int, int, bool, QString, int, int>;   // minimum, maximum, powers, typed, value, handle
using Powers = Table<int, int, int, int, QString, QString>; // range, range with powers, handle's range, at the End key
} // namespace

class tst_IntSliderEdit : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { QApplication::setStyle(QStyleFactory::create("Fusion")); }
    void dragPreviewsAndReleaseCommits()
    {
        Fixture f;
        f.edit.setShowDefaultButton(true);
        f.dragTo(f.slider->width());
        QCOMPARE(f.news(), "started | 0 '100' at 100");
        QTest::mouseRelease(f.slider, Qt::LeftButton);
        QCOMPARE(f.news(), "100 | 100 '100' at 100 reset");
        QTest::mouseClick(f.slider, Qt::LeftButton, {}, f.handle()); // left where it was
        QCOMPARE(f.news(), "started | 100 '100' at 100 reset");
    }

    void clicksKeysAndTextCommit()
    {
        Fixture f;
        QTest::mouseClick(f.slider, Qt::LeftButton, {}, QPoint(f.slider->width() - 3, f.slider->height() / 2));
        QTest::keyClick(f.slider, Qt::Key_Right);
        QTest::keyClick(f.slider, Qt::Key_PageUp);
        QCOMPARE(f.news(), "10 11 21 | 21 '21' at 21");
        f.edit.setReadOnlyText(true);
        f.type("55");
        QVERIFY(f.news().endsWith("| 21 '21' at 21"));
        f.edit.setReadOnlyText(false);
        f.type("55");
        f.edit.setDefaultValue(500); // beyond the range
        QCOMPARE(f.news(), "55 55 | 55 '55' at 55 reset");
        f.reset->click();
        QCOMPARE(f.news(), "100 | 100 '100' at 100 reset");
        f.edit.setDefaultValue(40);
        f.reset->click();
        QCOMPARE(f.news(), "40 | 40 '40' at 40");
        QTest::keyClick(f.slider, Qt::Key_Left);
        QCOMPARE(f.news(), "39 | 39 '39' at 39 reset");
        f.type("40");
        QCOMPARE(f.news(), "40 40 | 40 '40' at 40");
        f.edit.setValue(41);
        QVERIFY(f.reset->isEnabled());
        f.edit.setShowDefaultButton(false);
        QVERIFY(!f.reset->isEnabled() && f.reset->isVisible());
    }

    void committedText_data()
    {
        const Commits row;
        row("number", 0, 100, false, "48", 48, 48);
        row("blanks around", 0, 100, false, " 48 ", 48, 48);
        row("beyond maximum", 0, 100, false, "150", 100, 100);
        row("below minimum", 5, 100, false, "-5", 5, 5);
        row("letters", -10, 100, false, "abc", 0, 0);
        row("fraction", -10, 100, false, "2.5", 0, 0);
        row("other base", -10, 100, false, "0x10", 0, 0);
        row("too long for an int", -10, 100, false, "99999999999", 0, 0);
        row("least int", IntMin, IntMax, false, "-2147483648", IntMin, IntMin);
        row("greatest int", IntMin, IntMax, false, "2147483647", IntMax, IntMax);
        row("power, rounded up", 0, 100, true, "48", 64, 6);
        row("power, rounded down", 0, 100, true, "45", 32, 5);
        row("power, then clamped", 0, 100, true, "100", 100, 7);
        row("power, zero", 0, 100, true, "0", 1, 0);
        row("power, negative", 0, 100, true, "-8", 1, 0);
        row("power, nothing above", 0, IntMax, true, "2147483647", LargestPower, 30);
        row("power, below minimum", 4, 100, true, "1", 4, 2);
    }

    void committedText()
    {
        const auto [minimum, maximum, powers, typed, value, handle] = Commits::current();
        Fixture f;
        f.edit.setMinimum(minimum);
        f.edit.setMaximum(maximum);
        f.edit.setPowerOfTwo(powers);
        f.edit.setDefaultValue(value);
        f.edit.setValue(maximum);
        f.news();
        f.type(typed);
        QCOMPARE(f.news(), QString("%1 %1 | %1 '%2' at %3").arg(value).arg(typed).arg(handle));
    }

    void hostSetsTheValue()
    {
        const struct
        {
            QVariant given;
            bool powers;
            const char* state;
        } cases[] = {{30, false, "30 '30' at 30 reset"},
                     {-1, false, "1 '1' at 1 reset"},
                     {"31", false, "31 '31' at 31 reset"},
                     {"x", false, "7 '7' at 7"},
                     {{}, false, "7 '7' at 7"},
                     {48, true, "48 '48' at 6 reset"}}; // no power, kept as it is
        for (const auto& one : cases)
        {
            Fixture f;
            f.edit.setMinimum(1);
            f.edit.setValue(7);
            f.edit.setDefaultValue(7);
            f.edit.setPowerOfTwo(one.powers);
            f.news();
            f.edit.blockSignals(true);
            f.edit.setValue(one.given);
            QCOMPARE(f.news(), QString("| ") + one.state);
            QCOMPARE(f.edit.signalsBlocked(), *one.state == '7'); // where it was ignored
            f.edit.blockSignals(false);
            f.edit.setValue(one.given, false);
            f.edit.setValue(QVariant(9), false);
            QVERIFY(f.news().startsWith("| 9 '' at "));
            QTest::keyClick(f.slider, Qt::Key_End); // the slider's signals arrive again
            QVERIFY(f.news().startsWith("100 | 100 '100' "));
        }
    }

    void powersOfTwo_data()
    {
        const Powers row;
        row("default range", 0, 100, 1, 100, "0..7", "100 '100' at 7");
        row("one number", 5, 5, 5, 10, "2..3", "8 '8' at 3");
        row("negative", -10, -5, 1, 2, "0..1", "2 '2' at 1");
        row("everything", IntMin, IntMax, 1, IntMax, "0..31", "1073741824 '1073741824' at 31");
        row("no room for twice the minimum", LargestPower, 5, LargestPower, IntMax, "30..31",
            "1073741824 '1073741824' at 31");
        row("greatest int", IntMax, IntMax, IntMax, IntMax, "31..31", "2147483647 '2147483647' at 31");
    }

    void powersOfTwo()
    {
        const auto [minimum, maximum, newMinimum, newMaximum, range, end] = Powers::current();
        Fixture f;
        f.edit.setMinimum(minimum);
        f.edit.setMaximum(maximum);
        f.edit.setPowerOfTwo(true);
        QCOMPARE(f.edit.minimum(), newMinimum);
        QCOMPARE(f.edit.maximum(), newMaximum);
        QCOMPARE(f.range(), range);
        f.edit.setValue(f.edit.minimum());
        QTest::keyClick(f.slider, Qt::Key_End);
        QVERIFY2(f.news().endsWith(end), qPrintable(end));
    }

    void switchingPowersOfTwo()
    {
        Fixture f;
        f.edit.setPowerOfTwo(true);
        QCOMPARE(f.news(), "1 | 1 '0' at 0");
        f.dragTo(f.slider->width());
        QCOMPARE(f.text->text(), QString("128"));
        QTest::mouseRelease(f.slider, Qt::LeftButton);
        QCOMPARE(f.news(), "started 100 | 100 '100' at 7");
        f.edit.setPowerOfTwo(false);
        QCOMPARE(f.news() + " in " + f.range(), "100 | 100 '100' at 100 in 1..100");
    }

    void rangeMovesTheHandle()
    {
        Fixture f;
        f.edit.setMinimum(20);
        QCOMPARE(f.news(), "20 | 20 '20' at 20");
        f.edit.setValue(80);
        f.edit.setMaximum(90);
        QCOMPARE(f.news(), "| 80 '80' at 80");
        f.edit.setMaximum(60);
        QCOMPARE(f.news() + " in " + f.range(), "60 | 60 '60' at 60 in 20..60");
        // Ends that cross clamp to the maximum, and come into order again.
        f.edit.setMinimum(200);
        QCOMPARE(f.edit.value(), QVariant(60));
        f.edit.setMinimum(0);
        QCOMPARE(f.range(), QString("0..60"));
        f.edit.setMaximum(-50);
        f.edit.setMaximum(50);
        f.edit.setValue(30);
        f.news();
        QCOMPARE(f.news() + " in " + f.range(), "| 30 '30' at 30 in 0..50");
    }

    // Ends that cross drag each other along, whichever setter comes last. Those of just 2^31 steps are more than Qt's
    // styles can divide by.
    void rangesInAnyOrderArePainted()
    {
        const int ends[] = {IntMin, -5, -1, 0, 5, IntMax};
        for (const Qt::Orientation orientation : {Qt::Horizontal, Qt::Vertical})
            for (int order = 0; order < 12 * 12 * 12; ++order)
            {
                QIntSliderEdit edit;
                edit.setOrientation(orientation);
                for (int rest = order, calls = 0; calls < 3; ++calls, rest /= 12)
                    rest % 2 ? edit.setMinimum(ends[rest % 12 / 2]) : edit.setMaximum(ends[rest % 12 / 2]);
                auto* slider = child<QSlider>(edit, "slider");
                const QByteArray name = QByteArray::number(order);
                QVERIFY2(qint64(slider->maximum()) - slider->minimum() != qint64(IntMax) + 1, name);
                const bool isOrdered = edit.minimum() < edit.maximum();
                if (order % 7 == 0 || !isOrdered)
                    QVERIFY2(!edit.grab().isNull(), name);
                edit.setValue(1);
                for (const Qt::Key key : {Qt::Key_Home, Qt::Key_End})
                {
                    QTest::keyClick(slider, key);
                    const int end = key == Qt::Key_Home ? edit.minimum() : edit.maximum();
                    QVERIFY2(!isOrdered || edit.value().toInt() == end, name);
                }
            }
    }

    void names()
    {
        Fixture f;
        f.edit.setMinimum(-1);
        f.edit.setMaximum(2);
        f.edit.setValue(1);
        f.news();
        f.edit.setEnums({"off", "low", "high"});
        QCOMPARE(f.news() + " in " + f.range(), "| 1 'low' at 1 in -1..2");
        f.edit.setMaximum(3);
        f.dragTo(f.slider->width());
        QCOMPARE(f.news(), "started | 1 '3' at 3");
        f.dragTo(0);
        QCOMPARE(f.text->text(), QString("-1"));
        QTest::mouseRelease(f.slider, Qt::LeftButton);
        QTest::keyClick(f.slider, Qt::Key_Right);
        QCOMPARE(f.text->text(), QString("off"));
        f.edit.setValue(2);
        QCOMPARE(f.text->text(), QString("high"));
        f.news();
        f.type("low");
        f.edit.setEnums({});
        QCOMPARE(f.news(), "0 0 | 0 '0' at 0");
    }

    void derivedTextForm()
    {
        HexEdit edit;
        auto* text = child<QLineEdit>(edit, "lineEdit");
        edit.setValue(31);
        QCOMPARE(text->text(), QString("0x1f"));
        QTest::keyClick(child<QSlider>(edit, "slider"), Qt::Key_Right);
        QCOMPARE(text->text(), QString("0x20"));
        text->clear();
        QTest::keyClicks(text, "0x40\r");
        QCOMPARE(edit.value(), QVariant(64));
    }

    void orientation()
    {
        Fixture f;
        f.edit.setUnits("m");
        f.edit.setLabelWidth(90);
        const QList<const QWidget*> column = {child<QLabel>(f.edit, "label"), f.slider, f.text,
                                              child<QLabel>(f.edit, "units"), f.reset};
        f.edit.setOrientation(Qt::Vertical);
        f.edit.resize(270, 300);
        QTest::qWait(0);
        QCOMPARE(f.edit.orientation(), Qt::Vertical);
        for (int i = 1; i < column.size(); ++i)
            QVERIFY(column.at(i - 1)->geometry().bottom() < column.at(i)->geometry().top());
        QCOMPARE(f.text->width(), 90);
        QCOMPARE(f.slider->minimumSize(), QSize(8, 32));
        QVERIFY(qAbs(f.text->geometry().center().x() - f.edit.rect().center().x()) <= 1);

        f.edit.setOrientation(Qt::Horizontal);
        QTest::qWait(0);
        for (int i = 1; i < column.size(); ++i)
            QVERIFY(column.at(i - 1)->geometry().right() < column.at(i)->geometry().left());
        QCOMPARE(f.text->width(), 64);
        QCOMPARE(f.slider->minimumSize(), QSize(32, 8));
        QCOMPARE(f.edit.textWidth(), 80);
        f.edit.setTextWidth(80);
        QCOMPARE(f.text->minimumWidth(), 80);
        QVERIFY(f.news().startsWith('|'));
    }
};

QTEST_MAIN(tst_IntSliderEdit)
#include "tst_intslideredit.moc"
