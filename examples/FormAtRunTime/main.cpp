// Shows a Designer form that is not compiled into the program: the one given as an argument, or LightForm.ui. The
// widgets come from the plugin; this program knows only names of children, properties and signals.
#include <QtCore/QFile>
#include <QtUiTools/QUiLoader>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);

    QUiLoader loader;
    loader.addPluginPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../plugins/designer"));
    QFile file(application.arguments().value(1, QStringLiteral(":/LightForm.ui")));
    QWidget* form = file.open(QIODevice::ReadOnly) ? loader.load(&file) : nullptr;
    if (!form)
    {
        qCritical("%s: %s", qUtf8Printable(file.fileName()),
                  qUtf8Printable(file.isOpen() ? loader.errorString() : file.errorString()));
        return 1;
    }

    auto* intensity = form->findChild<QWidget*>(QStringLiteral("intensity"));
    auto* view = form->findChild<QWidget*>(QStringLiteral("view"));
    if (intensity && view)
    {
        intensity->setProperty("value", 2.5);
        // The compiler does not know the signals of these widgets, so they are named.
        QObject::connect(intensity, SIGNAL(valueChanged()), view, SLOT(Update()));
    }
    form->show();
    const int result = application.exec();
    delete form;
    return result;
}
