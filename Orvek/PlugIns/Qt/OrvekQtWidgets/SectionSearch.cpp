#include "SectionSearch.h"

#include <QtCore/QPointer>
#include <QtCore/QVariant>
#include <QtCore/QVector>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QStyle>

#include <utility>

namespace SectionSearch
{
namespace
{
// The class must be exactly one of the two: a derived button gives itself a window title.
QString labelOf(const QWidget* child)
{
    QString title = child->windowTitle();
    const char* className = child->metaObject()->className();
    if (title.isEmpty() && (qstrcmp(className, "QPushButton") == 0 || qstrcmp(className, "QCheckBox") == 0))
        return static_cast<const QAbstractButton*>(child)->text();
    return title;
}
} // namespace

void polish(QStyle* style, QWidget* widget)
{
    style->unpolish(widget);
    style->polish(widget);
}

bool setMark(QWidget* widget, bool mark)
{
    const QVariant before = widget->property("highlighted");
    if (before.userType() == QMetaType::Bool && before.toBool() == mark)
        return false;
    widget->setProperty("highlighted", mark);
    return true;
}

Result apply(const QWidget* section, const QWidget* contents, const QString& title, const QString& text)
{
    Result result;
    QVector<QPointer<QWidget>> children;
    for (QObject* child : contents->children())
        if (child->isWidgetType())
            children << static_cast<QWidget*>(child);
    const bool showAll = text.isEmpty() || title.contains(text, Qt::CaseInsensitive);
    result.found = showAll;
    for (const QPointer<QWidget>& child : std::as_const(children))
    {
        if (!child)
            continue;
        const bool matches = showAll || labelOf(child).contains(text, Qt::CaseInsensitive);
        result.found |= matches;
        child->setVisible(matches);
        // A slot of the host may have deleted it by now.
        if (showAll || child.isNull() || !setMark(child, matches))
            continue;
        polish(section->style(), child);
        result.changed << child;
    }
    return result;
}
} // namespace SectionSearch
