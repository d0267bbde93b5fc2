#pragma once

// What the benchmarks measure: trees and rows of the widgets, and the same Qt children assembled by straight code.

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QAccordion.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QPropertyPanel.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QSliderEdit.h>

#include <QtWidgets/QApplication>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QSlider>
#include <QtWidgets/QVBoxLayout>

#include <memory>
#include <vector>

namespace workloads
{
inline const char* const words[] = {"Roughness", "Metallic", "Exposure",  "Radius",  "Offset",   "Rotation",
                                    "Scale",     "Bias",     "Intensity", "Falloff", "Aperture", "Distance",
                                    "Threshold", "Density",  "Albedo",    "Gamma",   "Rate",     "Samples",
                                    "Shadow",    "Contrast", "Ramp",      "Width",   "Height",   "Frequency"};
inline const QString typedWord = QStringLiteral("rough");

inline QString titleOf(int i)
{
    constexpr int count = int(sizeof(words) / sizeof(words[0]));
    return QStringLiteral("%1 %2").arg(QLatin1String(words[(i * 7 + i / count) % count])).arg(i);
}

// A new size passes up through the layouts and the scroll area in several rounds of the event loop; only then is
// everything in place and painted.
template <typename Round>
void settle(Round round)
{
    for (int i = 0; i < 4; ++i)
        round();
}

inline void paint()
{
    settle([] { QCoreApplication::processEvents(); });
}

// A visible panel with the given number of editors, in sections of the given size.
struct PanelTree
{
    explicit PanelTree(int rowCount, int sectionSize = 20, bool shown = true)
    {
        panel = std::make_unique<QPropertyPanel>();
        scrollArea = new QScrollArea(panel.get());
        scrollArea->setWidgetResizable(true);
        scrollContents = new QWidget;
        auto* column = new QVBoxLayout(scrollContents);
        QWidget* rowsWidget = nullptr;
        QVBoxLayout* rowsLayout = nullptr;
        for (int i = 0; i < rowCount; ++i)
        {
            if (i % sectionSize == 0)
            {
                auto* section = new QAccordion;
                section->setTitle(QStringLiteral("Section %1").arg(i / sectionSize));
                rowsWidget = new QWidget(section);
                rowsLayout = new QVBoxLayout(rowsWidget);
                column->addWidget(section);
            }
            auto* row = new QSliderEdit;
            row->setTitle(titleOf(i));
            rowsLayout->addWidget(row);
            rows.push_back(row);
        }
        scrollArea->setWidget(scrollContents);
        panel->resize(400, 900);
        if (shown)
            panel->show();
        paint();
        search = panel->findChild<QLineEdit*>(QStringLiteral("search"));
    }
    std::unique_ptr<QPropertyPanel> panel;
    QScrollArea* scrollArea = nullptr;
    QWidget* scrollContents = nullptr;
    QLineEdit* search = nullptr;
    std::vector<QSliderEdit*> rows;
};

// The seven children of a slider editor's row, assembled by straight code.
struct BareRow : QWidget
{
    explicit BareRow(QWidget* parent = nullptr) : QWidget(parent)
    {
        resize(270, 38);
        QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Fixed);
        setSizePolicy(policy);
        setMinimumSize(270, 38);
        auto* row = new QHBoxLayout(this);
        row->setSpacing(1);
        row->setContentsMargins(2, 2, 2, 2);
        auto* label = new QLabel(QStringLiteral("label"), this);
        label->setFixedWidth(80);
        auto* decrement = new QPushButton(QStringLiteral("<"), this);
        slider = new QSlider(Qt::Horizontal, this);
        slider->setRange(0, 1000);
        slider->setTracking(false);
        auto* increment = new QPushButton(QStringLiteral(">"), this);
        field = new QLineEdit(this);
        field->setFixedWidth(80);
        auto* units = new QLabel(this);
        units->setFixedWidth(40);
        auto* reset = new QPushButton(this);
        reset->setFixedWidth(14);
        reset->setEnabled(false);
        for (QPushButton* button : {decrement, increment})
        {
            button->setFixedWidth(24);
            button->hide();
        }
        for (QWidget* child : std::initializer_list<QWidget*>{label, decrement, slider, increment, field, units, reset})
            row->addWidget(child);
        field->setText(QStringLiteral("0"));
    }
    QSlider* slider;
    QLineEdit* field;
};

inline double pushedValue(int row, int turn)
{
    return double((row * 37 + turn * 101) % 1000) / 1000.0;
}

} // namespace workloads
