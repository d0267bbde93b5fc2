#include "snippets.h"

#include <Orvek/Host/EditorUndo.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QAccordion.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QPropertyPanel.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QLocale>
#include <QtCore/QSettings>
#include <QtCore/QTranslator>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QVBoxLayout>
#include <QUndoStack>

namespace
{
void applyToScene(QWidget* editor)
{
    editor->setProperty("applied", true);
}
} // namespace

QWidget* section()
{
    //! [QAccordion]
    auto* contents = new QWidget;
    auto* rows = new QVBoxLayout(contents);
    rows->setContentsMargins(2, 2, 2, 2);
    rows->setSpacing(2);
    rows->addWidget(sliderEdit());
    rows->addWidget(vectorEdit());
    rows->addWidget(labelEdit());

    auto* view = new QAccordion;
    view->setObjectName("viewSection"); // the key in the settings
    view->setTitle("View");
    view->layout()->addWidget(contents);
    //! [QAccordion]
    return view;
}

QWidget* panel()
{
    QWidget* view = section();
    auto* output = new QAccordion;
    output->setObjectName("outputSection");
    output->setTitle("Output");
    auto* outputContents = new QWidget;
    auto* outputRows = new QVBoxLayout(outputContents);
    outputRows->setContentsMargins(2, 2, 2, 2);
    QWidget* integers = intSliderEdit();
    const QList<QWidget*> editors = integers->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget* editor : editors)
        outputRows->addWidget(editor);
    delete integers;
    output->layout()->addWidget(outputContents);

    //! [QPropertyPanel]
    auto* page = new QWidget;
    auto* sections = new QVBoxLayout(page);
    sections->addWidget(view);
    sections->addWidget(output);
    sections->addStretch();

    auto* scrollArea = new QScrollArea;
    scrollArea->setWidgetResizable(true);
    scrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scrollArea->setWidget(page);

    auto* panel = new QPropertyPanel;
    scrollArea->setParent(panel);
    //! [QPropertyPanel]
    return panel;
}

bool translate(const QString& folder)
{
    //! [translation]
    auto* translator = new QTranslator(qApp);
    const bool found = translator->load(QLocale(), "orvekqtwidgets", "_", folder);
    if (found)
        QCoreApplication::installTranslator(translator);
    //! [translation]
    return found;
}

void styleMatches(QWidget* panel)
{
    //! [highlighted]
    panel->setStyleSheet("QAccordion[highlighted=\"true\"] QSliderEdit[highlighted=\"true\"] QLabel,"
                         "QAccordion[highlighted=\"true\"] QVectorEdit[highlighted=\"true\"] QLabel"
                         "{ color: #b06000; font-weight: bold; }");
    //! [highlighted]
}

void keepBorderedLook(QWidget* section)
{
    //! [frame]
    // Not on the section itself: a search replaces its style sheet.
    section->parentWidget()->setStyleSheet("QAccordion { border: 1px solid #c0c0c0; }");
    //! [frame]
}

void closeAfterLoading(QWidget* form)
{
    //! [closed]
    // Call it once after setupUi() or QUiLoader::load().
    for (QAccordion* section : form->findChildren<QAccordion*>())
        section->on_accordionCheckBox_toggled();
    //! [closed]
}

void saveSections(QWidget* panel, QSettings& settings)
{
    //! [save]
    settings.beginGroup("sections");
    for (QAccordion* section : panel->findChildren<QAccordion*>())
        section->writeSettings(settings);
    settings.endGroup();
    //! [save]
}

void restoreSections(QWidget* panel, QSettings& settings)
{
    //! [restore]
    settings.beginGroup("sections");
    for (QAccordion* section : panel->findChildren<QAccordion*>())
        if (settings.contains(section->objectName())) // without an entry it would close
            section->readSettings(settings);
    settings.endGroup();
    //! [restore]
}

void followWithUndo(QWidget* panel, QUndoStack* stack)
{
    //! [undo]
    auto* undo = new orvek::host::EditorUndo(stack, panel);
    for (const char* name : {"focalLength", "position", "name"})
        if (auto* editor = panel->findChild<QWidget*>(name))
            undo->add(editor);
    // The signal is the same for the user's change, its undo and its redo.
    QObject::connect(undo, &orvek::host::EditorUndo::edited, panel, [](QWidget* editor) { applyToScene(editor); });
    //! [undo]
}
