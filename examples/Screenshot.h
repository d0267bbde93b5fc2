#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QStringList>
#include <QtCore/QTimer>
#include <QtGui/QPixmap>
#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <QtWidgets/QWidget>

//! With the arguments "--screenshot FILE" the program saves a picture of the shown window and ends: 0 if that worked.
inline void takeScreenshotOnRequest(QWidget* window)
{
    const QStringList arguments = QCoreApplication::arguments();
    const int option = arguments.indexOf(QStringLiteral("--screenshot"));
    if (option < 0)
        return;
    const QString file = arguments.value(option + 1);
    constexpr int untilDrawn = 500; // milliseconds, as no platform tells when a frame is on the screen
    QTimer::singleShot(untilDrawn, window,
                       [window, file]
                       {
                           // From the screen, which also has what an engine draws past Qt.
                           const QPixmap picture = window->windowHandle()->screen()->grabWindow(window->winId());
                           QCoreApplication::exit(picture.save(file, "PNG") ? 0 : 1);
                       });
}
