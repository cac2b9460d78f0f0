#include "VXTestMain.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <QtCore/QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

QDir source()
{
    return QDir(QStringLiteral(VX_SOURCE_DIR));
}

QString content(const QString& thePath)
{
    QFile file(thePath);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// Paths of the project's own documents, relative to its folder.
QStringList documents()
{
    static const QStringList foreign{u"build/"_s, u"out/"_s, u"/node_modules/"_s};
    QStringList paths;
    QDirIterator files(source().path(), {u"*.md"_s}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = source().relativeFilePath(files.next());
        const bool isForeign = path.startsWith(foreign.at(0)) || path.startsWith(foreign.at(1)) ||
                               path.contains(foreign.at(2));
        if (!isForeign)
            paths << path;
    }
    paths.sort();
    return paths;
}

/// The text without code, in which brackets are no links.
QString prose(const QString& theText)
{
    static const QRegularExpression code(u"```.*?```|`[^`\n]*`"_s,
                                         QRegularExpression::DotMatchesEverythingOption);
    return QString(theText).remove(code);
}

/// "docs/http.md" as GitHub and others name the headline "## What to call".
QString anchor(QString theHeadline)
{
    static const QRegularExpression dropped(u"[^\\w\\- ]"_s,
                                            QRegularExpression::UseUnicodePropertiesOption);
    return theHeadline.toLower().remove(dropped).replace(u' ', u'-');
}

QStringList anchors(const QString& thePath)
{
    static const QRegularExpression headline(u"^#+ (.*)$"_s, QRegularExpression::MultilineOption);
    QStringList names;
    const QString text = content(thePath);
    for (const QRegularExpressionMatch& match : headline.globalMatch(text))
        names << anchor(match.captured(1));
    return names;
}

} // namespace

class tst_documents : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linksLeadSomewhere_data();
    void linksLeadSomewhere();
    void examplesAreThePrograms_data();
    void examplesAreThePrograms();
    void everyExampleIsShown();
    void sequenceDiagramsHaveNoSemicolon_data();
    void sequenceDiagramsHaveNoSemicolon();
};

void tst_documents::linksLeadSomewhere_data()
{
    QTest::addColumn<QString>("path");
    for (const QString& path : documents())
        QTest::newRow(qPrintable(path)) << path;
}

void tst_documents::linksLeadSomewhere()
{
    QFETCH(QString, path);
    static const QRegularExpression link(u"\\]\\(([^)\\s]+)\\)"_s);
    const QDir folder = QFileInfo(source().filePath(path)).dir();
    const QString text = prose(content(source().filePath(path)));
    for (const QRegularExpressionMatch& match : link.globalMatch(text)) {
        const QString target = match.captured(1);
        if (target.contains(u"://"_s) || target.startsWith(u"mailto:"_s))
            continue;
        const QString file = target.section(u'#', 0, 0);
        const QString name = target.section(u'#', 1);
        const QString full = file.isEmpty() ? source().filePath(path) : folder.filePath(file);
        QVERIFY2(QFileInfo::exists(full), qPrintable(target));
        QVERIFY2(name.isEmpty() || anchors(full).contains(name), qPrintable(target));
    }
}

void tst_documents::examplesAreThePrograms_data()
{
    linksLeadSomewhere_data();
}

void tst_documents::examplesAreThePrograms()
{
    QFETCH(QString, path);
    static const QRegularExpression example(u"<!-- example: (\\S+) -->\n```cpp\n(.*?)```"_s,
                                            QRegularExpression::DotMatchesEverythingOption);
    const QString text = content(source().filePath(path));
    for (const QRegularExpressionMatch& match : example.globalMatch(text)) {
        const QString program = content(source().filePath(u"docs/examples/"_s + match.captured(1)));
        QVERIFY2(!program.isEmpty(), qPrintable(match.captured(1)));
        QCOMPARE(match.captured(2), program); // script/update-examples makes them equal
    }
}

void tst_documents::everyExampleIsShown()
{
    QString all;
    for (const QString& path : documents())
        all += content(source().filePath(path));
    const QStringList programs =
        QDir(source().filePath(u"docs/examples"_s)).entryList({u"*.cpp"_s}, QDir::Files);
    QVERIFY(!programs.isEmpty());
    for (const QString& program : programs)
        QVERIFY2(all.contains(u"<!-- example: %1 -->"_s.arg(program)), qPrintable(program));
}

void tst_documents::sequenceDiagramsHaveNoSemicolon_data()
{
    linksLeadSomewhere_data();
}

// Mermaid takes it for the end of a statement there, and draws nothing at all.
void tst_documents::sequenceDiagramsHaveNoSemicolon()
{
    QFETCH(QString, path);
    static const QRegularExpression diagram(u"```mermaid\nsequenceDiagram\n(.*?)```"_s,
                                            QRegularExpression::DotMatchesEverythingOption);
    const QString text = content(source().filePath(path));
    for (const QRegularExpressionMatch& match : diagram.globalMatch(text))
        QVERIFY2(!match.captured(1).contains(u';'), qPrintable(match.captured(1)));
}

VX_TEST_MAIN(QCoreApplication, tst_documents)
#include "tst_documents.moc"
