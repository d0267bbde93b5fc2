// Any QObject in a panel: this window inspects itself. Resize it and see its width follow; drag the opacity, rename it.
#include <Orvek/Host/Inspector.h>
#include <Orvek/Host/QObjectType.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QPropertyPanel.h>

#include <examples/Screenshot.h>

#include <QAction>
#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QUndoStack>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QUndoStack undoStack;
    QPropertyPanel window;
    window.setObjectName(QStringLiteral("window"));
    window.setWindowTitle(QStringLiteral("Object Inspector"));

    orvek::host::Inspector inspector(&window, &undoStack);
    inspector.setObjects(std::make_shared<orvek::host::QObjectType>(window.metaObject()), {&window});

    // Not every property has a NOTIFY signal.
    QTimer frames;
    QObject::connect(&frames, &QTimer::timeout, &inspector, &orvek::host::Inspector::refresh);
    frames.start(50);

    QAction* undo = undoStack.createUndoAction(&window);
    undo->setShortcut(QKeySequence::Undo);
    window.addAction(undo);
    window.resize(460, 620);
    window.show();
    takeScreenshotOnRequest(&window);
    return QApplication::exec();
}
