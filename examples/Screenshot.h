#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QStringList>
#include <QtCore/QTimer>
#include <QtGui/QPixmap>
#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <QtWidgets/QWidget>

//! With the arguments "--screenshot FILE" the program saves a picture of the visible window and exits: with 0 on
//! success.
inline void takeScreenshotOnRequest(QWidget* window)
{
    const QStringList arguments = QCoreApplication::arguments();
    const int option = arguments.indexOf(QStringLiteral("--screenshot"));
    if (option < 0)
        return;
    const QString file = arguments.value(option + 1);
    constexpr int untilDrawn = 500; // milliseconds, as platforms do not report when a frame is on the screen
    QTimer::singleShot(untilDrawn, window,
                       [window, file]
                       {
                           // From the screen, so that it includes what an engine draws without Qt.
                           const QPixmap picture = window->windowHandle()->screen()->grabWindow(window->winId());
                           QCoreApplication::exit(picture.save(file, "PNG") ? 0 : 1);
                       });
}
