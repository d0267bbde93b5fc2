#include "hostsupport.h"

using namespace hostsupport;

namespace
{
constexpr double Largest = std::numeric_limits<double>::max();
constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

void setRange(QSliderEdit& edit, double minimum, double maximum, double step = 0.0)
{
    edit.setMinimum(minimum);
    edit.setMaximum(maximum);
    edit.setStep(step);
}

void click(const QSliderEdit& edit, const char* button)
{
    QTest::mouseClick(child<QPushButton>(edit, button), Qt::LeftButton);
}

// In percent, with large steps.
class CoarseEdit : public QSliderEdit
{
public:
    QString valueToText(double value) override { return QSliderEdit::valueToText(value * 100.0); }
    double textToValue(QString text, bool* ok) override { return QSliderEdit::textToValue(text, ok) / 100.0; }
    void incrementDecrement(int direction) override { QSliderEdit::incrementDecrement(direction * 50); }
};

// Dresses its children while they are still being constructed.
class Dresser : public QWidget
{
public:
    bool event(QEvent* event) override
    {
        if (event->type() == QEvent::ChildAdded)
        {
            auto* added = static_cast<QWidget*>(static_cast<QChildEvent*>(event)->child());
            added->setObjectName(QStringLiteral("gain"));
            added->setToolTip(QStringLiteral("tip"));
            added->setWhatsThis(QStringLiteral("help"));
        }
        return QWidget::event(event);
    }
};

enum class Row
{
    AsBuilt,
    Horizontal,
    Vertical
};

using Ranges = Table<bool, double, double, double, double, QString, int, QString, QString>;
using Texts = Table<QString, QString>;
using Rows = Table<Row, Qt::LayoutDirection, bool, int>;
} // namespace

class tst_SliderEdit : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { QApplication::setStyle(QStringLiteral("windows")); } // a click on the groove is a page step

    void valueAndHandleFollowTheRange_data()
    {
        const Ranges add;
        bool logarithmic = false;
        const auto row = [&](const char* name, double minimum, double maximum, double step, double value,
                             const char* afterSetValue, int position, const char* preview, const char* atRelease = "")
        {
            add(name, logarithmic, minimum, maximum, step, value, afterSetValue, position, preview,
                *atRelease ? atRelease : preview);
        };
        row("unit range", 0, 1, 0, 0.25, "0.25 '0.25' at 250", 750, "0.75");
        row("positions truncate", 0, 1, 0, 0.0019, "0.0019 '0.0019' at 1", 1, "0.001");
        row("around zero", -1, 1, 0, -0.5, "-0.5 '-0.5' at 250", 0, "-1");
        row("exponents", 0, 1e6, 0, 2e6, "1e+06 '1e+06' at 1000", 500, "500000");
        row("below the minimum", 2, 4, 0, 1, "2 '2' at 0", 500, "3");
        row("a step", 0, 1, 0.3, 0.5, "0.5 '0.5' at 1", 2, "0.666667");
        row("tiny step", 0, 1, 1e-320, 0.25, "0.25 '0.25' at 2500", 5000, "0.5");
        row("step above the range", 2, 3, 10, 2.5, "2.5 '2.5' at 0", 0, "2");
        row("infinite step", 2, 3, Infinity, 2.5, "2.5 '2.5' at 0", 0, "2");
        row("step that is no number", 0, 1, NaN, 0.25, "0.25 '0.25' at 250", 9, "0.009");
        row("equal ends", 2, 2, 0, 7, "2 '2' at 0", 500, "2");
        row("ends swapped", 3, 1, 0, 2, "1 '1' at 1000", 500, "2", "1");
        row("ends swapped, with a step", 3, 1, 1, 2, "1 '1' at 0", 0, "3", "1");
        row("wider than a double", -Largest, Largest, 1, 1, "1 '1' at 0", 500, "-1.79769e+308");
        row("infinite ends", -Infinity, Infinity, 1, 3, "3 '3' at 0", 500, "-1.79769e+308");
        row("infinite minimum", Infinity, 1, 0, 0, "1 '1' at 0", 500, "1.79769e+308", "1");
        row("infinite maximum", 2, Infinity, 0, 1, "2 '2' at 0", 500, "2");
        row("ends that are no numbers", NaN, NaN, 1, 0.5, "0.5 '0.5' at 0", 500, "0");
        row("infinite value", 0, 1, 0, Infinity, "1 '1' at 1000", 500, "0.5");
        row("value that is no number", 0, 1, 0, NaN, "nan 'nan' at 0", 250, "0.25");
        logarithmic = true;
        row("logarithmic", 1, 100, 0, 10, "10 '10' at 500", 250, "3.16228");
        row("logarithmic from below 1", 0.01, 100, 0, 1, "1 '1' at 500", 250, "0.1");
        row("logarithm of nothing", -1, 1, 0, 0, "0 '0' at 0", 500, "-1");
        row("logarithm of nothing, ends swapped", 1, 0, 0, 0.5, "0 '0' at 0", 500, "1", "0");
        row("logarithmic to the largest", 1, Largest, 0, 1, "1 '1' at 0", 1000, "1.79769e+308");
        row("logarithmic without an end", 1, Infinity, 0, 2, "2 '2' at 0", 500, "1");
    }

    void valueAndHandleFollowTheRange()
    {
        const auto [logarithmic, minimum, maximum, step, value, afterSetValue, position, preview, atRelease] =
            Ranges::current();
        QSliderEdit edit;
        edit.setValue(0.5); // the handle is elsewhere
        edit.setLogarithmic(logarithmic);
        setRange(edit, minimum, maximum, step);
        edit.setValue(value);
        QCOMPARE(shown(edit), afterSetValue);
        QCOMPARE(child<QSlider>(edit, "slider")->minimum(), 0);
        edit.on_slider_sliderMoved(position);
        QCOMPARE(child<QLineEdit>(edit, "lineEdit")->text(), preview);
        edit.on_slider_valueChanged(position);
        QCOMPARE(edit.valueToText(edit.value().toDouble()), atRelease);
        QCOMPARE(child<QLineEdit>(edit, "lineEdit")->text(), atRelease);
    }

    void setValueIsSilentAndEndsBlocking()
    {
        QSliderEdit edit;
        Log host(edit);
        auto* slider = child<QSlider>(edit, "slider");
        QCOMPARE(host.news(), "| 0 '0' at 0");
        edit.setValue(QVariant(0.5), false);
        QCOMPARE(host.news(), "| 0.5 '' at 500");
        edit.setValue(QStringLiteral("0.75"));
        QCOMPARE(host.news(), "| 0.75 '0.75' at 750");
        edit.blockSignals(true);
        slider->blockSignals(true);
        for (const QVariant& none : {QVariant(), QVariant(QStringLiteral("far")), QVariant(QSize(1, 1))})
            edit.setValue(none);
        QCOMPARE(host.news(), "| 0.75 '0.75' at 750");
        QVERIFY(edit.signalsBlocked() && slider->signalsBlocked());
        edit.setValue(0.25);
        QVERIFY(!edit.signalsBlocked() && !slider->signalsBlocked());
        QCOMPARE(host.news(), "| 0.25 '0.25' at 250");
    }

    // Setting a value that seems to be shown already still undoes whatever happened to handle, text and button since.
    void sameValueAgainRestoresWhatItShows()
    {
        const auto type = [](QSliderEdit& edit, Qt::Key key)
        { QTest::keyClick(child<QLineEdit>(edit, "lineEdit"), key); };
        const auto move = [](QSliderEdit& edit, QObject* muted)
        {
            const QSignalBlocker blocker(muted);
            child<QSlider>(edit, "slider")->setValue(900);
        };
        const QPair<const char*, std::function<void(QSliderEdit&)>> disturbances[] = {
            {"typed", [&](auto& edit) { type(edit, Qt::Key_9); }},
            {"typed and taken back", [&](auto& edit) { type(edit, Qt::Key_9), type(edit, Qt::Key_Backspace); }},
            {"selected", [](auto& edit) { child<QLineEdit>(edit, "lineEdit")->selectAll(); }},
            {"cursor at the start", [&](auto& edit) { type(edit, Qt::Key_Home); }},
            {"blank", [](auto& edit) { edit.setValue(0.25, false); }},
            {"moved", [&](auto& edit) { move(edit, &edit); }},
            {"handle alone", [&](auto& edit) { move(edit, child<QSlider>(edit, "slider")); }},
            {"range", [](auto& edit) { edit.setMaximum(2), edit.setMaximum(1); }},
            {"button", [](auto& edit) { child<QPushButton>(edit, "reset")->setEnabled(true); }}};
        for (const auto& [name, disturb] : disturbances)
        {
            QSliderEdit edit;
            edit.setValue(0.25);
            disturb(edit);
            edit.setValue(0.25);
            QVERIFY2(shown(edit) == "0.25 '0.25' at 250", name);
            const auto* field = child<QLineEdit>(edit, "lineEdit");
            QVERIFY2(field->cursorPosition() == 4 && !field->hasSelectedText(), name);
            QVERIFY2(!field->isModified() && !field->isUndoAvailable(), name);
            edit.setMaximum(0.5);
            edit.setValue(0.25);
            QVERIFY2(shown(edit) == "0.25 '0.25' at 500", name);
        }
    }

    void rangeTakesEffectAtTheNextUpdate()
    {
        QSliderEdit edit;
        Log host(edit);
        setRange(edit, 2, 3);
        QCOMPARE(host.news(), "| 0 '0' at 0");
        edit.setLiveUpdate(true);
        QCOMPARE(host.news(), "2 | 2 '0' at 0");
        edit.setValue(2.75);
        edit.setStep(0.001);
        QCOMPARE(host.news(), "| 2.75 '2.75' at 750");
        edit.setStep(0.25); // the handle has to move to the new end
        QCOMPARE(host.news(), "3 | 3 '3' at 4");
        edit.setStep(-1);
        QCOMPARE(child<QSlider>(edit, "slider")->maximum(), 4);
    }

    void logarithmMakesTheRangeUsable()
    {
        QSliderEdit edit;
        Log host(edit);
        edit.setLogarithmic(true);
        QCOMPARE(edit.minimum(), 0.01);
        QCOMPARE(host.news(), "0.01 | 0.01 '0' at 0");
        edit.setLogarithmic(false);
        setRange(edit, 5, 5);
        edit.setLogarithmic(true);
        QCOMPARE(edit.maximum(), 500.0);
        setRange(edit, 1e307, 1);
        edit.setLogarithmic(true);
        QCOMPARE(edit.maximum(), Largest);
    }

    void resetFollowsTheDefault()
    {
        QSliderEdit edit;
        auto* reset = child<QPushButton>(edit, "reset");
        edit.setValue(0.5);
        QVERIFY(!reset->isEnabled());
        edit.setShowDefaultButton(true);
        QVERIFY(reset->isEnabled());
        edit.setShowDefaultButton(false);
        QVERIFY(!reset->isEnabled());
        edit.setDefaultValue(std::nextafter(0.5, 1.0));
        QVERIFY(edit.showDefaultButton() && reset->isEnabled());
        edit.setDefaultValue(0.5);
        QVERIFY(!reset->isEnabled());
        edit.setDefaultValue(7);
        reset->click(); // the default is not clamped, the value is
        QCOMPARE(shown(edit), QStringLiteral("1 '1' at 1000 reset"));
    }

    void committedText_data()
    {
        const Texts row;
        row("number", " 0.75 ", "0.75 0.75 | 0.75 ' 0.75 ' at 750 reset");
        row("the default", "2.5e-1", "0.25 0.25 | 0.25 '2.5e-1' at 250");
        row("too large", "5", "1 1 | 1 '5' at 1000 reset");
        row("infinity", "-inf", "0 0 | 0 '-inf' at 0 reset");
        row("not a number", "nan", "| 0.5 'nan' at 500 reset");
        row("letters", "half", "| 0.5 'half' at 500 reset");
        row("nothing", "", "| 0.5 '' at 500 reset");
        row("comma", "0,75", "| 0.5 '0,75' at 500 reset");
    }

    void committedText()
    {
        const auto [text, news] = Texts::current();
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); // has a decimal comma
        const auto restore = qScopeGuard([] { QLocale::setDefault(QLocale::c()); });
        QSliderEdit edit;
        edit.setDefaultValue(0.25);
        edit.setValue(0.5);
        showActive(edit);
        Log host(edit);
        commitText(child<QLineEdit>(edit, "lineEdit"), text);
        QCOMPARE(host.news(), news);

        edit.setValue(0.5);
        QCOMPARE(host.news(), "| 0.5 '0.5' at 500 reset");
        child<QLineEdit>(edit, "lineEdit")->setFocus();
        typeText(child<QLineEdit>(edit, "lineEdit"), text);
        QCOMPARE(host.news(), "| 0.5 '" + text + "' at 500 reset");
        child<QSlider>(edit, "slider")->setFocus(); // the other way to commit
        QCOMPARE(host.news(), news);
    }

    void keysAndClicks()
    {
        QSliderEdit edit;
        edit.setShowButtons(true);
        edit.setDefaultValue(0.25);
        edit.setValue(0.5);
        edit.resize(600, 38);
        showActive(edit);
        Log host(edit);
        // A host that writes each value back must not be told of it again.
        connect(&edit, &QSliderEdit::valueChanged, [&edit] { edit.setValue(edit.value()); });
        auto* slider = child<QSlider>(edit, "slider");
        QTest::mouseClick(slider, Qt::LeftButton, Qt::NoModifier, slider->rect().center() + QPoint(60, 0));
        QCOMPARE(host.news(), "0.51 | 0.51 '0.51' at 510 reset");
        QTest::keyClick(slider, Qt::Key_Left);
        QCOMPARE(host.news(), "0.509 | 0.509 '0.509' at 509 reset");
        QTest::keyClick(slider, Qt::Key_PageDown);
        QCOMPARE(host.news(), "0.499 | 0.499 '0.499' at 499 reset");
        click(edit, "increment");
        click(edit, "increment");
        QCOMPARE(host.news(), "0.5 0.501 | 0.501 '0.501' at 501 reset");
        click(edit, "decrement");
        QCOMPARE(host.news(), "0.5 | 0.5 '0.5' at 500 reset");
        click(edit, "reset");
        click(edit, "reset");
        QCOMPARE(host.news(), "0.25 | 0.25 '0.25' at 250");
        edit.incrementDecrement(INT_MAX); // together with the position no int any more
        click(edit, "increment");
        QTest::keyClick(slider, Qt::Key_Right);
        QCOMPARE(host.news(), "1 | 1 '1' at 1000 reset");
        edit.incrementDecrement(INT_MIN);
        click(edit, "decrement");
        QCOMPARE(host.news(), "0 | 0 '0' at 0 reset");
    }

    void draggingTheHandle()
    {
        for (const bool live : {true, false})
        {
            QSliderEdit edit;
            edit.setLiveUpdate(live);
            setRange(edit, 0, 1, 0.1);
            edit.setDefaultValue(0.3);
            edit.setValue(0.5);
            edit.resize(600, 38);
            showActive(edit);
            Log host(edit);
            auto* slider = child<QSlider>(edit, "slider");
            QTest::mousePress(slider, Qt::LeftButton, Qt::NoModifier, handleOf(slider, 5));
            QCOMPARE(host.news(), "started | 0.5 '0.5' at 5 reset");
            moveMouse(slider, handleOf(slider, 7));
            moveMouse(slider, handleOf(slider, 3));
            QCOMPARE(host.news(), live ? "0.7 0.3 | 0.3 '0.3' at 3" : "| 0.5 '0.3' at 3 reset");
            QTest::mouseRelease(slider, Qt::LeftButton, {}, handleOf(slider, slider->sliderPosition()));
            QCOMPARE(host.news(), "0.3 | 0.3 '0.3' at 3");

            QTest::mousePress(slider, Qt::LeftButton, Qt::NoModifier, handleOf(slider, 3));
            moveMouse(slider, handleOf(slider, 9));
            moveMouse(slider, handleOf(slider, 3));
            QTest::mouseRelease(slider, Qt::LeftButton, {}, handleOf(slider, slider->sliderPosition()));
            QCOMPARE(host.news(), live ? "started 0.9 0.3 | 0.3 '0.3' at 3" : "started | 0.3 '0.3' at 3");
        }
    }

    void derivedClassChangesTextAndSteps()
    {
        CoarseEdit edit;
        edit.setValue(0.5);
        Log host(edit);
        commitText(child<QLineEdit>(edit, "lineEdit"), "75");
        QCOMPARE(host.news(), "0.75 0.75 | 0.75 '75' at 750");
        edit.on_slider_sliderMoved(200);
        QCOMPARE(host.news(), "| 0.75 '20' at 750");
        click(edit, "decrement");
        QCOMPARE(host.news(), "0.7 | 0.7 '70' at 700");
    }

    void partsStandInOrderAndApart_data()
    {
        const Rows add;
        for (const Row row : {Row::AsBuilt, Row::Horizontal, Row::Vertical})
            for (const int width : row == Row::AsBuilt ? QVector<int>{310, 600} : QVector<int>{100, 150, 270, 340, 600})
                for (const bool buttons : {false, true})
                    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft})
                        add(QByteArray::number(int(row)) + ' ' + QByteArray::number(width) +
                                (buttons ? ", buttons" : "") + (direction == Qt::RightToLeft ? ", right to left" : ""),
                            row, direction, buttons, width);
    }

    void partsStandInOrderAndApart()
    {
        const auto [row, direction, buttons, width] = Rows::current();
        const bool isDown = row == Row::Vertical;
        QWidget window;
        window.setLayoutDirection(direction);
        QSliderEdit edit(&window);
        edit.setShowButtons(!buttons);
        QCOMPARE(edit.minimumSize(), QSize(270, 38));
        if (row == Row::Horizontal)
            edit.setOrientation(Qt::Vertical); // also the way back
        if (row != Row::AsBuilt)
            edit.setOrientation(isDown ? Qt::Vertical : Qt::Horizontal);
        edit.setMinimumWidth(0);
        edit.resize(width, qMax(38, edit.sizeHint().height()));
        window.resize(700, 300);
        showActive(window);
        edit.setShowButtons(buttons);
        QCoreApplication::processEvents();

        QCOMPARE(edit.orientation(), isDown ? Qt::Vertical : Qt::Horizontal);
        QCOMPARE(edit.sizePolicy().verticalPolicy(), QSizePolicy::Fixed);
        const QMap<QString, int> fixed{{"label", 80},    {"decrement", 24}, {"increment", 24},
                                       {"lineEdit", 80}, {"units", 40},     {"reset", 14}};
        const QList<QWidget*> parts = edit.findChildren<QWidget*>();
        QCOMPARE(parts.size(), 7);
        for (const QWidget* part : parts)
        {
            const QString name = part->objectName();
            QVERIFY2(part->isVisible() == (buttons || !name.endsWith("crement")), qPrintable(name));
            QVERIFY2(!part->isVisible() || part->width() == fixed.value(name, part->width()), qPrintable(name));
            QVERIFY2(edit.width() < edit.minimumSizeHint().width() || !part->isVisible() ||
                         edit.rect().contains(part->geometry()),
                     qPrintable(name));
        }
        const auto place = [&edit, isMirrored = direction == Qt::RightToLeft](const char* name)
        {
            const QRect rect = child<QWidget>(edit, name)->geometry();
            return isMirrored ? rect.translated(-rect.left() - rect.right(), 0) : rect;
        };
        const auto follow = [&](bool down, std::initializer_list<const char*> names)
        {
            int end = std::numeric_limits<int>::min();
            bool areApart = true;
            for (const char* name : names)
                if (child<QWidget>(edit, name)->isVisible())
                {
                    areApart = areApart && (down ? place(name).top() : place(name).left()) > end;
                    end = down ? place(name).bottom() : place(name).right();
                }
            return areApart;
        };
        if (isDown)
        {
            for (const char* last : {"lineEdit", "units", "reset"})
                QVERIFY(follow(true, {"label", "increment", "slider", "decrement", last}));
            QVERIFY(follow(false, {"lineEdit", "units", "reset"}));
            // At any width the buttons keep to the slider, units and reset button to the field.
            for (const char* name : {"increment", "decrement"})
                QVERIFY(!buttons || qAbs(place(name).center().x() - place("slider").center().x()) <= 1);
            const QRect group = place("lineEdit") | place("units") | place("reset");
            QCOMPARE(group.width(), 80 + 40 + 14 + 2);
            QCOMPARE(group.bottom(), edit.layout()->itemAt(2)->geometry().bottom());
            QCOMPARE(place(buttons ? "increment" : "slider").top(), edit.layout()->itemAt(1)->geometry().top());
        }
        else
            QVERIFY(follow(false, {"label", "decrement", "slider", "increment", "lineEdit", "units", "reset"}));
        if (row == Row::AsBuilt)
            return;
        QCOMPARE(qobject_cast<const QVBoxLayout*>(edit.layout()) != nullptr, isDown);
        QStringList items;
        for (int i = 0; i < edit.layout()->count(); ++i)
            items << edit.layout()->itemAt(i)->widget()->objectName();
        QCOMPARE(items.join(' '), "label slider lineEdit");
    }

    void tipsAndHelpReachTheParts()
    {
        Dresser parent;
        QSliderEdit edit(&parent);
        QCOMPARE(edit.objectName(), QStringLiteral("gain"));
        for (const char* name : {"label", "lineEdit", "slider"})
            QCOMPARE(child<QWidget>(edit, name)->whatsThis(), QStringLiteral("help"));
        const QVectorEdit vector(&parent);
        const QIntSliderEdit integer(&parent);
        for (const QWidget* part : {child<QWidget>(vector, "z"), child<QWidget>(integer, "slider")})
            QCOMPARE(part->whatsThis(), QStringLiteral("help"));
        QWidget* deep = new QWidget(child<QWidget>(edit, "units"));
        QCOMPARE(child<QWidget>(edit, "reset")->toolTip(), QStringLiteral("tip"));
        edit.applyParentTooltip();
        QCOMPARE(deep->toolTip(), QStringLiteral("tip"));
        edit.setToolTip(QString());
        edit.applyParentTooltip();
        QCOMPARE(deep->toolTip() + child<QWidget>(edit, "label")->toolTip(), QString());
        QCOMPARE(QSliderEdit().objectName(), QStringLiteral("QSliderEdit"));
    }
};

QTEST_MAIN(tst_SliderEdit)
#include "tst_slideredit.moc"
