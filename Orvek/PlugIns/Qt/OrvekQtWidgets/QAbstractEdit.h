#pragma once

#include <QtWidgets/QWidget>

// Base of QFileEdit. Not exported: it is there to be seen in the meta-object, not to be derived from by hosts.
class QAbstractEdit : public QWidget
{
    Q_OBJECT
public:
    explicit QAbstractEdit(QWidget* parent);
    ~QAbstractEdit() override;
};
