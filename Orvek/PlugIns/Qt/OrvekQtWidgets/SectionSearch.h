#pragma once

#include <QtCore/QSet>
#include <QtWidgets/QWidget>

// How a section compares its children with a search text, shows and hides them and sets their marks.
namespace SectionSearch
{
struct Result
{
    bool found = false;           // something matched, or everything is shown
    QSet<const QObject*> changed; // children whose mark was not set before or changed; may be gone
};

//! Polishes with "highlighted" in mind: style sheets look at the property only then.
void polish(QStyle* style, QWidget* widget);
//! Sets the dynamic property "highlighted"; returns true if it was not set before or changed.
bool setMark(QWidget* widget, bool mark);
//! Applies the text to the direct children of the contents. Everything is shown if the text is empty or the title
//! contains it. Slots and events of the host run meanwhile; children that it deletes are skipped.
Result apply(const QWidget* section, const QWidget* contents, const QString& title, const QString& text);
} // namespace SectionSearch
