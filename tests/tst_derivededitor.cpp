#include "testsupport.h"

#include <examples/DerivedEditor/AngleEdit.h>
#include <examples/DerivedEditor/PercentEdit.h>

namespace
{
std::unique_ptr<QSliderEdit> angleEdit()
{
    auto edit = std::make_unique<AngleEdit>();
    edit->setMinimum(-M_PI_2);
    edit->setMaximum(M_PI_2);
    edit->setStep(qDegreesToRadians(1.0));
    edit->setValue(0.0);
    return edit;
}

} // namespace

//! Editors of an example that show another number than they hold.
class tst_DerivedEditor : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void typedTextIsInTheShownUnit()
    {
        const struct
        {
            bool isAngle;
            const char* text;
            double value;
        } cases[] = {{true, "45", M_PI_4}, {true, "-30 °", -M_PI / 6.0}, {true, "1000", M_PI_2},
                     {true, "flat", 0.0},  {false, "12.5 %", 0.125},     {false, "250%", 1.0},
                     {false, "%", 0.0}};
        for (const auto& one : cases)
        {
            const std::unique_ptr<QSliderEdit> edit = one.isAngle ? angleEdit() : std::make_unique<PercentEdit>();
            commitText(child<QLineEdit>(*edit, "lineEdit"), one.text);
            QVERIFY2(edit->value().toDouble() == one.value, one.text);
        }
    }

    // Return in an untouched field must not change the value.
    void shownTextReadsBack()
    {
        const std::unique_ptr<QSliderEdit> edits[] = {angleEdit(), std::make_unique<PercentEdit>()};
        for (const auto& edit : edits)
        {
            const bool isAngle = edit == edits[0];
            const double value = isAngle ? M_PI / 6.0 : 0.25;
            edit->setValue(value);
            auto* field = child<QLineEdit>(*edit, "lineEdit");
            QCOMPARE(field->text(), isAngle ? QStringLiteral("30°") : QStringLiteral("25 %"));
            QTest::keyClick(field, Qt::Key_Return);
            QCOMPARE(edit->value().toDouble(), value);
        }
    }

    void stepIsOneShownDegree()
    {
        const std::unique_ptr<QSliderEdit> edit = angleEdit();
        edit->setShowButtons(true);
        QTest::mouseClick(child<QPushButton>(*edit, "increment"), Qt::LeftButton);
        QCOMPARE(child<QLineEdit>(*edit, "lineEdit")->text(), QStringLiteral("1°"));
    }
};

QTEST_MAIN(tst_DerivedEditor)

#include "tst_derivededitor.moc"
