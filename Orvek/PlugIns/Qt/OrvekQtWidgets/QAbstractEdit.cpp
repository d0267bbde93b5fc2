#include "QAbstractEdit.h"

QAbstractEdit::QAbstractEdit(QWidget* parent) : QWidget(parent) {}

QAbstractEdit::~QAbstractEdit() = default;
