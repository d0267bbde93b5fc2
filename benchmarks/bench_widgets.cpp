// What the widgets cost beside the same Qt children driven by straight code. scripts/bench runs it and prints the
// ratios.

#include "workloads.h"

#include <Orvek/Host/Description.h>
#include <Orvek/Host/Inspector.h>
#include <Orvek/Host/PanelHost.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QRenderWidget.h>

#include <examples/SceneEditor/Looks.h>
#include <tests/literalsearch.h>

#include <QtGui/QColor>
#include <QtGui/QMouseEvent>
#include <QtGui/QVector3D>
#include <QUndoStack>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <new>
#include <vector>

#include <malloc.h>

using namespace workloads;

namespace
{
std::size_t allocationCount = 0;
bool countAllocations = false;
} // namespace

// Qt allocates through both new and malloc(). The C library's own functions cannot be replaced here, so only events and
// strings made with new are counted.
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
// Types a word letter by letter and deletes it again; Worst measures the two keystrokes that change most.
enum class Keys
{
    All,
    Worst
};

// The style sheets and colours of a dark tool, for the whole application, as long as this object lives.
struct Look
{
    explicit Look(bool dark)
    {
        if (dark)
            sceneeditor::applyLook(QStringLiteral("dark"));
    }
    ~Look()
    {
        qApp->setStyleSheet(QString());
        QApplication::setPalette(QApplication::style()->standardPalette());
    }
    Q_DISABLE_COPY(Look)
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

// Arguments: the number of editors, and how many are in a section.
PanelTree treeOf(const benchmark::State& state)
{
    return PanelTree(int(state.range(0)), int(state.range(1)));
}

void searchOurs(benchmark::State& state, Keys keys, bool dark = false)
{
    const Look look(dark);
    PanelTree tree = treeOf(state);
    typeWord(state, keys, [&](const QString& text) { tree.search->setText(text); });
}

void searchFloor(benchmark::State& state, Keys keys, bool dark = false)
{
    const Look look(dark);
    PanelTree tree = treeOf(state);
    std::vector<QString> titles;
    for (const QSliderEdit* row : tree.rows)
        titles.push_back(row->title());
    typeWord(state, keys,
             [&](const QString& text)
             {
                 for (std::size_t i = 0; i < titles.size(); ++i)
                     tree.rows[i]->setVisible(titles[i].contains(text, Qt::CaseInsensitive));
             });
}

void searchLiteral(benchmark::State& state, Keys keys)
{
    PanelTree tree = treeOf(state);
    typeWord(state, keys, [&](const QString& text) { LiteralSearch::broadcast(*tree.scrollContents, text); });
}

void sizes(benchmark::internal::Benchmark* search)
{
    search->Args({1000, 20})->Args({1000, 200})->Args({1000, 1000})->Unit(benchmark::kMillisecond);
}
void oneSize(benchmark::internal::Benchmark* search)
{
    search->Args({1000, 20})->Unit(benchmark::kMillisecond);
}
void large(benchmark::internal::Benchmark* search)
{
    search->Args({10000, 20})->Unit(benchmark::kMillisecond);
}
BENCHMARK_CAPTURE(searchOurs, mean, Keys::All)->Apply(sizes)->Apply(large);
BENCHMARK_CAPTURE(searchFloor, mean, Keys::All)->Apply(sizes)->Apply(large);
BENCHMARK_CAPTURE(searchLiteral, mean, Keys::All)->Apply(sizes)->Apply(large);
BENCHMARK_CAPTURE(searchOurs, worst, Keys::Worst)->Apply(sizes);
BENCHMARK_CAPTURE(searchFloor, worst, Keys::Worst)->Apply(sizes);
BENCHMARK_CAPTURE(searchLiteral, worst, Keys::Worst)->Apply(sizes);
BENCHMARK_CAPTURE(searchOurs, darkMean, Keys::All, true)->Apply(oneSize);
BENCHMARK_CAPTURE(searchFloor, darkMean, Keys::All, true)->Apply(oneSize);
BENCHMARK_CAPTURE(searchOurs, darkWorst, Keys::Worst, true)->Apply(oneSize);
BENCHMARK_CAPTURE(searchFloor, darkWorst, Keys::Worst, true)->Apply(oneSize);

constexpr int PushedRows = 1000;

template <typename Row>
std::vector<std::unique_ptr<Row>> makeRows()
{
    std::vector<std::unique_ptr<Row>> rows;
    for (int i = 0; i < PushedRows; ++i)
        rows.push_back(std::make_unique<Row>());
    return rows;
}

// A host that sets all values in each frame, either with new values or with the current ones.
void pushOurs(benchmark::State& state, bool changing)
{
    const auto rows = makeRows<QSliderEdit>();
    int turn = 0;
    for (auto _ : state)
    {
        turn += changing ? 1 : 0;
        for (int i = 0; i < PushedRows; ++i)
            rows[std::size_t(i)]->setValue(pushedValue(i, turn));
    }
    state.SetItemsProcessed(state.iterations());
}

void pushFloor(benchmark::State& state, bool changing)
{
    const auto rows = makeRows<BareRow>();
    int turn = 0;
    for (auto _ : state)
    {
        turn += changing ? 1 : 0;
        for (int i = 0; i < PushedRows; ++i)
        {
            const double value = pushedValue(i, turn);
            BareRow& row = *rows[std::size_t(i)];
            row.slider->blockSignals(true);
            row.slider->setValue(int(value * 1000));
            row.slider->blockSignals(false);
            row.field->setText(QStringLiteral("%1").arg(value));
        }
    }
    state.SetItemsProcessed(state.iterations());
}

void pushFloorSame(benchmark::State& state)
{
    const auto rows = makeRows<BareRow>();
    std::vector<QString> texts;
    for (int i = 0; i < PushedRows; ++i)
        texts.push_back(QString::number(pushedValue(i, 0)));
    for (auto _ : state)
    {
        for (int i = 0; i < PushedRows; ++i)
        {
            rows[std::size_t(i)]->slider->setValue(int(pushedValue(i, 0) * 1000));
            rows[std::size_t(i)]->field->setText(texts[std::size_t(i)]);
        }
    }
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK_CAPTURE(pushOurs, new, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(pushFloor, new, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(pushOurs, same, false)->Unit(benchmark::kMillisecond);
BENCHMARK(pushFloorSame)->Name("pushFloor/same")->Unit(benchmark::kMillisecond);

template <typename Row>
void build(benchmark::State& state)
{
    std::size_t heap = 0;
    for (auto _ : state)
    {
        const std::size_t before = mallinfo2().uordblks;
        auto rows = makeRows<Row>();
        heap = mallinfo2().uordblks - before;
        state.PauseTiming();
        rows.clear();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations());
    state.counters["heap"] = double(heap) / PushedRows;
}

template <typename Row>
void destroy(benchmark::State& state)
{
    for (auto _ : state)
    {
        state.PauseTiming();
        auto rows = makeRows<Row>();
        paint(); // otherwise each editor would be searched for in the pending events
        state.ResumeTiming();
        rows.clear();
    }
    state.SetItemsProcessed(state.iterations());
}

template <typename Row>
void buildAndShow(benchmark::State& state)
{
    for (auto _ : state)
    {
        auto window = std::make_unique<QWidget>();
        auto* column = new QVBoxLayout(window.get());
        for (int i = 0; i < PushedRows; ++i)
            column->addWidget(new Row);
        state.PauseTiming();
        paint();
        state.ResumeTiming();
        window->show();
        paint();
        state.PauseTiming();
        window.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK_TEMPLATE(build, QSliderEdit)->Name("buildOurs")->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(build, BareRow)->Name("buildFloor")->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(destroy, QSliderEdit)->Name("destroyOurs")->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(destroy, BareRow)->Name("destroyFloor")->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(buildAndShow, QSliderEdit)->Name("showOurs")->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(buildAndShow, BareRow)->Name("showFloor")->Unit(benchmark::kMillisecond);

// The same panel, with everything in the host library or without it.
struct HostedTree
{
    explicit HostedTree(bool hosted) : tree(PushedRows, 20, false)
    {
        if (hosted)
            host = std::make_unique<orvek::host::PanelHost>(tree.panel.get(), &stack);
        tree.panel->show();
        paint();
    }
    PanelTree tree;
    QUndoStack stack;
    std::unique_ptr<orvek::host::PanelHost> host;
};

void hostSearch(benchmark::State& state, bool hosted)
{
    HostedTree hostedTree(hosted);
    typeWord(state, Keys::All, [&](const QString& text) { hostedTree.tree.search->setText(text); });
}

void hostPush(benchmark::State& state, bool hosted)
{
    HostedTree hostedTree(hosted);
    int turn = 0;
    for (auto _ : state)
    {
        ++turn;
        for (int i = 0; i < PushedRows; ++i)
            hostedTree.tree.rows[std::size_t(i)]->setValue(pushedValue(i, turn));
        paint();
    }
    state.SetItemsProcessed(state.iterations());
}

void hostBuild(benchmark::State& state, bool hosted)
{
    for (auto _ : state)
    {
        auto hostedTree = std::make_unique<HostedTree>(hosted);
        state.PauseTiming();
        hostedTree.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations());
}

// Nothing happens, so this shows what keeps running.
void hostIdle(benchmark::State& state, bool hosted)
{
    HostedTree hostedTree(hosted);
    for (auto _ : state)
        paint();
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK_CAPTURE(hostSearch, hosted, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(hostSearch, bare, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(hostPush, hosted, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(hostPush, bare, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(hostBuild, hosted, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(hostBuild, bare, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(hostIdle, hosted, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(hostIdle, bare, false)->Unit(benchmark::kMillisecond);

// A tenth of an object's values, to find which are equal in a selection.
struct Values
{
    float a = 0.1F;
    float b = 0.2F;
    float c = 0.3F;
    double d = 0.4;
    int e = 5;
    Qt::PenStyle f = Qt::DashLine;
    bool g = true;
    QVector3D h{1, 2, 3};
    QColor i = Qt::red;
    QString j = QStringLiteral("steel");
};

struct SelectedObject
{
    Values first;
    Values second;
    Values third;
    Values fourth;
};

constexpr int SelectedObjects = 1000;

QVector<void*> selection(std::vector<SelectedObject>& objects)
{
    QVector<void*> addresses;
    for (SelectedObject& object : objects)
        addresses << &object;
    return addresses;
}

std::shared_ptr<const orvek::host::ObjectType> selectedType()
{
    using orvek::host::Description;
    Description<Values> values(QStringLiteral("Values"));
    values.number("a", &Values::a);
    values.number("b", &Values::b);
    values.number("c", &Values::c);
    values.number("d", &Values::d);
    values.integer("e", &Values::e);
    values.choice("f", &Values::f).entry(QStringLiteral("dash"), QString(), Qt::DashLine);
    values.flag("g", &Values::g);
    values.vector("h", &Values::h);
    values.colour("i", &Values::i);
    values.text("j", &Values::j);
    Description<SelectedObject> object(QStringLiteral("Object"));
    object.nested("first", &SelectedObject::first, values.type());
    object.nested("second", &SelectedObject::second, values.type());
    object.nested("third", &SelectedObject::third, values.type());
    object.nested("fourth", &SelectedObject::fourth, values.type());
    return object.type();
}

// All are equal, so that nothing can be skipped.
void compareOurs(benchmark::State& state)
{
    const auto type = selectedType();
    std::vector<SelectedObject> objects(SelectedObjects);
    const QVector<void*> addresses = selection(objects);
    unsigned different = 0;
    for (auto _ : state)
    {
        for (int property = 0; property < type->properties().size(); ++property)
            different |= type->differences(addresses, property);
        benchmark::DoNotOptimize(different);
    }
    if (different != 0 || type->properties().size() != 40)
        state.SkipWithError("the values are not compared");
    state.SetItemsProcessed(state.iterations());
}

void compareFloor(benchmark::State& state)
{
    std::vector<SelectedObject> objects(SelectedObjects);
    const QVector<void*> addresses = selection(objects);
    bool different[40] = {};
    for (auto _ : state)
    {
        const auto& first = *static_cast<const SelectedObject*>(addresses.first());
        for (const void* address : addresses)
        {
            const auto& object = *static_cast<const SelectedObject*>(address);
            bool* differs = different;
            for (const auto part :
                 {&SelectedObject::first, &SelectedObject::second, &SelectedObject::third, &SelectedObject::fourth})
            {
                const Values& mine = object.*part;
                const Values& other = first.*part;
                *differs++ |= mine.a != other.a;
                *differs++ |= mine.b != other.b;
                *differs++ |= mine.c != other.c;
                *differs++ |= mine.d != other.d;
                *differs++ |= mine.e != other.e;
                *differs++ |= mine.f != other.f;
                *differs++ |= mine.g != other.g;
                *differs++ |= mine.h != other.h;
                *differs++ |= mine.i != other.i;
                *differs++ |= mine.j != other.j;
            }
        }
        benchmark::DoNotOptimize(different);
    }
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK(compareOurs)->Unit(benchmark::kMillisecond);
BENCHMARK(compareFloor)->Unit(benchmark::kMillisecond);

// Selects other objects, as many, with different values, in an inspector that already shows some.
void inspectorSelect(benchmark::State& state)
{
    QPropertyPanel panel;
    QUndoStack stack;
    orvek::host::Inspector inspector(&panel, &stack);
    const auto type = selectedType();
    std::vector<SelectedObject> objects[2] = {std::vector<SelectedObject>(SelectedObjects),
                                              std::vector<SelectedObject>(SelectedObjects)};
    for (SelectedObject& object : objects[1])
        object.first.a = object.second.d = object.third.e = 7;
    const QVector<void*> selections[2] = {selection(objects[0]), selection(objects[1])};
    inspector.setObjects(type, selections[0]);
    panel.resize(400, 900);
    panel.show();
    paint();
    std::size_t turn = 0;
    for (auto _ : state)
    {
        turn = 1 - turn;
        inspector.setObjects(type, selections[turn]);
    }
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK(inspectorSelect)->Unit(benchmark::kMillisecond);

// Any count of numbers, in sections of 50.
class Numbers final : public orvek::host::ObjectType
{
public:
    explicit Numbers(int count) : ObjectType(QStringLiteral("Numbers"), described(count)) {}
    QVariant read(const void* object, int property) const override
    {
        return static_cast<const double*>(object)[property];
    }
    bool write(void* object, int property, const QVariant& value) const override
    {
        static_cast<double*>(object)[property] = value.toDouble();
        return true;
    }

    static constexpr int sectionSize = 50;

private:
    static QVector<orvek::host::Property> described(int count)
    {
        QVector<orvek::host::Property> properties(count);
        for (int i = 0; i < count; ++i)
        {
            properties[i].name = QStringLiteral("number%1").arg(i);
            properties[i].title = titleOf(i);
            properties[i].section = QStringLiteral("Section %1").arg(i / sectionSize);
        }
        return properties;
    }
};

struct InspectorTree
{
    InspectorTree(const std::shared_ptr<const Numbers>& type, std::vector<double>& numbers, bool open)
    {
        inspector.setOpensSections(open);
        inspector.setObjects(type, {numbers.data()});
        panel.resize(400, 900);
        panel.show();
        paint();
    }
    QPropertyPanel panel;
    QUndoStack stack;
    orvek::host::Inspector inspector{&panel, &stack};
};

// Builds and shows it, either with closed sections or with all of its rows.
void inspectorBuild(benchmark::State& state, bool open)
{
    const int count = int(state.range(0));
    const auto type = std::make_shared<const Numbers>(count);
    std::vector<double> numbers(std::size_t(count), 0.5);
    for (auto _ : state)
    {
        auto tree = std::make_unique<InspectorTree>(type, numbers, open);
        state.PauseTiming();
        tree.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations());
}
void numbers(benchmark::internal::Benchmark* build)
{
    build->Args({10000, Numbers::sectionSize})->Unit(benchmark::kMillisecond);
}
BENCHMARK_CAPTURE(inspectorBuild, closed, false)->Apply(numbers);
BENCHMARK_CAPTURE(inspectorBuild, all, true)->Apply(numbers);

// Opens a section for the first time, beside a host's panel that builds only that section.
void inspectorOpen(benchmark::State& state)
{
    const int count = int(state.range(0));
    const auto type = std::make_shared<const Numbers>(count);
    std::vector<double> numbers(std::size_t(count), 0.5);
    for (auto _ : state)
    {
        state.PauseTiming();
        auto tree = std::make_unique<InspectorTree>(type, numbers, false);
        auto* section = tree->panel.findChild<QAccordion*>();
        state.ResumeTiming();
        section->setOpen(true);
        paint();
        state.PauseTiming();
        tree.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations());
}
void inspectorOpenFloor(benchmark::State& state)
{
    for (auto _ : state)
    {
        auto tree = std::make_unique<PanelTree>(Numbers::sectionSize, Numbers::sectionSize, false);
        QUndoStack stack;
        auto host = std::make_unique<orvek::host::PanelHost>(tree->panel.get(), &stack);
        tree->panel->show();
        paint();
        state.PauseTiming();
        host.reset();
        tree.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(inspectorOpen)->Apply(numbers);
BENCHMARK(inspectorOpenFloor)->Unit(benchmark::kMillisecond);

void inspectorRefresh(benchmark::State& state)
{
    std::vector<double> values(PushedRows);
    for (int i = 0; i < PushedRows; ++i)
        values[std::size_t(i)] = pushedValue(i, 0);
    InspectorTree tree(std::make_shared<const Numbers>(PushedRows), values, true);
    for (auto _ : state)
        tree.inspector.refresh();
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(inspectorRefresh)->Unit(benchmark::kMillisecond);

// An engine that does nothing, so that only the way to it is measured.
class EmptyEngine final : public orvek::crossplatform::DisplaySurfaceManagerInterface,
                          public orvek::base::BaseMouseHandler
{
public:
    void RemoveWindow(HWND) override {}
    void Render(HWND) override { ++frames; }
    void AddWindow(HWND, orvek::crossplatform::PlatformRendererInterface*, int) override {}
    void ResizeSurface(HWND) override {}
    int GetWindowViewId(HWND) override { return 0; }
    void MouseDown(int, int, int) override {}
    void MouseUp(int, int, int) override {}
    void MouseDoubleClick(int, int, int) override {}
    void MouseMove(int, int) override { ++moves; }
    void MouseWheel(int, int) override {}
    void KeyboardInput(unsigned int, bool, int) override {}
    int frames = 0;
    int moves = 0;
};

// The Qt part of the render widget: native, painted on screen, with an empty paint event.
class BareView : public QWidget
{
public:
    BareView()
    {
        winId();
        setAttribute(Qt::WA_PaintOnScreen);
        setMouseTracking(true);
    }
    QPaintEngine* paintEngine() const override { return nullptr; }

protected:
    void paintEvent(QPaintEvent*) override {}
    void mouseMoveEvent(QMouseEvent*) override { update(); }
};

template <typename View>
void frame(benchmark::State& state)
{
    EmptyEngine engine;
    View view;
    if constexpr (std::is_same_v<View, QRenderWidget>)
        view.SetDisplaySurfaceManagerInterface(&engine);
    view.resize(320, 240);
    view.show();
    for (int i = 0; i < 10; ++i)
    {
        view.update();
        QCoreApplication::processEvents();
    }
    allocationCount = 0;
    countAllocations = true;
    for (auto _ : state)
    {
        view.update();
        QCoreApplication::processEvents();
    }
    countAllocations = false;
    state.SetItemsProcessed(state.iterations());
    state.counters["allocations"] = double(allocationCount) / double(state.iterations());
    if constexpr (std::is_same_v<View, QRenderWidget>)
    {
        if (engine.frames == 0)
            state.SkipWithError("nothing was rendered");
    }
}

template <typename View>
void mouseMove(benchmark::State& state)
{
    EmptyEngine engine;
    View view;
    if constexpr (std::is_same_v<View, QRenderWidget>)
    {
        view.SetDisplaySurfaceManagerInterface(&engine);
        view.SetHandleMouseInterface(&engine);
    }
    view.resize(320, 240);
    view.show();
    paint();
    allocationCount = 0;
    countAllocations = true;
    int x = 0;
    for (auto _ : state)
    {
        x = (x + 1) % 300;
        QMouseEvent event(QEvent::MouseMove, QPointF(x, 20), QPointF(x, 20), QPointF(x, 20), Qt::NoButton, Qt::NoButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(&view, &event);
    }
    countAllocations = false;
    state.SetItemsProcessed(state.iterations());
    state.counters["allocations"] = double(allocationCount) / double(state.iterations());
}

BENCHMARK_TEMPLATE(frame, QRenderWidget)->Name("frameOurs")->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(frame, BareView)->Name("frameFloor")->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(mouseMove, QRenderWidget)->Name("moveOurs")->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(mouseMove, BareView)->Name("moveFloor")->Unit(benchmark::kMillisecond);
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
