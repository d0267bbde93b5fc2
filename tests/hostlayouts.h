#pragma once

#include "testsupport.h"

// The ways in which a host lays out what a container would lay out by itself.
using HostLayouts = Table<QString, void (*)(QVBoxLayout* column, QWidget* child)>; // the items that come of it

inline void addHostLayouts()
{
    const HostLayouts row;
    row("plain", "own child", [](QVBoxLayout* column, QWidget* child) { column->QLayout::addWidget(child); });
    row("stretch", "own child:3", [](QVBoxLayout* column, QWidget* child) { column->addWidget(child, 3); });
    row("aligned", "own child@1",
        [](QVBoxLayout* column, QWidget* child) { column->addWidget(child, 0, Qt::AlignLeft); });
    row("on top", "child:2@32 own",
        [](QVBoxLayout* column, QWidget* child) { column->insertWidget(0, child, 2, Qt::AlignTop); });
    row("stretch set afterwards", "own child:4",
        [](QVBoxLayout* column, QWidget* child) { column->addWidget(child), column->setStretchFactor(child, 4); });
    row("in a finished row", "own (child:2):5",
        [](QVBoxLayout* column, QWidget* child)
        {
            auto* inRow = new QHBoxLayout;
            inRow->addWidget(child, 2);
            column->addLayout(inRow, 5);
        });
    row("into a row that is there", "(child:2) own",
        [](QVBoxLayout* column, QWidget* child)
        {
            auto* inRow = new QHBoxLayout;
            column->insertLayout(0, inRow);
            inRow->addWidget(child, 2);
            column->activate(); // a layout learns of changes in those within it only now
        });
}

// Each item with its stretch and alignment.
inline QString describe(const QBoxLayout* layout)
{
    QStringList items;
    for (int i = 0; i < layout->count(); ++i)
    {
        QLayoutItem* item = layout->itemAt(i);
        const auto* inner = qobject_cast<QBoxLayout*>(item->layout());
        items << (inner ? '(' + describe(inner) + ')' : item->widget()->property("name").toString());
        if (layout->stretch(i))
            items.last() += ':' + QString::number(layout->stretch(i));
        if (item->alignment())
            items.last() += '@' + QString::number(item->alignment());
    }
    return items.join(' ');
}

inline void checkHostLayout(QWidget& container, QWidget* child)
{
    const auto [items, layOut] = HostLayouts::current();
    auto* column = ::child<QVBoxLayout>(container, "verticalLayout");
    column->itemAt(0)->widget()->setProperty("name", "own");
    child->setProperty("name", "child");
    layOut(column, child);
    QCOMPARE(describe(column), items); // at once, as hosts ask for sizes before their event loop runs
    container.show();
    QCoreApplication::processEvents();
    QCOMPARE(describe(column), items);
    delete child;
    QVERIFY(!describe(column).contains(QLatin1String("child")));
}
