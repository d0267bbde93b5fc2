#pragma once

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/OrvekQtWidgetsExport.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QPropertyEditWidget.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/ui_QVectorEdit.h>

#include <QtGui/QVector3D>

//! Edits three single-precision numbers in one row: title, three text fields with captions, units and a button that
//! returns to the default.
//!
//! A component is committed when its field finishes editing. Text that is not a number in C notation, with a decimal
//! point, is ignored and stays in the field. Fields show six significant digits. Components have no range; a number too
//! large for a float becomes infinite.
//!
//! The editor asks for a height of 132 pixels until the host sets another minimum height. Its children are "label",
//! "xLabel", "x", "yLabel", "y", "zLabel", "z", "units" and "reset".
class ORVEKQTWIDGETS_EXPORT QVectorEdit : public QPropertyEditWidget
{
    Q_OBJECT
    //! The text of the label, and the window title, which the search of a section compares. Default "label".
    Q_PROPERTY(QString title READ title WRITE setTitle)
    //! Whether the captions are R, G, B instead of X, Y, Z. Default false. Nothing else depends on it.
    Q_PROPERTY(bool colourEdit READ colourEdit WRITE setColourEdit)
    //! Stored for the host; components are committed when their field finishes editing either way. Default false.
    Q_PROPERTY(bool liveUpdate READ liveUpdate WRITE setLiveUpdate)
    //! Width of the label in pixels, default 80. Returned as set; an impossible width, such as a negative one, is laid
    //! out as the nearest possible one. The same holds for textWidth and unitsWidth.
    Q_PROPERTY(int labelWidth READ labelWidth WRITE setLabelWidth)
    //! Width of each of the three fields in pixels, default 80.
    Q_PROPERTY(int textWidth READ textWidth WRITE setTextWidth)
    //! Text after the value, for display only. Default empty.
    Q_PROPERTY(QString units READ units WRITE setUnits)
    //! Width of the units in pixels, default 40.
    Q_PROPERTY(int unitsWidth READ unitsWidth WRITE setUnitsWidth)
    //! The value. Default (0, 0, 0).
    Q_PROPERTY(QVector3D value READ value WRITE setValue)

public:
    explicit QVectorEdit(QWidget* parent = nullptr);

    QString title() const;
    void setTitle(QString title);
    bool colourEdit() const;
    void setColourEdit(bool colour);
    bool liveUpdate() const;
    void setLiveUpdate(bool liveUpdate);
    int labelWidth() const;
    void setLabelWidth(int width);
    int textWidth() const;
    void setTextWidth(int width);
    QString units() const;
    void setUnits(QString units);
    int unitsWidth() const;
    void setUnitsWidth(int width);
    QVector3D value() const;
    //! Sets any value, without valueChanged(). Afterwards the editor's signals are not blocked, even if they were
    //! before.
    void setValue(QVector3D value);
    //! As setValue(value); the three fields are left empty unless showText is true.
    void setValue(QVector3D value, bool showText);
    //! What the reset button returns to. Default (0, 0, 0). The button is enabled while the value differs.
    QVector3D defaultValue() const;
    void setDefaultValue(QVector3D value);

Q_SIGNALS:
    //! Never emitted.
    void startedEdit();
    //! The user committed a component, even if the number is the same as before, or reset the value; value() already
    //! returns the new one.
    void valueChanged();

public Q_SLOTS:
    //! Connected by name to the signals of the children; hosts need not call them.
    void on_reset_clicked();
    void on_x_editingFinished();
    void on_y_editingFinished();
    void on_z_editingFinished();

protected:
    //! Enables the reset button while the value differs from the default.
    void setShowDefaultButton();

private:
    void commit(const QLineEdit* field, int component);

    Ui::QVectorEdit m_ui; // the children belong to the editor
    bool m_colourEdit = false;
    int m_labelWidth = 80;
    int m_textWidth = 80;
    int m_unitsWidth = 40;
    bool m_liveUpdate = false;
    QVector3D m_value;
    QVector3D m_defaultValue;
};
