#include "hostsupport.h"

#include <QtWidgets/QStyleFactory>

namespace
{
constexpr int IntMin = std::numeric_limits<int>::min();
constexpr int IntMax = std::numeric_limits<int>::max();
constexpr int LargestPower = 1 << 30;

// An editor on the screen that writes down what it announces, with the value that a host would read then.
struct Fixture
{
    Fixture()
    {
        QObject::connect(&edit, &QIntSliderEdit::startedEdit, &edit, [this] { log << "started"; });
        QObject::connect(&edit, &QIntSliderEdit::valueChanged, &edit, [this] { log << edit.value().toString(); });
        edit.resize(600, edit.height());
        hostsupport::showActive(edit);
    }

    // Value, text, handle and whether reset can be clicked.
    QString state() const
    {
        const QString reset = resetButton->isEnabled() ? "reset" : "default";
        return QString("%1 '%2' %3 %4")
            .arg(edit.value().toInt())
            .arg(text->text())
            .arg(slider->sliderPosition())
            .arg(reset);
    }

    QString range() const { return QString("%1..%2").arg(slider->minimum()).arg(slider->maximum()); }
    QStringList heard() { return std::exchange(log, {}); }
    void type(const QString& typed)
    {
        text->setFocus();
        commitText(text, typed);
    }

    QPoint handle() const { return hostsupport::handleOf(slider, slider->sliderPosition()); }
    void drag(const QPoint& to)
    {
        QTest::mousePress(slider, Qt::LeftButton, {}, handle());
        hostsupport::moveMouse(slider, to);
    }

    QIntSliderEdit edit;
    QSlider* slider = child<QSlider>(edit, "slider");
    QLineEdit* text = child<QLineEdit>(edit, "lineEdit");
    QPushButton* resetButton = child<QPushButton>(edit, "reset");
    QStringList log;
};

// Shows numbers in hexadecimal form, as a derived editor may.
class HexEdit : public QIntSliderEdit
{
public:
    QString valueToText(int value) override { return "0x" + QString::number(value, 16); }
    int textToValue(QString text) override { return text.remove(0, 2).toInt(nullptr, 16); }
};

using Commits = Table<int, int, bool, QString, int, int>; // minimum, maximum, powers, typed, value, handle
using HostValues = Table<QVariant, bool, QString>;
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
        f.drag(QPoint(f.slider->width(), f.slider->height() / 2));
        QCOMPARE(f.heard(), QStringList{"started"});
        QCOMPARE(f.state(), QString("0 '100' 100 default"));
        QTest::mouseRelease(f.slider, Qt::LeftButton);
        QCOMPARE(f.heard(), QStringList{"100"});
        QCOMPARE(f.state(), QString("100 '100' 100 reset"));

        QTest::mouseClick(f.slider, Qt::LeftButton, {}, f.handle()); // taken hold of and left where it was
        QCOMPARE(f.heard(), QStringList{"started"});
    }

    void clicksKeysAndTextCommit()
    {
        Fixture f;
        QTest::mouseClick(f.slider, Qt::LeftButton, {}, QPoint(f.slider->width() - 3, f.slider->height() / 2));
        QCOMPARE(f.state(), QString("10 '10' 10 default"));
        QTest::keyClick(f.slider, Qt::Key_Right);
        QTest::keyClick(f.slider, Qt::Key_PageUp);
        QCOMPARE(f.heard(), (QStringList{"10", "11", "21"}));
        f.edit.setReadOnlyText(true);
        f.type("55");
        QCOMPARE(f.state(), QString("21 '21' 21 default"));
        f.edit.setReadOnlyText(false);
        f.type("55");
        QCOMPARE(f.state(), QString("55 '55' 55 default"));
        f.heard();
        f.edit.setDefaultValue(500); // beyond the range
        QCOMPARE(f.state(), QString("55 '55' 55 reset"));
        QTest::mouseClick(f.resetButton, Qt::LeftButton);
        QVERIFY(f.heard().endsWith("100"));
        QCOMPARE(f.state(), QString("100 '100' 100 reset"));
        f.edit.setDefaultValue(40);
        QTest::mouseClick(f.resetButton, Qt::LeftButton);
        QCOMPARE(f.state(), QString("40 '40' 40 default"));
        QTest::keyClick(f.slider, Qt::Key_Left);
        QVERIFY(f.resetButton->isEnabled());
        f.type("40");
        QVERIFY(!f.resetButton->isEnabled());
        f.edit.setValue(41);
        QVERIFY(f.resetButton->isEnabled());
        f.edit.setShowDefaultButton(false);
        QVERIFY(!f.resetButton->isEnabled() && f.resetButton->isVisible());
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
        f.heard();
        f.type(typed);
        QCOMPARE(f.state(), QString("%1 '%2' %3 default").arg(value).arg(typed).arg(handle));
        QCOMPARE(f.heard(), (QStringList{QString::number(value), QString::number(value)}));
    }

    void hostSetsTheValue_data()
    {
        const HostValues row;
        row("int", QVariant(30), false, "30 '30' 30 reset");
        row("clamped", QVariant(-1), false, "1 '1' 1 reset");
        row("text", QVariant("31"), false, "31 '31' 31 reset");
        row("no number", QVariant("x"), false, "7 '7' 7 default");
        row("nothing", QVariant(), false, "7 '7' 7 default");
        row("no power, kept as it is", QVariant(48), true, "48 '48' 6 reset");
    }

    void hostSetsTheValue()
    {
        const auto [given, powers, state] = HostValues::current();
        Fixture f;
        f.edit.setMinimum(1);
        f.edit.setValue(7);
        f.edit.setDefaultValue(7);
        f.edit.setPowerOfTwo(powers);
        f.heard();
        f.edit.blockSignals(true);
        f.edit.setValue(given);
        QCOMPARE(f.state(), state);
        const bool ignored = state.startsWith("7 ");
        QCOMPARE(f.edit.signalsBlocked(), ignored);
        f.edit.blockSignals(false);
        f.edit.setValue(given, false);
        f.edit.setValue(QVariant(9), false);
        QVERIFY(f.text->text().isEmpty());
        QCOMPARE(f.edit.value(), QVariant(9));
        QCOMPARE(f.heard(), QStringList());
        QTest::keyClick(f.slider, Qt::Key_End); // the slider can be heard again
        QCOMPARE(f.heard(), QStringList{"100"});
    }

    void powersOfTwo_data()
    {
        const Powers row;
        row("default range", 0, 100, 1, 100, "0..7", "100 '100' 7 default");
        row("one number", 5, 5, 5, 10, "2..3", "8 '8' 3 default");
        row("negative", -10, -5, 1, 2, "0..1", "2 '2' 1 default");
        row("everything", IntMin, IntMax, 1, IntMax, "0..31", "1073741824 '1073741824' 31 default");
        row("no room for twice the minimum", LargestPower, 5, LargestPower, IntMax, "30..31",
            "1073741824 '1073741824' 31 default");
        row("greatest int", IntMax, IntMax, IntMax, IntMax, "31..31", "2147483647 '2147483647' 31 default");
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
        QCOMPARE(f.state(), end);
    }

    void switchingPowersOfTwo()
    {
        Fixture f;
        f.edit.setPowerOfTwo(true);
        QCOMPARE(f.heard(), QStringList{"1"});
        QCOMPARE(f.state(), QString("1 '0' 0 default"));
        f.drag(QPoint(f.slider->width(), f.slider->height() / 2));
        QCOMPARE(f.text->text(), QString("128"));
        QTest::mouseRelease(f.slider, Qt::LeftButton);
        QCOMPARE(f.heard(), (QStringList{"started", "100"}));
        QCOMPARE(f.state(), QString("100 '100' 7 default"));
        f.edit.setPowerOfTwo(false);
        QCOMPARE(f.heard(), QStringList{"100"});
        QCOMPARE(f.range(), QString("1..100"));
        QCOMPARE(f.state(), QString("100 '100' 100 default"));
    }

    void rangeMovesTheHandle()
    {
        Fixture f;
        f.edit.setMinimum(20);
        QCOMPARE(f.heard(), QStringList{"20"});
        QCOMPARE(f.state(), QString("20 '20' 20 default"));
        f.edit.setValue(80);
        f.edit.setMaximum(90);
        QCOMPARE(f.heard(), QStringList());
        f.edit.setMaximum(60);
        QCOMPARE(f.heard(), QStringList{"60"});
        QCOMPARE(f.state(), QString("60 '60' 60 default"));
        QCOMPARE(f.range(), QString("20..60"));
        // Ends that cross clamp to the maximum, and come into order again.
        f.edit.setMinimum(200);
        QCOMPARE(f.edit.value(), QVariant(60));
        f.edit.setMinimum(0);
        QCOMPARE(f.range(), QString("0..60"));
        f.edit.setMaximum(-50);
        f.edit.setMaximum(50);
        QCOMPARE(f.range(), QString("0..50"));
        f.edit.setValue(30);
        QCOMPARE(f.state(), QString("30 '30' 30 default"));
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
        f.edit.setEnums({"off", "low", "high"});
        QCOMPARE(f.state(), QString("1 'low' 1 default"));
        QCOMPARE(f.range(), QString("-1..2"));
        f.edit.setMaximum(3);
        QCOMPARE(f.heard(), QStringList());
        f.drag(QPoint(f.slider->width(), f.slider->height() / 2));
        QCOMPARE(f.text->text(), QString("3"));
        f.drag(QPoint(0, f.slider->height() / 2));
        QCOMPARE(f.text->text(), QString("-1"));
        QTest::mouseRelease(f.slider, Qt::LeftButton);
        QTest::keyClick(f.slider, Qt::Key_Right);
        QCOMPARE(f.text->text(), QString("off"));
        f.edit.setValue(2);
        QCOMPARE(f.text->text(), QString("high"));
        f.heard();
        f.type("low");
        QCOMPARE(f.heard(), (QStringList{"0", "0"}));
        f.edit.setEnums({});
        QCOMPARE(f.state(), QString("0 '0' 0 default"));
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
                                              child<QLabel>(f.edit, "units"), f.resetButton};
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
        QCOMPARE(f.heard(), QStringList());
    }
};

QTEST_MAIN(tst_IntSliderEdit)
#include "tst_intslideredit.moc"
