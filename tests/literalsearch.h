#pragma once

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QAccordion.h>

#include <QtCore/QVariant>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLayout>
#include <QtWidgets/QStyle>

// The search of a section step by step, with no work saved, from outside and through public operations only. What
// QAccordion does must not be told from it; tests compare the two and benchmarks say what was gained.
namespace LiteralSearch
{
inline QString label(const QWidget* child)
{
    const QByteArray className = child->metaObject()->className();
    const bool button = className == "QPushButton" || className == "QCheckBox";
    return child->windowTitle().isEmpty() && button ? static_cast<const QAbstractButton*>(child)->text()
                                                    : child->windowTitle();
}

inline QWidget* contents(const QAccordion& section)
{
    return section.layout()->count() > 1 ? section.layout()->itemAt(1)->widget() : nullptr;
}

inline void restyle(QStyle* style, QWidget* widget)
{
    style->unpolish(widget);
    style->polish(widget);
}

inline void apply(QAccordion& section, const QString& text)
{
    const QString ownTitle = section.windowTitle();
    if (!contents(section))
        return;
    const auto children = contents(section)->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    bool found = false;
    if (text.isEmpty() || ownTitle.contains(text, Qt::CaseInsensitive))
    {
        for (QWidget* child : children)
            child->show();
        found = true;
    }
    else
    {
        for (QWidget* child : children)
        {
            const bool matches = label(child).contains(text, Qt::CaseInsensitive);
            found |= matches;
            child->setVisible(matches);
            child->setProperty("highlighted", matches);
            restyle(section.style(), child);
        }
    }
    auto* box = section.findChild<QCheckBox*>(QStringLiteral("accordionCheckBox"), Qt::FindDirectChildrenOnly);
    if (found && !box->isChecked())
        box->setChecked(true);
    const bool highlight = found && !text.isEmpty();
    section.setProperty("highlighted", highlight);
    section.setStyleSheet(highlight ? QStringLiteral("QAccordion {border: 1px solid yellow;}") : QString());
    restyle(section.style(), &section);
    section.update();
}

// What a panel does with a text: outer sections before those inside them.
inline void broadcast(QWidget& scrollContents, const QString& text)
{
    const auto sections = scrollContents.findChildren<QAccordion*>();
    for (QAccordion* section : sections)
        apply(*section, text);
}
} // namespace LiteralSearch
