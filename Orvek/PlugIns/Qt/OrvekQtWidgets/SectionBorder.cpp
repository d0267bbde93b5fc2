#include "SectionBorder.h"

#include "ContainerSupport.h"
#include "QAccordion.h"
#include "SectionSearch.h"

#include <QtCore/QEvent>
#include <QtCore/QRegularExpression>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStyle>

#include <algorithm>
#include <utility>

namespace
{
QString borderSheet()
{
    return QStringLiteral("QAccordion {border: 1px solid yellow;}");
}

// Qt's style for sheets reads those of all ancestors whenever it polishes a widget; other styles read none.
bool readsStyleSheets(const QWidget* widget)
{
    return widget->style()->inherits("QStyleSheetStyle");
}

// Makes the widget inherit its parent's style, as when its own sheet is removed. A widget with a sheet keeps its style.
void inheritStyle(QWidget* widget)
{
    if (!widget->styleSheet().isEmpty())
        return;
    widget->setStyleSheet(QStringLiteral("/**/"));
    widget->setStyleSheet(QString());
}

// Keeps a child off the list that Qt goes through when its parent gets a style sheet.
class OutOfTheList
{
public:
    explicit OutOfTheList(QWidget* child)
        : m_parent(child->parentWidget()),
          m_siblings(const_cast<QObjectList&>(m_parent->children())),
          m_index(m_siblings.indexOf(child)),
          m_child(child)
    {
        m_siblings.removeAt(m_index);
    }
    ~OutOfTheList()
    {
        if (m_child && m_child->parent() == m_parent)
            m_siblings.insert(qMin(m_index, m_siblings.size()), m_child);
        else // moved away in the meantime, unnoticed by the parent and its layout
            ContainerSupport::forget(m_parent, m_key);
    }

private:
    Q_DISABLE_COPY(OutOfTheList)
    QWidget* const m_parent;
    QObjectList& m_siblings;
    const int m_index;
    const QPointer<QWidget> m_child;
    const QObject* const m_key = m_child;
};

bool isMarked(const QWidget* widget)
{
    return widget->property("highlighted").toBool();
}

void collectSheets(const QWidget* widget, QStringList* sheets)
{
    if (!widget->styleSheet().isEmpty())
        sheets->append(widget->styleSheet());
    for (const QObject* child : widget->children())
        if (child->isWidgetType())
            collectSheets(static_cast<const QWidget*>(child), sheets);
}
} // namespace

SectionBorder::SectionBorder(QWidget* section) : m_section(section)
{
    section->installEventFilter(this);
}

void SectionBorder::setMark(bool mark, QWidget* contents, const QSet<const QObject*>& changed)
{
    const QString sheet = mark ? borderSheet() : QString();
    const bool markChanged = SectionSearch::setMark(m_section, mark);
    const bool sheetChanged = m_section->styleSheet() != sheet;
    const bool insideIsStyled = sheetChanged && setSheet(sheet, contents);
    if (markChanged || sheetChanged)
        SectionSearch::polish(m_section->style(), m_section);
    // Without any sheets, an ancestor's included, setting an empty one has no effect.
    const bool hasSheets =
        !sheet.isEmpty() || (readsStyleSheets(m_section) && m_section->style() != QApplication::style());
    if (insideIsStyled || !contents || !(sheetChanged || hasSheets))
        return;
    // A sheet makes every widget that it reaches compute its size hints again.
    for (QWidget* widget : {contents, m_section})
    {
        widget->updateGeometry();
        if (QLayout* rows = widget->layout())
            rows->invalidate();
    }
    const bool all = markChanged || sheetChanged;
    if (!all && changed.isEmpty())
        return;
    readRules(contents);
    if (m_targets.empty())
        return;
    int marks = mark || markChanged ? 1 : 0;
    for (const QWidget* ancestor = m_section->parentWidget(); ancestor; ancestor = ancestor->parentWidget())
        marks += isMarked(ancestor) ? 1 : 0;
    const auto rows = contents->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget* row : rows)
        if (all || changed.contains(row))
            restyle(row, marks + (isMarked(row) || changed.contains(row) ? 1 : 0));
    if (markChanged && !sheetChanged)
        restyle(m_section, marks);
}

// Returns true if Qt has styled the contents again.
bool SectionBorder::setSheet(const QString& sheet, QWidget* contents)
{
    const QString before = m_section->styleSheet();
    const bool borderOnly = sheet.isEmpty() ? before == borderSheet() && m_aside == contents : before.isEmpty();
    // Not if the section has a style of its own, which its contents would inherit; if sections inside obey the border's
    // rule; or before the first polish, when nothing is styled yet.
    if (!borderOnly || !contents || contents->parent() != m_section || m_section->testAttribute(Qt::WA_SetStyle) ||
        !m_section->testAttribute(Qt::WA_WState_Polished) || contents->findChild<QAccordion*>())
    {
        m_aside = nullptr;
        m_section->setStyleSheet(sheet);
        return true;
    }
    const QPointer<QWidget> alive(contents);
    m_aside = sheet.isEmpty() ? nullptr : contents;
    // First among the filters, so that no other sees the section without its contents.
    m_section->installEventFilter(this);
    m_holdsBack = true;
    {
        const OutOfTheList out(contents);
        m_section->setStyleSheet(sheet);
    }
    m_holdsBack = false;
    QEvent change(QEvent::StyleChange);
    QCoreApplication::sendEvent(m_section, &change);
    if (!alive || contents->parent() != m_section)
        return true;
    // The sheet of an ancestor may have been removed while the contents were kept out.
    if (sheet.isEmpty() && contents->style() != m_section->style() && !contents->testAttribute(Qt::WA_SetStyle))
        inheritStyle(contents);
    return false;
}

bool SectionBorder::eventFilter(QObject*, QEvent* event)
{
    if (event->type() == QEvent::StyleChange && m_holdsBack)
        return true;
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::ParentChange)
        followSheets();
    // A section moved into another one obeys the border there.
    if (event->type() == QEvent::ParentChange || event->type() == QEvent::Show)
        for (const QWidget* ancestor = m_section->parentWidget(); ancestor; ancestor = ancestor->parentWidget())
            if (const auto* outer = qobject_cast<const QAccordion*>(ancestor))
                outer->m_border->handOn();
    return false;
}

// Contents that were kept out may have a style that does not read sheets, and pass it on to widgets added later.
void SectionBorder::followSheets()
{
    if (m_section->styleSheet().isEmpty())
        m_aside = nullptr; // the host removed the border, and Qt styled the contents
    else if (m_section->styleSheet() != borderSheet() ||
             (m_section->parentWidget() && readsStyleSheets(m_section->parentWidget())))
        handOn();
}

void SectionBorder::handOn()
{
    if (!m_aside || readsStyleSheets(m_aside))
        return;
    if (m_aside->parent() == m_section)
        inheritStyle(m_aside);
    m_aside = nullptr;
}

// Collects from all sheets in force the widgets that a rule selects by a mark.
void SectionBorder::readRules(const QWidget* contents)
{
    QStringList sheets{qApp->styleSheet()};
    for (const QWidget* ancestor = m_section->parentWidget(); ancestor; ancestor = ancestor->parentWidget())
        sheets << ancestor->styleSheet();
    const int outside = sheets.size();
    collectSheets(contents, &sheets);
    if (sheets == m_sheets)
        return;
    m_sheets = sheets;
    m_targets.clear();
    static const QRegularExpression noise(QStringLiteral(R"(/\*.*?\*/|(["'])(?:(?!\1).)*\1)"),
                                          QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression combinator(QStringLiteral(R"(\s*>\s*|\s+)"));
    static const QRegularExpression subject(QStringLiteral(R"(^([A-Za-z_]\w*(?![\w-]))?(?:[^#]*#([\w-]+))?)"));
    for (int i = 0; i < sheets.size(); ++i)
    {
        QString sheet = sheets.at(i);
        // Files, at-rules and escapes are not parsed here; with them everything is styled again.
        if (sheet.startsWith(QLatin1String("file:")) || sheet.contains(QLatin1Char('@')) ||
            sheet.contains(QLatin1Char('\\')))
            m_targets.push_back({});
        if (!sheet.contains(QLatin1String("highlighted")))
            continue;
        sheet.replace(QLatin1String("\"true\""), QLatin1String("true")).remove(noise);
        const QStringList rules = sheet.split(QLatin1Char('}'));
        for (const QString& rule : rules)
        {
            const QStringList selectors = rule.section(QLatin1Char('{'), 0, 0).split(QLatin1Char(','));
            for (const QString& selector : selectors)
            {
                const QStringList parts = selector.trimmed().split(combinator);
                const QStringList asking = parts.filter(QStringLiteral("highlighted"));
                // If only its own mark counts, a widget is polished when that changes; but with the section's style,
                // which may not read a sheet inside.
                if (asking.isEmpty() || (i < outside && asking == parts.mid(parts.size() - 1)))
                    continue;
                const bool forMarked = asking.filter(QStringLiteral("[highlighted=true]")) == asking;
                const QRegularExpressionMatch match = subject.match(parts.last());
                m_targets.push_back(
                    {match.captured(1).toLatin1(), match.captured(2), forMarked ? int(asking.size()) : 0});
            }
        }
    }
}

// Styles the widgets for which a rule may have started or ceased to apply. The marks count the root and its ancestors
// that are marked or were until now.
void SectionBorder::restyle(QWidget* root, int marks) const
{
    const auto isTarget = [this, marks](const QWidget* widget)
    {
        return std::any_of(m_targets.cbegin(), m_targets.cend(),
                           [widget, marks](const Target& target)
                           {
                               return target.marks <= marks &&
                                      (target.objectName.isEmpty() || widget->objectName() == target.objectName) &&
                                      (target.className.isEmpty() || widget->inherits(target.className));
                           });
    };
    QWidgetList inside = root->findChildren<QWidget*>();
    inside << root;
    for (QWidget* widget : std::as_const(inside))
    {
        if (!isTarget(widget))
            continue;
        widget->style()->polish(widget);
        QEvent change(QEvent::StyleChange);
        QCoreApplication::sendEvent(widget, &change);
    }
}
