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

using Typed = Table<bool, QString, double>; // an angle, text, value
} // namespace

//! Editors of an example that show another number than they hold.
class tst_DerivedEditor : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void typedTextIsInTheShownUnit_data()
    {
        const Typed row;
        row("degrees", true, "45", M_PI_4);
        row("degrees with sign", true, QStringLiteral("-30 °"), -M_PI / 6.0);
        row("degrees beyond the end", true, "1000", M_PI_2);
        row("no degrees", true, "flat", 0.0);
        row("percent", false, "12.5", 0.125);
        row("percent with sign", false, "12.5 %", 0.125);
        row("percent beyond the end", false, "250%", 1.0);
        row("no percent", false, "%", 0.0);
    }

    void typedTextIsInTheShownUnit()
    {
        const auto [angle, text, value] = Typed::current();
        const std::unique_ptr<QSliderEdit> edit = angle ? angleEdit() : std::make_unique<PercentEdit>();
        commitText(child<QLineEdit>(*edit, "lineEdit"), text);
        QCOMPARE(edit->value().toDouble(), value);
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
