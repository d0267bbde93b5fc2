#pragma once

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/OrvekQtWidgetsExport.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QAbstractEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/ui_QFileEdit.h>

//! Edits a file name in one row: title, text field, a button that opens a file dialog and one that returns to the
//! default.
//!
//! Any text is committed as typed; the editor never looks at the file. The reset button follows the names that the host
//! sets or the dialog returns; typing alone does not change it, and on a new editor it is enabled.
//!
//! The window title, which the search of a section compares, is "QFileEdit" until a title is set.
//!
//! Its children are "label", "lineEdit", "browse", "units" (an empty spacer) and "reset".
class ORVEKQTWIDGETS_EXPORT QFileEdit : public QAbstractEdit
{
    Q_OBJECT
    //! Whether the reset button can be used while the name differs from the default. Default true. The button is always
    //! visible.
    Q_PROPERTY(bool showDefaultButton READ showDefaultButton WRITE setShowDefaultButton)
    //! If true, the user can change the name neither by typing nor with the buttons. Default false.
    Q_PROPERTY(bool readOnly READ readOnly WRITE setReadOnly)
    //! Stored for the host; the editor does not check it. Default true.
    Q_PROPERTY(bool mustExist READ mustExist WRITE setMustExist)
    //! The value, any text. Default empty.
    Q_PROPERTY(QString filename READ filename WRITE setFilename)
    //! Folder in which the file dialog opens, whatever the value. Default empty: the dialog chooses.
    Q_PROPERTY(QString defaultPath READ defaultPath WRITE setDefaultPath)
    //! What the reset button returns to. Default empty.
    Q_PROPERTY(QString defaultFilename READ defaultFilename WRITE setDefaultFilename)
    //! The dialog's file types in QFileDialog's notation, for example "Meshes (*.obj *.ply);;All files (*)". Default
    //! empty: all files.
    Q_PROPERTY(QString filter READ filter WRITE setFilter)
    //! The text of the label, the caption of the dialog and, once set, the window title. Default "File name".
    Q_PROPERTY(QString title READ title WRITE setTitle)
    //! Width of the label in pixels, default 80. Returned as set; an impossible width, such as a negative one, is laid
    //! out as the nearest possible one. The same holds for unitsWidth.
    Q_PROPERTY(int labelWidth READ labelWidth WRITE setLabelWidth)
    //! Width of the empty space before the reset button in pixels. Default 40, like the units of other editors.
    Q_PROPERTY(int unitsWidth READ unitsWidth WRITE setUnitsWidth)

public:
    explicit QFileEdit(QWidget* parent = nullptr);
    ~QFileEdit() override;

    bool showDefaultButton() const;
    void setShowDefaultButton(bool show);
    bool readOnly() const;
    void setReadOnly(bool readOnly);
    bool mustExist() const;
    void setMustExist(bool mustExist);
    QString filename() const;
    //! Shows and stores the name without valueChanged(). Afterwards the editor's signals are not blocked, even if they
    //! were before.
    void setFilename(QString filename);
    QString defaultPath() const;
    void setDefaultPath(QString path);
    QString defaultFilename() const;
    //! Also turns showDefaultButton on.
    void setDefaultFilename(QString filename);
    QString filter() const;
    void setFilter(QString filter);
    QString title() const;
    void setTitle(QString title);
    int labelWidth() const;
    void setLabelWidth(int width);
    int unitsWidth() const;
    void setUnitsWidth(int width);

Q_SIGNALS:
    //! The user committed a name, even the same one, reset it, or closed the dialog, even by cancelling it; filename()
    //! already returns the new one.
    void valueChanged();
    //! Emitted before each valueChanged(), while the old name is still stored.
    void startedEdit();

public Q_SLOTS:
    //! Connected by name to the signals of the children; hosts need not call them.
    void on_lineEdit_editingFinished();
    void on_browse_clicked();
    void on_reset_clicked();

private:
    Ui::QFileEdit m_ui; // the children belong to the editor
    int m_labelWidth = 80;
    int m_unitsWidth = 40;
    QString m_filename;
    QString m_defaultFilename;
    QString m_defaultPath;
    QString m_filter;
    bool m_showDefaultButton = true;
    bool m_mustExist = true;
};
