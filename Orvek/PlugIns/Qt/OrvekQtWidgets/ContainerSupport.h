#pragma once

#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtWidgets/QLayout>
#include <QtWidgets/QWidget>

// What the two containers share. They lay out a child during its child event; a host that hands the same child to their
// layout() is then in the middle of that call and adds a second item, which would take room twice and outlive the
// child.
namespace ContainerSupport
{
inline void removeItems(QLayout* layout, const QObject* child, int kept)
{
    for (int i = 0; layout && i < layout->count();)
    {
        if (layout->itemAt(i)->widget() == child && --kept < 0)
            delete layout->takeAt(i);
        else
            ++i;
    }
}

// Adds the child to the container's layout, if it has one, and sees to it that the item stays the only one.
inline void layOut(QWidget* container, QWidget* child)
{
    if (!container->layout())
        return;
    container->layout()->addWidget(child);
    QTimer::singleShot(0, child,
                       [container = QPointer<QWidget>(container), child]
                       {
                           if (container)
                               removeItems(container->layout(), child, 1);
                       });
}

// To be called when a child has gone; Qt's layouts remove one item only.
inline void forget(const QWidget* container, const QObject* child)
{
    removeItems(container->layout(), child, 0);
}
} // namespace ContainerSupport
