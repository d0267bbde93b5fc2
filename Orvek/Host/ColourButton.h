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
//! whose alpha it shows on a pattern of checks while the editor shows the alpha field. It follows the value however it
//! is set. Components beyond 0 and 1, of a light for example, are shown as the nearest colour; one that is not a number
//! makes it a dash, as for objects of different colours.
//!
//! While the dialog is open each choice is the editor's value at once, announced by its valueChanged(); a component
//! that the choice leaves alone keeps all its digits. Cancel brings the value back to the last bit. With an EditorUndo
//! the whole is one step.
class ORVEKQTHOST_EXPORT ColourButton : public QToolButton
{
    Q_OBJECT
public:
    //! The editor is not owned and may die first. With null or an editor without colour the button is disabled.
    explicit ColourButton(QWidget* editor, QWidget* parent = nullptr);
    //! Cancels a dialog that is open.
    ~ColourButton() override;

    //! Puts a new button into the editor's row, behind its fields in the order of Tab: where an empty units label is,
    //! or behind everything else. The editor owns it; deleting it gives the place back. Null for an editor without
    //! colour.
    static ColourButton* addTo(QWidget* editor);

    //! Null once it is destroyed.
    QWidget* editor() const;
    //! The editor's colour as it is shown; invalid without an editor. Opaque if the editor shows no alpha.
    QColor colour() const;
    //! The dialog while it is open, otherwise null. It belongs to the button.
    QColorDialog* dialog() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    //! Opens the dialog, Qt's own, modal for the window only; if it is open already, brings it to the front.
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
