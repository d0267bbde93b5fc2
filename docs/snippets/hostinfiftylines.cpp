//! [host]
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QAccordion.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QPropertyPanel.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QSliderEdit.h>

#include <QtWidgets/QApplication>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QVBoxLayout>

struct Light
{
    double intensity = 2.0; // klx
    double angle = 30.0;    // degrees
};

void addEditor(QLayout* rows, const QString& title, const QString& units, double maximum, double* property)
{
    auto* editor = new QSliderEdit;
    editor->setTitle(title);
    editor->setUnits(units);
    editor->setMaximum(maximum); // the range first, the value last
    editor->setDefaultValue(*property);
    editor->setValue(*property);
    QObject::connect(editor, &QSliderEdit::valueChanged, [=] { *property = editor->value().toDouble(); });
    rows->addWidget(editor);
}

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    Light light;
    auto* contents = new QWidget; // of the section; a search filters its direct children
    auto* rows = new QVBoxLayout(contents);
    addEditor(rows, "Intensity", "klx", 8.0, &light.intensity);
    addEditor(rows, "Angle", "deg", 90.0, &light.angle);
    auto* section = new QAccordion;
    section->setTitle("Light");
    section->layout()->addWidget(contents);

    auto* page = new QWidget; // of the scroll area: one section below the other
    (new QVBoxLayout(page))->addWidget(section);
    page->layout()->setAlignment(Qt::AlignTop);
    auto* scrollArea = new QScrollArea;
    scrollArea->setWidgetResizable(true);
    scrollArea->setWidget(page);

    QPropertyPanel panel;
    scrollArea->setParent(&panel); // the panel lays it out below its search field
    panel.show();
    return application.exec();
}
//! [host]
