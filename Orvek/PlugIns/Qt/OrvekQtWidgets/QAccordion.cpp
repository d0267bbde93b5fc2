#include "QAccordion.h"

#include "ContainerSupport.h"
#include "EditorSupport.h"
#include "SectionBorder.h"
#include "SectionSearch.h"

#include <QtCore/QChildEvent>
#include <QtCore/QSettings>
#include <QtGui/QPainter>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOption>

QAccordion::QAccordion(QWidget* parent) : QWidget(parent), m_border(std::make_unique<SectionBorder>(this))
{
    m_ui.setupUi(this);
    m_ui.verticalLayout = ContainerSupport::columnInPlaceOf(m_ui.verticalLayout, m_ui.accordionCheckBox);
    m_checkBox = m_ui.accordionCheckBox;
    on_accordionCheckBox_toggled();
    setWindowTitle(title());
    m_constructed = true;
}

QAccordion::~QAccordion() = default;

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
    const SectionSearch::Result result = SectionSearch::apply(this, m_contentsWidget, ownTitle, text);
    if (result.found && m_checkBox)
        m_checkBox->setChecked(true);
    m_border->setMark(result.found && !text.isEmpty(), m_contentsWidget, result.changed);
    update();
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
    QStyleOption option;
    option.initFrom(this);
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
}

// Makes the last widget in the layout, other than the check box, the contents if there are none yet.
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
