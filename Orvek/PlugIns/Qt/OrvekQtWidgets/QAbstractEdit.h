#pragma once

#include <QtWidgets/QWidget>

// Base of QFileEdit. Not exported: it exists for the meta-object, not for hosts to derive from.
class QAbstractEdit : public QWidget
{
    Q_OBJECT
public:
    explicit QAbstractEdit(QWidget* parent);
    ~QAbstractEdit() override;
};
