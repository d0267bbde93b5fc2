// A panel with two sections, built without a form. Type "co" into the search field to see what remains.
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QAccordion.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QIntSliderEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QLabelEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QPropertyPanel.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QSliderEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QVectorEdit.h>

#include <examples/Screenshot.h>

#include <QtWidgets/QApplication>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QVBoxLayout>

namespace
{
// A section and the layout for its editors. The search filters the direct children of the section's contents.
QVBoxLayout* addSection(QBoxLayout* sections, const QString& title)
{
    auto* section = new QAccordion;
    section->setTitle(title);
    auto* contents = new QWidget(section);
    auto* editors = new QVBoxLayout(contents);
    editors->setContentsMargins(2, 2, 2, 2);
    editors->setSpacing(2);
    sections->addWidget(section);
    return editors;
}

template <typename Editor>
Editor* addEditor(QBoxLayout* editors, const QString& title)
{
    auto* editor = new Editor;
    editor->setTitle(title);
    editors->addWidget(editor);
    return editor;
}
} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);

    QPropertyPanel panel;
    panel.setWindowTitle(QStringLiteral("Panel from Code"));
    // The panel lays out a scroll area that becomes its child.
    auto* scrollArea = new QScrollArea(&panel);
    scrollArea->setWidgetResizable(true);
    auto* contents = new QWidget;
    auto* sections = new QVBoxLayout(contents);
    scrollArea->setWidget(contents);

    QVBoxLayout* cloud = addSection(sections, QStringLiteral("Clouds"));
    addEditor<QLabelEdit>(cloud, QStringLiteral("Name"))->setValue(QStringLiteral("Cumulus"));
    auto* cover = addEditor<QSliderEdit>(cloud, QStringLiteral("Cover"));
    cover->setDefaultValue(0.3);
    cover->setValue(0.45);
    auto* wind = addEditor<QVectorEdit>(cloud, QStringLiteral("Wind"));
    wind->setMinimumHeight(0); // the form makes it much higher than a row
    wind->setTextWidth(56);
    wind->setUnits(QStringLiteral("m/s"));
    wind->setValue({4.0F, -1.5F, 0.0F});

    QVBoxLayout* rain = addSection(sections, QStringLiteral("Rain"));
    auto* amount = addEditor<QSliderEdit>(rain, QStringLiteral("Amount"));
    amount->setUnits(QStringLiteral("mm/h"));
    amount->setMaximum(50.0);
    amount->setValue(2.0);
    auto* drops = addEditor<QIntSliderEdit>(rain, QStringLiteral("Drop count"));
    drops->setMinimum(256);
    drops->setMaximum(65536);
    drops->setPowerOfTwo(true);
    drops->setDefaultValue(4096);
    drops->setValue(4096);

    // Without it the sections would spread over the height of the window.
    sections->addStretch();
    panel.resize(460, 340);
    panel.show();
    takeScreenshotOnRequest(&panel);
    return QApplication::exec();
}
