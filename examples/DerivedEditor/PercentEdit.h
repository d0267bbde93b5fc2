#pragma once

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QSliderEdit.h>

//! Shows a fraction of 1 in percent.
class PercentEdit final : public QSliderEdit
{
    Q_OBJECT
public:
    using QSliderEdit::QSliderEdit;

    QString valueToText(double value) override
    {
        return QStringLiteral("%1 %").arg(QSliderEdit::valueToText(value * 100.0));
    }

    //! With or without the percent sign.
    double textToValue(QString text, bool* ok) override
    {
        return QSliderEdit::textToValue(text.remove(QLatin1Char('%')).trimmed(), ok) / 100.0;
    }
};
