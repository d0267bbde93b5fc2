#pragma once

#include <QtCore/QVector>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QWidget>

#include <initializer_list>

// A layout item for one widget and its companions: they share the space that the layout gives the item, and hidden ones
// take none. The layout sees an item of the one widget only.
class CompanionItem : public QWidgetItem
{
public:
    // The widgets are laid out in the given direction; the main one is among them. None is owned.
    CompanionItem(QWidget* main, QBoxLayout::Direction direction, std::initializer_list<QWidget*> widgets)
        : QWidgetItem(main), m_direction(direction), m_widgets(widgets)
    {
    }

    QSize sizeHint() const override { return Line(*this).sizeHint(); }
    QSize minimumSize() const override { return Line(*this).minimumSize(); }
    QSize maximumSize() const override { return Line(*this).maximumSize(); }
    Qt::Orientations expandingDirections() const override { return Line(*this).expandingDirections(); }
    bool isEmpty() const override { return Line(*this).isEmpty(); }
    // None of the widgets has a height that depends on its width.
    bool hasHeightForWidth() const override { return false; }
    int heightForWidth(int) const override { return -1; }
    void setGeometry(const QRect& rect) override
    {
        m_rect = rect;
        Line line(*this);
        // In a row they stay together at the start.
        if (m_direction == QBoxLayout::LeftToRight)
            line.addStretch();
        line.setGeometry(rect);
    }
    QRect geometry() const override { return m_rect; }

private:
    Q_DISABLE_COPY(CompanionItem)

    // Built for each query, so it always sees which widgets have changed.
    class Line : public QBoxLayout
    {
    public:
        explicit Line(const CompanionItem& item) : QBoxLayout(item.m_direction)
        {
            // A layout without a parent widget does not mirror itself for right-to-left languages.
            if (item.m_direction == LeftToRight && item.wid->isRightToLeft())
                setDirection(RightToLeft);
            setContentsMargins(0, 0, 0, 0);
            setSpacing(1);
            for (QWidget* widget : item.m_widgets)
            {
                addItem(new QWidgetItem(widget));
                // Above and below the main widget, they are centred on it.
                if (item.m_direction == TopToBottom && widget != item.wid)
                    setAlignment(widget, Qt::AlignHCenter);
            }
        }
    };

    const QBoxLayout::Direction m_direction;
    const QVector<QWidget*> m_widgets;
    QRect m_rect;
};

// A QHBoxLayout or QVBoxLayout that is never narrower than its items: Qt would squeeze the rectangles of widgets with
// fixed widths and let them overlap. The editor cuts off what extends beyond its right edge. Qt places nothing beyond
// the left one, so the right end is cut off in right-to-left layouts, too.
template <typename Box>
class UnsqueezedBox : public Box
{
public:
    void setGeometry(const QRect& rect) override
    {
        Box::setGeometry(QRect(rect.topLeft(), QSize(qMax(rect.width(), this->minimumSize().width()), rect.height())));
    }
};
