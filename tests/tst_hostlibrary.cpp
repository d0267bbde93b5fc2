#include "testsupport.h"

class tst_HostLibrary : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    // Each class whole, and nothing private. What the linker adds itself has no namespace.
    void exportsItsClassesAlone()
    {
        QProcess nm;
        nm.start(ORVEK_NM, {"-DC", "--defined-only", ORVEK_HOST_LIBRARY});
        QVERIFY(nm.waitForFinished() && nm.exitCode() == 0);
        const QStringList lines = QString::fromLocal8Bit(nm.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
        const QRegularExpression symbol("^[0-9a-f]+ \\w (vtable for |typeinfo for |typeinfo name for |"
                                        "(?:non-virtual )?thunk to |guard variable for )?orvek::host::(\\w+)(.*)$");
        QSet<QString> whole;
        for (const QString& line : lines)
        {
            const auto match = symbol.match(line);
            QVERIFY2(match.hasMatch() && !match.captured(3).startsWith("::Private"), qPrintable(line));
            // What a host begins with: a constructor, of plain data and of a class without objects a function. Or
            // it is a function itself.
            const QString rest = match.captured(3);
            if (rest.startsWith("::" + match.captured(2) + '(') || rest.startsWith("::install(") ||
                rest.startsWith("::displayTitle(") || rest.startsWith('('))
                whole << match.captured(2);
        }
        const QStringList classes = QString(ORVEK_HOST_CLASSES).split(' ', Qt::SkipEmptyParts);
        QCOMPARE(whole, QSet<QString>(classes.begin(), classes.end()));
    }
};

QTEST_MAIN(tst_HostLibrary)
#include "tst_hostlibrary.moc"
