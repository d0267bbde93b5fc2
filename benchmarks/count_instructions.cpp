// Does one piece of work a fixed number of times in a function of known name, so that scripts/bench can count its
// instructions: they vary by a thousandth from run to run, times by tenths.

#include "workloads.h"

#include <cstdio>
#include <cstring>

using namespace workloads;

namespace
{
constexpr int Rows = 200;
constexpr int Turns = 5;

void push(std::vector<std::unique_ptr<QSliderEdit>>& rows, bool changing)
{
    for (int turn = 1; turn <= Turns; ++turn)
        for (int i = 0; i < Rows; ++i)
            rows[std::size_t(i)]->setValue(pushedValue(i, changing ? turn : 0));
}

void push(std::vector<std::unique_ptr<BareRow>>& rows, bool changing)
{
    for (int turn = 1; turn <= Turns; ++turn)
    {
        for (int i = 0; i < Rows; ++i)
        {
            const double value = pushedValue(i, changing ? turn : 0);
            BareRow& row = *rows[std::size_t(i)];
            row.slider->blockSignals(true);
            row.slider->setValue(int(value * 1000));
            row.slider->blockSignals(false);
            row.field->setText(QStringLiteral("%1").arg(value));
        }
    }
}

void enter(PanelTree& tree, const QString& text, bool bare)
{
    if (bare)
    {
        for (QSliderEdit* row : tree.rows)
            row->setVisible(row->title().contains(text, Qt::CaseInsensitive));
    }
    else
    {
        tree.search->setText(text);
    }
    // Timers would fire at random; sending the posted events is enough.
    settle([] { QCoreApplication::sendPostedEvents(); });
}

void typeWord(PanelTree& tree, bool bare)
{
    for (int length = 1; length <= typedWord.size(); ++length)
        enter(tree, typedWord.left(length), bare);
}

// The keystrokes that change most.
void typeAndDeleteLetter(PanelTree& tree, bool bare)
{
    enter(tree, typedWord.at(0), bare);
    enter(tree, QString(), bare);
}
} // namespace

// callgrind counts the instructions in this function, by its name.
template <typename Work>
[[gnu::noinline]] void counted(Work work)
{
    work();
}

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    if (argc != 2 || !std::freopen("/dev/null", "w", stdout))
        return 1;
    QApplication application(argc, argv);
    // The same glyphs on every machine.
    QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 9));
    const QByteArray work = argv[1];
    const bool floor = work.endsWith("-floor");
    const auto fill = [](auto& rows)
    {
        for (int i = 0; i < Rows; ++i)
        {
            rows.push_back(std::make_unique<typename std::decay_t<decltype(rows)>::value_type::element_type>());
        }
        push(rows, false);
    };
    std::vector<std::unique_ptr<QSliderEdit>> ours;
    std::vector<std::unique_ptr<BareRow>> bare;
    if (work.startsWith("search-worst"))
    {
        PanelTree tree(Rows);
        typeAndDeleteLetter(tree, floor);
        counted([&] { typeAndDeleteLetter(tree, floor); });
    }
    else if (work.startsWith("search"))
    {
        PanelTree tree(Rows);
        counted([&] { typeWord(tree, floor); });
    }
    else if (work.startsWith("build"))
    {
        counted([&] { floor ? fill(bare) : fill(ours); });
    }
    else if (work.startsWith("push"))
    {
        const bool changing = work.startsWith("push-new");
        floor ? fill(bare) : fill(ours);
        counted([&] { floor ? push(bare, changing) : push(ours, changing); });
    }
    else
    {
        return 1;
    }
    return 0;
}
