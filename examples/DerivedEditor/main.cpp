// Values in the user's terms: names for whole numbers, and editors that show a different number from the one they hold.
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QIntSliderEdit.h>

#include <examples/DerivedEditor/AngleEdit.h>
#include <examples/DerivedEditor/PercentEdit.h>
#include <examples/Screenshot.h>

#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);

    // Names for 0, 1, 2 and so on; the range is still up to the host. A typed name would not be a number, so typing is
    // off.
    auto* lens = new QIntSliderEdit;
    lens->setTitle(QStringLiteral("Lens"));
    lens->setEnums({QStringLiteral("Wide"), QStringLiteral("Normal"), QStringLiteral("Tele")});
    lens->setMaximum(lens->enums().size() - 1);
    lens->setReadOnlyText(true);
    lens->setDefaultValue(1);
    lens->setValue(2);

    auto* tilt = new AngleEdit;
    tilt->setTitle(QStringLiteral("Tilt"));
    tilt->setMinimum(-M_PI_2);
    tilt->setMaximum(M_PI_2);
    tilt->setStep(qDegreesToRadians(1.0));
    tilt->setDefaultValue(0.0);
    tilt->setValue(M_PI / 6.0);

    auto* vignette = new PercentEdit;
    vignette->setTitle(QStringLiteral("Vignette"));
    vignette->setStep(0.01);
    vignette->setDefaultValue(0.0);
    vignette->setValue(0.25);

    QWidget window;
    window.setWindowTitle(QStringLiteral("Derived Editor"));
    auto* held = new QLabel;
    auto* rows = new QVBoxLayout(&window);
    rows->addWidget(lens);
    rows->addWidget(tilt);
    rows->addWidget(vignette);
    rows->addWidget(held);
    rows->addStretch();

    const auto showValues = [=]
    {
        held->setText(QStringLiteral("Held: %1, %2, %3")
                          .arg(lens->value().toInt())
                          .arg(tilt->value().toDouble())
                          .arg(vignette->value().toDouble()));
    };
    QObject::connect(lens, &QIntSliderEdit::valueChanged, held, showValues);
    QObject::connect(tilt, &QSliderEdit::valueChanged, held, showValues);
    QObject::connect(vignette, &QSliderEdit::valueChanged, held, showValues);
    showValues();

    window.resize(460, 150);
    window.show();
    takeScreenshotOnRequest(&window);
    return QApplication::exec();
}
