#pragma once

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QSliderEdit.h>

#include <QtCore/QtMath>

//! Shows degrees for a value in radians. Range, default and value stay in radians.
class AngleEdit final : public QSliderEdit
{
    Q_OBJECT
public:
    using QSliderEdit::QSliderEdit;

    QString valueToText(double value) override
    {
        return QStringLiteral("%1°").arg(QSliderEdit::valueToText(qRadiansToDegrees(value)));
    }

    //! With or without the degree sign.
    double textToValue(QString text, bool* ok) override
    {
        return qDegreesToRadians(QSliderEdit::textToValue(text.remove(QLatin1Char('\xb0')).trimmed(), ok));
    }
};
