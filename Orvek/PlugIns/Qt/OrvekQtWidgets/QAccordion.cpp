#include "QAccordion.h"

#include "ContainerSupport.h"
#include "EditorSupport.h"

#include <QtCore/QChildEvent>
#include <QtCore/QSettings>
#include <QtGui/QPainter>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOption>

#include <algorithm>
#include <vector>

namespace
{
// What the search compares. The class must be exactly one of the two: a derived button gives itself a window title.
QString searchLabel(const QWidget* child)
{
    QString label = child->windowTitle();
    if (!label.isEmpty())
        return label;
    const char* className = child->metaObject()->className();
    if (qstrcmp(className, "QPushButton") == 0 || qstrcmp(className, "QCheckBox") == 0)
        label = static_cast<const QAbstractButton*>(child)->text();
    return label;
}

void applyStyleAgain(QStyle* style, QWidget* widget)
{
    style->unpolish(widget);
    style->polish(widget);
}

// Returns whether the mark was another one before.
bool setHighlighted(QWidget* widget, bool highlighted)
{
    const QVariant before = widget->property("highlighted");
    if (before.isValid() && before == QVariant(highlighted))
        return false;
    widget->setProperty("highlighted", highlighted);
    return true;
}

QString borderSheet()
{
    return QStringLiteral("QAccordion {border: 1px solid yellow;}");
}

bool hasStyleSheet(const QWidget* widget)
{
    return !widget->styleSheet().isEmpty();
}

// Whether a host has set a style sheet on the section or around it.
bool isStyledFromOutside(const QWidget* section)
{
    if (hasStyleSheet(section) && section->styleSheet() != borderSheet())
        return true;
    for (const QWidget* ancestor = section->parentWidget(); ancestor; ancestor = ancestor->parentWidget())
        if (hasStyleSheet(ancestor))
            return true;
    return false;
}

// Without the lists and casts of findChildren(), as a search asks this of every section at each letter.
template <typename Condition>
bool anyInside(const QWidget* widget, Condition condition)
{
    const QObjectList& children = widget->children();
    return std::any_of(children.cbegin(), children.cend(),
                       [&condition](const QObject* child)
                       {
                           if (!child->isWidgetType())
                               return false;
                           const auto* inside = static_cast<const QWidget*>(child);
                           return condition(inside) || anyInside(inside, condition);
                       });
}

// Whether a style sheet besides the border can draw something in the section.
bool hasForeignStyleSheet(const QWidget* section, const QWidget* contents)
{
    return !qApp->styleSheet().isEmpty() || isStyledFromOutside(section) || hasStyleSheet(contents) ||
           anyInside(contents, hasStyleSheet);
}

// Takes a child out of the list that Qt walks when its parent gets a style sheet, and puts it back: each of some 160
// descendants would be polished anew for a border that draws nothing in them.
class AsideFromStyling
{
public:
    explicit AsideFromStyling(QWidget* child)
        : m_siblings(const_cast<QObjectList&>(child->parent()->children())),
          m_index(m_siblings.indexOf(child)),
          m_child(child)
    {
        m_siblings.removeAt(m_index);
    }
    ~AsideFromStyling()
    {
        if (m_child)
            m_siblings.insert(qMin(m_index, m_siblings.size()), m_child);
    }

private:
    Q_DISABLE_COPY(AsideFromStyling)
    QObjectList& m_siblings;
    const int m_index;
    const QPointer<QObject> m_child;
};

struct Change
{
    QPointer<QWidget> widget; // a host may delete one when another is shown
    bool visible;
};

// The layouts that Qt activates whenever a child of the widget is shown, from the inside out.
QVector<QPointer<QLayout>> layoutsAbove(QWidget* widget)
{
    QVector<QPointer<QLayout>> layouts;
    for (QWidget* level = widget; level && level->isVisible() && level->layout(); level = level->parentWidget())
    {
        layouts.append(level->layout());
        if (level->isWindow())
            break;
    }
    return layouts;
}

// Shows and hides the children. Each one shown would activate all layouts above, which costs the square of their
// number; here the layouts stand still until the last of a row of them.
void applyChanges(const std::vector<Change>& changes, QWidget* contents)
{
    const QVector<QPointer<QLayout>> layouts = layoutsAbove(contents);
    const auto setEnabled = [&layouts](bool enabled)
    {
        for (QLayout* layout : layouts)
            if (layout)
                layout->setEnabled(enabled);
    };
    for (std::size_t first = 0; first < changes.size();)
    {
        std::size_t last = first;
        while (changes.at(last).visible && last + 1 < changes.size() && changes.at(last + 1).visible)
            ++last;
        setEnabled(false);
        for (std::size_t i = first; i < last; ++i)
            if (changes.at(i).widget)
                changes.at(i).widget->setVisible(true);
        setEnabled(true);
        if (changes.at(last).widget)
            changes.at(last).widget->setVisible(changes.at(last).visible);
        first = last + 1;
    }
}
} // namespace

QAccordion::QAccordion(QWidget* parent) : QWidget(parent)
{
    m_ui.setupUi(this);
    m_checkBox = m_ui.accordionCheckBox;
    on_accordionCheckBox_toggled();
    setWindowTitle(title());
    m_constructed = true;
}

QString QAccordion::title() const
{
    return m_checkBox ? m_checkBox->text() : windowTitle();
}

void QAccordion::setTitle(QString title)
{
    if (m_checkBox)
        m_checkBox->setText(title);
    setWindowTitle(this->title());
}

bool QAccordion::isOpen() const
{
    return m_checkBox && m_checkBox->isChecked();
}

void QAccordion::setOpen(bool open)
{
    if (m_checkBox)
        m_checkBox->setChecked(open);
}

void QAccordion::readSettings(QSettings& settings)
{
    setOpen(settings.value(objectName()).toBool());
}

void QAccordion::writeSettings(QSettings& settings)
{
    settings.setValue(objectName(), isOpen());
}

void QAccordion::on_accordionCheckBox_toggled()
{
    hookupContentsWidget();
    if (!m_contentsWidget)
        return;
    const EditorSupport::SignalMute mute(this);
    if (isOpen())
    {
        m_contentsWidget->setAttribute(Qt::WA_DontShowOnScreen, false);
        if (QLayout* contentsLayout = m_contentsWidget->layout())
            contentsLayout->update();
        m_contentsWidget->show();
    }
    else
    {
        m_contentsWidget->setAttribute(Qt::WA_DontShowOnScreen, true);
        m_contentsWidget->hide();
    }
}

void QAccordion::setSearchText(const QString& text)
{
    const QString ownTitle = windowTitle();
    hookupContentsWidget();
    if (!m_contentsWidget)
        return;
    const QList<QWidget*> children = m_contentsWidget->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    const bool showAll = text.isEmpty() || ownTitle.contains(text, Qt::CaseInsensitive);
    // Under a host's style sheets everything is styled anew each time, as their rules may ask for any property.
    const bool styled = hasForeignStyleSheet(this, m_contentsWidget);
    bool found = showAll;
    std::vector<Change> changes;
    changes.reserve(std::size_t(children.size()));
    for (QWidget* child : children)
    {
        const bool matches = showAll || searchLabel(child).contains(text, Qt::CaseInsensitive);
        found = found || matches;
        if (!showAll && (setHighlighted(child, matches) || styled))
            applyStyleAgain(style(), child);
        if (child->isHidden() == matches || !child->testAttribute(Qt::WA_WState_ExplicitShowHide))
            changes.push_back({child, matches});
    }
    applyChanges(changes, m_contentsWidget);
    if (!m_contentsWidget) // a host may delete it while its children come and go
        return;
    if (found && m_checkBox && !m_checkBox->isChecked())
        m_checkBox->setChecked(true);
    setMark(found && !text.isEmpty(), styled);
    update();
}

// Property and border. Everything in it is done as if both were set anew each time, where somebody could see it.
void QAccordion::setMark(bool mark, bool styled)
{
    const QString sheet = mark ? borderSheet() : QString();
    const QString before = styleSheet();
    bool polish = setHighlighted(this, mark);
    // Sections inside obey the border's rule, too.
    const auto isSection = [](const QWidget* widget) { return qobject_cast<const QAccordion*>(widget) != nullptr; };
    if (styled || m_contentsWidget->parent() != this || anyInside(m_contentsWidget, isSection))
    {
        if (m_contentsAside)
            styleContentsToo();
        setStyleSheet(sheet);
        applyStyleAgain(style(), this);
        return;
    }
    if (sheet != before)
    {
        m_contentsAside = mark;
        if (mark)
        {
            const AsideFromStyling aside(m_contentsWidget);
            setStyleSheet(sheet);
        }
        else
        {
            setStyleSheet(sheet);
        }
        // A new sheet polishes what was polished before.
        polish = !testAttribute(Qt::WA_WState_Polished);
    }
    if (polish)
        applyStyleAgain(style(), this);
    if (!m_contentsWidget || (sheet.isEmpty() && before.isEmpty()))
        return;
    // What else a style sheet does to the widgets inside: their sizes are asked for again.
    m_contentsWidget->updateGeometry();
    if (QLayout* contentsLayout = m_contentsWidget->layout())
        contentsLayout->invalidate();
    updateGeometry();
    if (QLayout* rows = layout())
        rows->invalidate();
}

// Qt hands a style on to the widgets inside only when it sets the first style sheet.
void QAccordion::styleContentsToo()
{
    m_contentsAside = false;
    const QString sheet = styleSheet();
    setStyleSheet(QString());
    setStyleSheet(sheet);
}

void QAccordion::childEvent(QChildEvent* event)
{
    if (event->type() == QEvent::ChildRemoved)
        ContainerSupport::forget(this, event->child());
    if (!m_constructed || event->type() != QEvent::ChildAdded)
        return;
    if (event->child()->isWidgetType() && !m_contentsWidget && event->child() != m_checkBox)
    {
        m_contentsWidget = static_cast<QWidget*>(event->child());
        ContainerSupport::layOut(this, m_contentsWidget);
    }
    updateGeometry();
    update();
}

void QAccordion::paintEvent(QPaintEvent*)
{
    // A style sheet that came from outside in the meantime has not reached contents that stand aside.
    if (m_contentsAside && isStyledFromOutside(this))
        styleContentsToo();
    QStyleOption option;
    option.initFrom(this);
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
}

// The last widget of the layout besides the check box, if the section has no contents yet.
void QAccordion::hookupContentsWidget()
{
    const QLayout* rows = layout();
    if (m_contentsWidget || !rows)
        return;
    for (int i = 0; i < rows->count(); ++i)
    {
        QWidget* widget = rows->itemAt(i)->widget();
        if (widget && widget != m_checkBox)
            m_contentsWidget = widget;
    }
}
