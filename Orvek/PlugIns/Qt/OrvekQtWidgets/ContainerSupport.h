#pragma once

#include <QtCore/QVector>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QWidget>

// Code that the two containers share. They lay out a child during its child event. That event can come in the middle of
// a host's own call that adds the child to their layout(), which then adds a second item.
namespace ContainerSupport
{
inline bool holds(QLayoutItem* item, const QObject* child)
{
    const QLayout* layout = item->layout();
    for (int i = 0; layout && i < layout->count(); ++i)
        if (holds(layout->itemAt(i), child))
            return true;
    return item->widget() == child;
}

// The layout of a container. When the host adds a child, its item, with place, stretch and alignment, replaces the
// container's.
class Column final : public QVBoxLayout
{
public:
    void adopt(QWidget* child)
    {
        addWidget(child);
        m_own << itemAt(indexOf(child));
    }

    // Every call that adds an item ends here.
    void invalidate() override
    {
        QVBoxLayout::invalidate();
        for (int own = 0; own < m_own.size(); ++own)
        {
            const int index = indexOf(m_own.at(own));
            if (index >= 0 && !isLaidOutBeside(index))
                continue;
            m_own.remove(own--);
            if (index >= 0)
                delete takeAt(index);
        }
    }

private:
    bool isLaidOutBeside(int index) const
    {
        for (int i = 0; i < count(); ++i)
            if (i != index && holds(itemAt(i), itemAt(index)->widget()))
                return true;
        return false;
    }

    QVector<QLayoutItem*> m_own; // the container's items; the host may have deleted one
};

// Replaces the form's layout, as a form can only name Qt's own layouts. The widget is the one in that layout; it stays
// after the layout in the list of children.
inline QVBoxLayout* columnInPlaceOf(QVBoxLayout* fromForm, QWidget* widget)
{
    QWidget* container = fromForm->parentWidget();
    auto* column = new Column;
    column->setObjectName(fromForm->objectName());
    column->setSpacing(fromForm->spacing());
    column->setContentsMargins(fromForm->contentsMargins());
    delete fromForm;
    widget->setParent(nullptr);
    container->setLayout(column);
    column->addWidget(widget);
    return column;
}

// Adds the child to the container's layout, unless there is none or the host has laid the child out already.
inline void layOut(const QWidget* container, QWidget* child)
{
    QLayout* layout = container->layout();
    if (!layout || holds(layout, child))
        return;
    if (auto* column = dynamic_cast<Column*>(layout))
        column->adopt(child);
    else
        layout->addWidget(child);
}

// To be called when a child is removed: Qt's layouts then remove only one of its items.
inline void forget(const QWidget* container, const QObject* child)
{
    QLayout* layout = container->layout();
    for (int i = layout ? layout->count() - 1 : -1; i >= 0; --i)
        if (layout->itemAt(i)->widget() == child)
            delete layout->takeAt(i);
}
} // namespace ContainerSupport
