#pragma once

#include <Orvek/Host/OrvekQtHostExport.h>

#include <QtCore/QObject>

#include <memory>

class QWidget;

namespace orvek::host
{
//! Makes typing into editors safe, and steps, computes, copies and pastes in them.
//!
//! It follows all editors below a widget: the library's, those derived from them, and a host's own that have a signal
//! valueChanged() and a QLineEdit child by one of the names "lineEdit", "x", "y", "z", "red", "green", "blue", "alpha".
//! Whether a text is a value is up to the editor's textToValue(), and valueToText() writes values; of a host's own
//! editors those that Qt can invoke by name, with the types of QSliderEdit. Without them its numbers are computed, and
//! any other text is left to it. Editors of texts are never computed, stepped or marked.
//!
//! Values come through an editor's own slots or its setter with one valueChanged(), so a host's connections stay as
//! they are. Of several EditorInputs for one editor the first one acts.
class ORVEKQTHOST_EXPORT EditorInput : public QObject
{
    Q_OBJECT
    //! Whether fields that nobody typed into commit nothing, however they are left, Return included: no signal, and the
    //! value keeps all of its bits. A text typed back to what it was counts as not typed. Default true, as for all
    //! the following.
    Q_PROPERTY(bool keepsUntouched READ keepsUntouched WRITE setKeepsUntouched)
    //! Whether Esc takes back what was typed since the last commit and stays in the field. Without anything to take
    //! back it goes on to the window.
    Q_PROPERTY(bool restoresOnEscape READ restoresOnEscape WRITE setRestoresOnEscape)
    //! Whether Return in a field ends there, and presses no button of a dialog.
    Q_PROPERTY(bool holdsReturn READ holdsReturn WRITE setHoldsReturn)
    //! Whether the wheel over a slider scrolls what lies around the editor, as it does over the other parts.
    Q_PROPERTY(bool scrollsWithWheel READ scrollsWithWheel WRITE setScrollsWithWheel)
    //! Whether the decimal key of the keypad types a point into a number where the keyboard's language has a comma.
    Q_PROPERTY(bool typesPoint READ typesPoint WRITE setTypesPoint)
    //! Whether Up and Down step a number in a field that is not read-only, ten steps with Shift and a tenth with Ctrl.
    //! A step is the property "step", in the unit of the value. Without one, or with 0, it is a hundredth of the range,
    //! a hundredth of the ratio of its ends if the editor is logarithmic; 1 for whole numbers, one doubling for powers
    //! of two; 0.01 for a colour and 0.1 for anything else without a range. What was typed is committed first.
    Q_PROPERTY(bool stepsWithArrows READ stepsWithArrows WRITE setStepsWithArrows)
    //! Whether a field has the dynamic property "invalid", true, while its text is no value. Such a text is never
    //! committed: leaving the field brings back the text from before, and Return keeps it. And whether a field whose
    //! number could not be stored as it is, out of range for example, shows what was stored.
    Q_PROPERTY(bool checksText READ checksText WRITE setChecksText)
    //! Whether arithmetic in a number's field is computed on commit, in the units shown: "3*2", "1/3", "sqrt(2)",
    //! "2pi", with the functions of muParser and the point as in C. Whole numbers are rounded. "+=2", "-=2", "*=2" and
    //! "/=2" change the value that is there. Also lets an editor's units be typed, and the names of a QIntSliderEdit's
    //! values, in any case of letters.
    Q_PROPERTY(bool evaluates READ evaluates WRITE setEvaluates)
    //! Whether whole values are copied and pasted: Copy without a selection in a number's field; Paste of three or four
    //! numbers, or "#rrggbb" for a colour, in a field of a vector or colour, as one change; and a menu on the title.
    //! A colour between black and white is copied as "#rrggbb" beside its exact numbers, which Paste uses; all else as
    //! numbers.
    Q_PROPERTY(bool copiesWhole READ copiesWhole WRITE setCopiesWhole)

public:
    //! Follows every editor below root, and root if it is one, also those that come later. Root must not be null. It is
    //! not owned; may die first.
    explicit EditorInput(QWidget* root, QObject* parent = nullptr);
    //! The editors behave again as without it.
    ~EditorInput() override;

    bool keepsUntouched() const;
    void setKeepsUntouched(bool keeps);
    bool restoresOnEscape() const;
    void setRestoresOnEscape(bool restores);
    bool holdsReturn() const;
    void setHoldsReturn(bool holds);
    bool scrollsWithWheel() const;
    void setScrollsWithWheel(bool scrolls);
    bool typesPoint() const;
    void setTypesPoint(bool types);
    bool stepsWithArrows() const;
    void setStepsWithArrows(bool steps);
    bool checksText() const;
    void setChecksText(bool checks);
    bool evaluates() const;
    void setEvaluates(bool evaluates);
    bool copiesWhole() const;
    void setCopiesWhole(bool copies);

private:
    struct Private;
    const std::unique_ptr<Private> d;
};
} // namespace orvek::host
