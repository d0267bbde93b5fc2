// One editor in a window: a shutter time, on a slider where equal distances are equal ratios.
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QSliderEdit.h>

#include <examples/Screenshot.h>

#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

#include <cmath>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);

    QWidget window;
    window.setWindowTitle(QStringLiteral("One Editor"));
    auto* shutter = new QSliderEdit;
    auto* result = new QLabel;
    auto* rows = new QVBoxLayout(&window);
    rows->addWidget(shutter);
    rows->addWidget(result);
    rows->addStretch();

    // Set the range first: a value is clamped to the range at that moment.
    shutter->setTitle(QStringLiteral("Shutter"));
    shutter->setUnits(QStringLiteral("s"));
    shutter->setMinimum(0.001);
    shutter->setMaximum(10.0);
    shutter->setLogarithmic(true);
    shutter->setShowButtons(true);
    shutter->setLiveUpdate(true);
    shutter->setDefaultValue(0.008);
    shutter->setValue(0.5);

    // The signal only announces the user's changes; what the program sets itself, it shows itself.
    const auto showLight = [shutter, result]
    {
        const double stops = std::log2(shutter->value().toDouble() / shutter->defaultValue());
        result->setText(QStringLiteral("%1 stops of light against the default").arg(stops, 0, 'f', 1));
    };
    QObject::connect(shutter, &QSliderEdit::valueChanged, result, showLight);
    showLight();

    window.resize(480, 90);
    window.show();
    takeScreenshotOnRequest(&window);
    return QApplication::exec();
}
