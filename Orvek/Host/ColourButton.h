#pragma once

#include <Orvek/Host/OrvekQtHostExport.h>

#include <QtGui/QColor>
#include <QtWidgets/QToolButton>

#include <memory>

class QColorDialog;

namespace orvek::host
{
//! A swatch that shows the colour of an editor and opens a dialog to choose another one.
//!
//! It serves a QVectorEdit or another editor with a QVector3D "value" (red, green and blue, 0 to 1), and a QColourEdit,
//! whose alpha it shows on a checked pattern while the editor shows the alpha field. It follows the value however it is
//! set. Components outside 0 to 1, of a light for example, are shown as the nearest colour; a component that is not a
//! number turns the swatch into a dash, as do objects of different colours.
//!
//! While the dialog is open, each choice becomes the editor's value at once, with valueChanged(); a component that the
//! choice does not change keeps all its digits. Cancel restores the old value to the last bit. With an EditorUndo all
//! of it is one step.
class ORVEKQTHOST_EXPORT ColourButton : public QToolButton
{
    Q_OBJECT
public:
    //! The editor is not owned and may die first. If it is null or has no colour, the button is disabled.
    explicit ColourButton(QWidget* editor, QWidget* parent = nullptr);
    //! Cancels an open dialog.
    ~ColourButton() override;

    //! Puts a new button into the editor's row, after its fields in tab order: in the place of an empty units label, or
    //! at the end. The editor owns it; deleting it restores the row. Returns null for an editor without a colour.
    static ColourButton* addTo(QWidget* editor);

    //! Null once the editor is destroyed.
    QWidget* editor() const;
    //! The colour shown; invalid without an editor. Opaque if the editor shows no alpha.
    QColor colour() const;
    //! The dialog while it is open, otherwise null. It belongs to the button.
    QColorDialog* dialog() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    //! Opens Qt's own colour dialog, modal for the window only; if it is open already, brings it to the front.
    void openDialog();

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};
} // namespace orvek::host
