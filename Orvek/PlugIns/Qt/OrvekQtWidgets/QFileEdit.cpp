#include "QFileEdit.h"

#include "EditorSupport.h"

#include <QtCore/QPointer>
#include <QtWidgets/QFileDialog>

QFileEdit::QFileEdit(QWidget* parent) : QAbstractEdit(parent)
{
    m_ui.setupUi(this);
}

// Not inline: the base's destructor is not exported.
QFileEdit::~QFileEdit()
{
    // A dialog that is still open is on the stack and must not be deleted with the children. It ends as cancelled.
    const auto dialogs = findChildren<QFileDialog*>(QString(), Qt::FindDirectChildrenOnly);
    for (QFileDialog* dialog : dialogs)
    {
        dialog->setParent(nullptr, dialog->windowFlags());
        dialog->reject();
    }
}

bool QFileEdit::showDefaultButton() const
{
    return m_showDefaultButton;
}

void QFileEdit::setShowDefaultButton(bool show)
{
    m_showDefaultButton = show;
    EditorSupport::updateReset(m_ui.reset, show, m_filename, m_defaultFilename);
}

bool QFileEdit::readOnly() const
{
    return m_ui.lineEdit->isReadOnly();
}

void QFileEdit::setReadOnly(bool readOnly)
{
    m_ui.lineEdit->setReadOnly(readOnly);
}

bool QFileEdit::mustExist() const
{
    return m_mustExist;
}

void QFileEdit::setMustExist(bool mustExist)
{
    m_mustExist = mustExist;
}

QString QFileEdit::filename() const
{
    return m_filename;
}

void QFileEdit::setFilename(QString filename)
{
    m_filename = filename;
    setShowDefaultButton(m_showDefaultButton);
    const EditorSupport::SignalMute mute(this);
    m_ui.lineEdit->setText(filename);
}

QString QFileEdit::defaultPath() const
{
    return m_defaultPath;
}

void QFileEdit::setDefaultPath(QString path)
{
    m_defaultPath = path;
}

QString QFileEdit::defaultFilename() const
{
    return m_defaultFilename;
}

void QFileEdit::setDefaultFilename(QString filename)
{
    m_defaultFilename = filename;
    setShowDefaultButton(true);
}

QString QFileEdit::filter() const
{
    return m_filter;
}

void QFileEdit::setFilter(QString filter)
{
    m_filter = filter;
}

QString QFileEdit::title() const
{
    return m_ui.label->text();
}

void QFileEdit::setTitle(QString title)
{
    EditorSupport::setTitle(this, m_ui.label, title);
}

int QFileEdit::labelWidth() const
{
    return m_labelWidth;
}

void QFileEdit::setLabelWidth(int width)
{
    m_labelWidth = width;
    EditorSupport::setWidth(this, m_ui.label, width);
}

int QFileEdit::unitsWidth() const
{
    return m_unitsWidth;
}

void QFileEdit::setUnitsWidth(int width)
{
    m_unitsWidth = width;
    EditorSupport::setWidth(this, m_ui.units, width);
}

void QFileEdit::on_lineEdit_editingFinished()
{
    if (readOnly())
        return;
    Q_EMIT startedEdit();
    // The reset button keeps its state from the last name that was set.
    m_filename = m_ui.lineEdit->text();
    Q_EMIT valueChanged();
}

void QFileEdit::on_browse_clicked()
{
    if (readOnly())
        return;
    Q_EMIT startedEdit();
    // The dialog runs an event loop, in which a host may delete the editor.
    const QPointer<QFileEdit> alive(this);
    const QString filename = QFileDialog::getOpenFileName(this, m_ui.label->text(), m_defaultPath, m_filter);
    if (!alive)
        return;
    if (!filename.isEmpty())
        setFilename(filename);
    Q_EMIT valueChanged();
}

void QFileEdit::on_reset_clicked()
{
    if (readOnly())
        return;
    Q_EMIT startedEdit();
    setFilename(m_defaultFilename);
    Q_EMIT valueChanged();
}
