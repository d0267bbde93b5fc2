#include "QPropertyPanel.h"

#include "ContainerSupport.h"

#include <QtCore/QChildEvent>
#include <QtCore/QHash>
#include <QtCore/QMetaMethod>
#include <QtGui/QPainter>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOption>

#include <cstdio>

namespace
{
bool hasSearchSlot(const QMetaObject* metaObject)
{
    const int index = metaObject->indexOfMethod("setSearchText(QString)");
    return index >= 0 && metaObject->method(index).methodType() == QMetaMethod::Slot;
}

void printChildNames(const QObject* parent)
{
    for (const QObject* child : parent->children())
    {
        const QByteArray name = child->objectName().toUtf8();
        std::fwrite(name.constData(), 1, size_t(name.size()), stdout);
    }
}
} // namespace

QPropertyPanel::QPropertyPanel(QWidget* parent) : QWidget(parent)
{
    m_ui.setupUi(this);
    m_ui.verticalLayout = ContainerSupport::columnInPlaceOf(m_ui.verticalLayout, m_ui.search);
    m_search = m_ui.search;
    m_constructed = true;
    installEventFilter(this);
}

void QPropertyPanel::setSearchText()
{
    Q_EMIT setSearchText(m_search ? m_search->text() : QString());
}

bool QPropertyPanel::isContainer() const
{
    return true;
}

bool QPropertyPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (!m_scrollArea || event->type() != QEvent::Resize || !m_scrollContents)
        return false;
    const int contentsHeight = m_scrollContents->minimumSizeHint().height();
    if (contentsHeight > 0)
        m_scrollContents->setMinimumHeight(qMax(contentsHeight, 16));
    if (watched != m_scrollContents)
        return false;
    return m_scrollArea->minimumSizeHint().height() < m_scrollContents->minimumSizeHint().height();
}

void QPropertyPanel::on_search_textChanged(const QString& text)
{
    if (!m_searchConnected)
    {
        if (m_scrollContents)
        {
            // Parents come before their children here, so outer sections receive each text first.
            QList<QWidget*> widgets = m_scrollContents->findChildren<QWidget*>();
            widgets.removeOne(m_searchEdit);
            connectSearch(widgets);
        }
        m_searchConnected = true;
    }
    Q_EMIT setSearchText(text);
}

void QPropertyPanel::childEvent(QChildEvent* event)
{
    if (!m_constructed)
    {
        update();
        return;
    }
    QLayout* rows = layout();
    if (event->type() == QEvent::ChildAdded)
    {
        if (m_search && rows && rows->count() == 0)
            ContainerSupport::layOut(this, m_search);
        if (event->child()->isWidgetType())
        {
            // A widget under construction is still a plain QWidget here; only finished ones that are moved in show
            // their slot.
            auto* child = static_cast<QWidget*>(event->child());
            connectSearch(child->findChildren<QWidget*>() << child);
        }
    }
    else if (event->type() == QEvent::ChildRemoved)
    {
        ContainerSupport::forget(this, event->child());
    }
    printChildNames(this);
    if (!m_searchEdit)
        m_searchEdit = findChild<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly);
    if (!m_scrollArea)
    {
        m_scrollArea = findChild<QScrollArea*>(QString(), Qt::FindDirectChildrenOnly);
        if (m_scrollArea)
            ContainerSupport::layOut(this, m_scrollArea);
    }
    if (m_scrollArea)
    {
        // The viewport of a standard scroll area, which contains all sections.
        m_scrollContents = m_scrollArea->findChild<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
        if (m_scrollContents)
            m_scrollContents->installEventFilter(this);
    }
    update();
}

void QPropertyPanel::paintEvent(QPaintEvent*)
{
    QStyleOption option;
    option.initFrom(this);
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
}

void QPropertyPanel::connectSearch(const QList<QWidget*>& widgets)
{
    // Thousands of widgets share a few classes.
    QHash<const QMetaObject*, bool> classes;
    for (const QWidget* widget : widgets)
    {
        const QMetaObject* metaObject = widget->metaObject();
        auto known = classes.find(metaObject);
        if (known == classes.end())
            known = classes.insert(metaObject, hasSearchSlot(metaObject));
        // By signature, as any class may have the slot. No Qt::UniqueConnection: a widget connected twice receives each
        // text twice.
        if (*known)
            connect(this, SIGNAL(setSearchText(QString)), widget, SLOT(setSearchText(QString)));
    }
}
