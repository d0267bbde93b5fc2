// What the widgets cost beside the same Qt children driven by straight code. scripts/bench runs it and prints the ratios.

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QAccordion.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QPropertyPanel.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QRenderWidget.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QSliderEdit.h>

#include <tests/literalsearch.h>

#include <QtGui/QMouseEvent>
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QSlider>
#include <QtWidgets/QVBoxLayout>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <new>

#include <malloc.h>

namespace
{
std::size_t allocationCount = 0;
bool countAllocations = false;
} // namespace

// Qt allocates through both; the C library's own functions cannot be replaced here, so events and strings made with new
// are what is counted.
void* operator new(std::size_t size)
{
    if (countAllocations)
        ++allocationCount;
    if (void* memory = std::malloc(size))
        return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept
{
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace
{
constexpr int SectionSize = 20;
const char* const words[] = {"Roughness", "Metallic", "Exposure", "Radius", "Offset", "Rotation", "Scale", "Bias",
                             "Intensity", "Falloff", "Aperture", "Distance", "Threshold", "Density", "Albedo", "Gamma",
                             "Rate", "Samples", "Shadow", "Contrast", "Ramp", "Width", "Height", "Frequency"};
const QString typedWord = QStringLiteral("rough");

QString titleOf(int i)
{
    constexpr int count = int(sizeof(words) / sizeof(words[0]));
    return QStringLiteral("%1 %2").arg(QLatin1String(words[(i * 7 + i / count) % count])).arg(i);
}

void paint()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

// A shown panel with so many editors in sections of 20.
struct PanelTree
{
    explicit PanelTree(int rowCount)
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
            if (i % SectionSize == 0)
            {
                auto* section = new QAccordion;
                section->setTitle(QStringLiteral("Section %1").arg(i / SectionSize));
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

// Types a word letter by letter and deletes it again; Worst takes the two keystrokes that change most alone.
enum class Keys
{
    All,
    Worst
};

template <typename Act>
void typeWord(benchmark::State& state, Keys keys, Act act)
{
    QStringList texts;
    for (int length = 1; length <= typedWord.size(); ++length)
        texts.append(typedWord.left(length));
    for (int length = typedWord.size() - 1; length >= 0; --length)
        texts.append(typedWord.left(length));
    if (keys == Keys::Worst)
        texts = QStringList{typedWord.left(1), QString()};
    act(texts.first());
    paint();
    act(QString());
    paint();
    for (auto _ : state)
    {
        for (const QString& text : texts)
        {
            act(text);
            paint();
        }
    }
    state.SetItemsProcessed(state.iterations() * texts.size());
}

void searchOurs(benchmark::State& state, Keys keys)
{
    PanelTree tree(int(state.range(0)));
    typeWord(state, keys, [&](const QString& text) { tree.search->setText(text); });
}

void searchFloor(benchmark::State& state, Keys keys)
{
    PanelTree tree(int(state.range(0)));
    std::vector<QString> titles;
    for (const QSliderEdit* row : tree.rows)
        titles.push_back(row->title());
    typeWord(state, keys, [&](const QString& text) {
        for (std::size_t i = 0; i < titles.size(); ++i)
            tree.rows[i]->setVisible(titles[i].contains(text, Qt::CaseInsensitive));
    });
}

void searchLiteral(benchmark::State& state, Keys keys)
{
    PanelTree tree(int(state.range(0)));
    typeWord(state, keys, [&](const QString& text) { LiteralSearch::broadcast(*tree.scrollContents, text); });
}

BENCHMARK_CAPTURE(searchOurs, mean, Keys::All)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(searchFloor, mean, Keys::All)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(searchLiteral, mean, Keys::All)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(searchOurs, worst, Keys::Worst)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(searchFloor, worst, Keys::Worst)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(searchLiteral, worst, Keys::Worst)->Arg(1000)->Unit(benchmark::kMillisecond);
} // namespace

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // The panel writes to the standard output; results go to --benchmark_out.
    if (!std::freopen("/dev/null", "w", stdout))
        return 1;
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
