#pragma once

#include <QAction>
#include <QtGui/QAccessible>
#include <QtGui/QClipboard>
#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <QtTest/QtTest> // and with it all of QtCore
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QColorDialog>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QSlider>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOptionSlider>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QVBoxLayout>
#include <QUndoStack>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <tuple>
#include <utility>
#include <vector>

// The child of an editor's or container's form by its fixed name; ends the program if there is none.
template <typename T>
T* child(const QObject& parent, const char* name)
{
    T* found = parent.findChild<T*>(QLatin1String(name));
    if (!found)
        qFatal("%s has no child %s", parent.metaObject()->className(), name);
    return found;
}

inline void typeText(QLineEdit* field, const QString& text)
{
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Delete);
    QTest::keyClicks(field, text);
}

inline void commitText(QLineEdit* field, const QString& text)
{
    typeText(field, text);
    QTest::keyClick(field, Qt::Key_Return);
}

inline void showActive(QWidget& window)
{
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
}

// A test's table of data. The data function makes one and calls it for each row; the test reads the current() row:
//     const Sizes row;
//     row("empty", 0, {});
template <typename... Types>
class Table
{
public:
    Table()
    {
        QTest::addColumn<int>("row");
        rows().clear();
    }
    void operator()(const QByteArray& name, Types... values) const
    {
        QTest::newRow(name.constData()) << int(rows().size());
        rows().emplace_back(std::move(values)...);
    }
    static const std::tuple<Types...>& current()
    {
        QFETCH(int, row);
        return rows()[std::size_t(row)];
    }

private:
    static std::vector<std::tuple<Types...>>& rows()
    {
        static std::vector<std::tuple<Types...>> all;
        return all;
    }
};

// A warning from Qt fails the running test function: connectSlotsByName and Qt's widgets report mistakes that way.
namespace warnings
{
inline QtMessageHandler log = nullptr; // QTest's
inline QVector<QRegularExpression> expected;

inline bool isExpected(const QString& message)
{
    const auto matches = [&message](const QRegularExpression& one) { return one.match(message).hasMatch(); };
    const auto found = std::find_if(expected.begin(), expected.end(), matches);
    if (found == expected.end())
        return false;
    expected.erase(found);
    return true;
}

inline void handle(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    // Platforms report what they lack, and what an X server without a window manager does to the focus.
    const bool isAboutPlatform = message.startsWith(QLatin1String("This plugin does not support ")) ||
                                 QLatin1String(context.category).startsWith(QLatin1String("qt.qpa."));
    if ((type == QtWarningMsg || type == QtCriticalMsg) && !isAboutPlatform && !isExpected(message))
        QTest::qFail(qPrintable("Qt warns: " + message), context.file ? context.file : "", context.line);
    log(type, context, message);
}
} // namespace warnings

// The test function also fails if the warning does not come.
inline void expectWarning(const QString& pattern)
{
    warnings::expected << QRegularExpression(pattern);
    QTest::ignoreMessage(QtWarningMsg, warnings::expected.last());
}

template <typename Test>
int runTest(int argc, char** argv)
{
    Test test;
    QTest::qInit(&test, argc, argv);
    warnings::log = qInstallMessageHandler(warnings::handle);
    const int failures = QTest::qRun();
    QTest::qCleanup();
    return failures;
}

// As in Qt, but with warnings watched.
#undef QTEST_MAIN
#define QTEST_MAIN(Test)                                                                                               \
    int main(int argc, char** argv)                                                                                    \
    {                                                                                                                  \
        const QApplication application(argc, argv);                                                                    \
        QCoreApplication::setAttribute(Qt::AA_Use96Dpi);                                                               \
        return runTest<Test>(argc, argv);                                                                              \
    }
#undef QTEST_GUILESS_MAIN
#define QTEST_GUILESS_MAIN(Test)                                                                                       \
    int main(int argc, char** argv)                                                                                    \
    {                                                                                                                  \
        const QCoreApplication application(argc, argv);                                                                \
        return runTest<Test>(argc, argv);                                                                              \
    }
