#include "ui_StrangersForm.h"

#ifdef STRANGER_USES_HOST
#include <Orvek/Base/BaseMouseHandler.h>
#include <Orvek/Host/Description.h>
#include <Orvek/Host/ViewInput.h>
#endif

#include <QtCore/QDir>
#include <QtCore/QLibrary>
#include <QtCore/QPluginLoader>
#include <QtCore/QTextStream>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QApplication>

namespace
{
bool check(bool holds, const char* what)
{
    if (!holds)
        QTextStream(stderr) << "stranger: not so: " << what << '\n';
    return holds;
}

// The folder for Qt Designer holds this library alone, and it loads from there.
bool checkPlugin(const QString& folder)
{
    const QStringList entries = QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    if (!check(entries.size() == 1 && QLibrary::isLibrary(entries.first()), "one library in the plugin folder"))
        return false;
    QPluginLoader loader(QDir(folder).filePath(entries.first()));
    const QObject* root = loader.instance();
    if (!root)
        QTextStream(stderr) << loader.errorString() << '\n';
    return check(root && root->inherits("WidgetCollection"), "the plugin's root object");
}

#ifdef STRANGER_USES_HOST
class Handler final : public orvek::base::BaseMouseHandler
{
public:
    void MouseDown(int, int, int) override { ++held; }
    void MouseUp(int, int, int) override { --held; }
    void MouseDoubleClick(int, int, int) override {}
    void MouseMove(int, int) override {}
    void MouseWheel(int, int) override {}
    void KeyboardInput(unsigned int, bool, int) override {}
    int held = 0;
};

bool checkHost(QRenderWidget* view)
{
    Handler handler;
    const orvek::host::ViewInput input(view, &handler);
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(view, &press);
    const bool held = handler.held == 1;
    view->hide();
    bool good = check(held && handler.held == 0, "a view that hides releases the button");
    struct Fog
    {
        float density = 0.5F;
    };
    orvek::host::Description<Fog> fog(QStringLiteral("Fog"));
    fog.number("density", &Fog::density).title(QStringLiteral("Density"));
    const Fog thick{1.0F};
    good &= check(fog.type() && fog.type()->read(&thick, 0) == 1.0, "a struct is described");
    return good;
}
#endif
} // namespace

// Arguments: the folder where Qt Designer would look, if it is to be looked at.
int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QWidget window;
    Ui::StrangersForm form;
    form.setupUi(&window);
    window.show();

    bool good = true;
    form.aperture->setValue(90.0);
    good &= check(form.aperture->value().toDouble() == 22.0, "the range from the form holds");
    good &= check(form.blades->windowTitle() == QLatin1String("Blades"), "the title from the form is set");

    int changes = 0;
    QObject::connect(form.aperture, &QSliderEdit::valueChanged, &window, [&changes] { ++changes; });
    auto* text = form.aperture->findChild<QLineEdit*>(QStringLiteral("lineEdit"));
    text->setText(QStringLiteral("5.6"));
    QMetaObject::invokeMethod(text, "editingFinished");
    good &=
        check(form.aperture->value().toDouble() == 5.6 && changes > 0, "a typed number is taken over and announced");

    form.panel->findChild<QLineEdit*>(QStringLiteral("search"))->setText(QStringLiteral("bla"));
    good &= check(form.blades->isVisible() && !form.tint->isVisible(), "the search of the panel reaches the section");

#ifdef STRANGER_USES_HOST
    good &= checkHost(form.view);
    form.view->SetHandleMouseInterface(nullptr);
#endif
    if (argc > 1)
        good &= checkPlugin(QString::fromLocal8Bit(argv[1]));
    return good ? 0 : 1;
}
