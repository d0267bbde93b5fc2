#pragma once

#include <QtCore/QSet>
#include <QtWidgets/QWidget>

// Compares the children of a section with a search text, shows or hides them and sets their marks.
namespace SectionSearch
{
struct Result
{
    bool found = false;           // something matched, or everything is shown
    QSet<const QObject*> changed; // children whose mark was first set or changed; may have been deleted
};

//! Polishes the widget; style sheets read "highlighted" only then.
void polish(QStyle* style, QWidget* widget);
//! Sets the dynamic property "highlighted"; returns true if the mark was first set or changed.
bool setMark(QWidget* widget, bool mark);
//! Applies the text to the direct children of the contents. Everything is shown if the text is empty or the title
//! contains it. This runs slots and events of the host; children that they delete are skipped.
Result apply(const QWidget* section, const QWidget* contents, const QString& title, const QString& text);
} // namespace SectionSearch
