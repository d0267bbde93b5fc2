#pragma once

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/OrvekQtWidgetsExport.h>

#include <QtWidgets/QWidget>

//! Base of the editors that hand their tool tip on to their parts: QSliderEdit, QVectorEdit and QColourEdit. The
//! children of every editor, of this base or not, belong to it and live as long: hosts may change how they look, but do
//! not delete them or move them elsewhere.
class ORVEKQTWIDGETS_EXPORT QPropertyEditWidget : public QWidget
{
    Q_OBJECT
public:
    explicit QPropertyEditWidget(QWidget* parent);
    ~QPropertyEditWidget() override;

    //! Gives every widget inside this one, at any depth, this one's tool tip; an empty one clears theirs. The editors
    //! do it once in their constructor, before a host can have set a tip: call it again after setToolTip().
    void applyParentTooltip();
};
