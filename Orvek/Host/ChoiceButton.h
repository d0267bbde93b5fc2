#pragma once

#include <Orvek/Host/OrvekQtHostExport.h>

#include <QtWidgets/QComboBox>

#include <memory>

class QIntSliderEdit;

namespace orvek::host
{
//! A drop-down list of the names of an integer editor, in place of its slider or beside it.
//!
//! It offers those of the editor's "enums" whose value is in the editor's range (and is a power of two if the editor is
//! set to powers of two), as the editor's valueToText() writes them. While the editor has a value without a name, the
//! list also has an entry with that number. Changes of value, names and range are followed, however they are made.
//!
//! A choice stores the value, and the editor emits one valueChanged() and no startedEdit(). The wheel over the list
//! scrolls the panel and never chooses.
class ORVEKQTHOST_EXPORT ChoiceButton : public QComboBox
{
    Q_OBJECT
public:
    //! The editor is not owned and may die first; without one the list is empty and disabled.
    explicit ChoiceButton(QIntSliderEdit* editor, QWidget* parent = nullptr);
    ~ChoiceButton() override;

    //! Hides the editor's slider and field and puts a new list in their place in the row. The editor owns the list;
    //! deleting it brings them back. Returns null if editor is null.
    static ChoiceButton* addTo(QIntSliderEdit* editor);

    //! Null once the editor is destroyed.
    QIntSliderEdit* editor() const;

    void showPopup() override;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};
} // namespace orvek::host
