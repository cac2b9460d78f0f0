#include <VXCore/VXRequestDiskAccess.h>

#include "VXDialogVisitor.h"
#include "VXTestMain.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtWidgets/QApplication>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int documentMode = 3;

QString ask(const QString& theName, QWidget* theParent = nullptr, int theMode = documentMode)
{
    return VXRequestDiskAccess::instance()->getSaveFileName(theMode, theParent, u"Sichern als..."_s,
                                                            u"PDF-Files (*.pdf)"_s, theName);
}

QLineEdit* nameEdit(QDialog* theDialog)
{
    return theDialog->findChild<QLineEdit*>(u"fileNameEdit"_s);
}

void chooseFolder(QDialog* theDialog, const QString& theFolder)
{
    qobject_cast<QFileDialog*>(theDialog)->setDirectory(theFolder);
}

} // namespace

class tst_VXRequestDiskAccess : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theDialogAsksForAFileToSave();
    void theProposedNameIsReturned();
    void aTypedNameGetsTheEnding();
    void cancellingGivesNothing();
    void theTitleOfAPageBecomesAFileName_data();
    void theTitleOfAPageBecomesAFileName();
    void aLongNameKeepsItsEnding();
    void theNameOfAPageDoesNotLeaveTheFolder();
    void theLastFolderIsKeptForEachMode();
    void aFolderThatIsGoneIsForgotten();
    void anExistingFileIsAskedFor();
    void aDyingParentTakesTheDialogAlong();
    void aHostReplacesIt();
};

void tst_VXRequestDiskAccess::theDialogAsksForAFileToSave()
{
    const VXDialogVisitor visitor([](QDialog* theDialog) {
        auto* const dialog = qobject_cast<QFileDialog*>(theDialog);
        QVERIFY(dialog != nullptr);
        QCOMPARE(dialog->windowTitle(), u"Sichern als..."_s);
        QCOMPARE(dialog->nameFilters(), QStringList(u"PDF-Files (*.pdf)"_s));
        QCOMPARE(dialog->acceptMode(), QFileDialog::AcceptSave);
        QCOMPARE(dialog->fileMode(), QFileDialog::AnyFile);
        dialog->reject();
    });
    std::ignore = ask(u"a.pdf"_s);
    QCOMPARE(visitor.count(), 1);
}

void tst_VXRequestDiskAccess::theProposedNameIsReturned()
{
    const QTemporaryDir folder;
    const VXDialogVisitor visitor([&](QDialog* theDialog) {
        chooseFolder(theDialog, folder.path());
        theDialog->accept();
    });
    QCOMPARE(ask(u"Rechnung 7.pdf"_s), folder.filePath(u"Rechnung 7.pdf"_s));
}

void tst_VXRequestDiskAccess::aTypedNameGetsTheEnding()
{
    const QTemporaryDir folder;
    const VXDialogVisitor visitor([&](QDialog* theDialog) {
        chooseFolder(theDialog, folder.path());
        nameEdit(theDialog)->setText(u"Beleg"_s);
        theDialog->accept();
    });
    QCOMPARE(ask(u"a.pdf"_s), folder.filePath(u"Beleg.pdf"_s));
}

void tst_VXRequestDiskAccess::cancellingGivesNothing()
{
    const VXDialogVisitor visitor([](QDialog* theDialog) { theDialog->reject(); });
    QCOMPARE(ask(u"a.pdf"_s), QString());
}

void tst_VXRequestDiskAccess::theTitleOfAPageBecomesAFileName_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("name");

    QTest::newRow("plain") << u"Rechnung Nr. 7.pdf"_s << u"Rechnung Nr. 7.pdf"_s;
    QTest::newRow("umlauts") << u"Größe.pdf"_s << u"Größe.pdf"_s;
    QTest::newRow("slash") << u"a/b.pdf"_s << u"a_b.pdf"_s;
    QTest::newRow("upwards") << u"../../etc/passwd.pdf"_s << u"_._.._etc_passwd.pdf"_s;
    QTest::newRow("absolute") << u"/etc/x.pdf"_s << u"_etc_x.pdf"_s;
    QTest::newRow("backslash") << u"a\\b.pdf"_s << u"a_b.pdf"_s;
    QTest::newRow("quotation marks") << u"\"a\" \"b\".pdf"_s << u"_a_ _b_.pdf"_s;
    QTest::newRow("control characters") << u"a\nb\tc.pdf"_s << u"a_b_c.pdf"_s;
    QTest::newRow("null character") << u"a"_s + QChar(0) + u"b.pdf"_s << u"a_b.pdf"_s;
    QTest::newRow("home of somebody") << u"~root.pdf"_s << u"_root.pdf"_s;
    QTest::newRow("hidden") << u".pdf"_s << u"_pdf"_s;
    QTest::newRow("nothing") << QString() << QString();
}

void tst_VXRequestDiskAccess::theTitleOfAPageBecomesAFileName()
{
    QFETCH(QString, title);
    QFETCH(QString, name);
    QCOMPARE(VXRequestDiskAccess::fileName(title), name);
}

void tst_VXRequestDiskAccess::aLongNameKeepsItsEnding()
{
    const QString name = VXRequestDiskAccess::fileName(QString(1000, u'ä') + u".pdf"_s);
    QCOMPARE(name, QString(125, u'ä') + u".pdf"_s); // 254 bytes, one more would be 256
    QCOMPARE(VXRequestDiskAccess::fileName(QString(300, u'a')), QString(255, u'a'));
    const QString pictures = VXRequestDiskAccess::fileName(u"\U0001F600"_s.repeated(100));
    QCOMPARE(pictures, u"\U0001F600"_s.repeated(63)); // no half a character
}

void tst_VXRequestDiskAccess::theNameOfAPageDoesNotLeaveTheFolder()
{
    const QTemporaryDir folder;
    const VXDialogVisitor visitor([&](QDialog* theDialog) {
        chooseFolder(theDialog, folder.path());
        theDialog->accept();
    });
    QCOMPARE(ask(u"../\"x\"/y.pdf"_s), folder.filePath(u"_.__x__y.pdf"_s));
}

void tst_VXRequestDiskAccess::theLastFolderIsKeptForEachMode()
{
    const QTemporaryDir documents;
    const QTemporaryDir pictures;
    QString wanted = documents.path();
    const auto choose = std::make_unique<VXDialogVisitor>([&](QDialog* theDialog) {
        if (!wanted.isEmpty())
            chooseFolder(theDialog, wanted);
        theDialog->accept();
    });
    std::ignore = ask(u"a.pdf"_s, nullptr, 3);
    wanted = pictures.path();
    std::ignore = ask(u"a.pdf"_s, nullptr, 4);
    wanted.clear();
    QCOMPARE(ask(u"b.pdf"_s, nullptr, 3), documents.filePath(u"b.pdf"_s));
    QCOMPARE(ask(u"b.pdf"_s, nullptr, 4), pictures.filePath(u"b.pdf"_s));
}

void tst_VXRequestDiskAccess::aFolderThatIsGoneIsForgotten()
{
    auto folder = std::make_unique<QTemporaryDir>();
    const VXDialogVisitor visitor([&](QDialog* theDialog) {
        if (folder)
            chooseFolder(theDialog, folder->path());
        theDialog->accept();
    });
    const QString gone = folder->path();
    std::ignore = ask(u"a.pdf"_s, nullptr, 5);
    folder.reset();
    const QString file = ask(u"a.pdf"_s, nullptr, 5);
    QVERIFY(!file.isEmpty());
    QVERIFY(!file.startsWith(gone));
}

void tst_VXRequestDiskAccess::anExistingFileIsAskedFor()
{
    const QTemporaryDir folder;
    QFile existing(folder.filePath(u"a.pdf"_s));
    QVERIFY(existing.open(QFile::WriteOnly));
    int questions = 0;
    const VXDialogVisitor visitor([&](QDialog* theDialog) {
        if (auto* const box = qobject_cast<QMessageBox*>(theDialog)) {
            ++questions;
            box->button(QMessageBox::Yes)->click();
            return;
        }
        chooseFolder(theDialog, folder.path());
        theDialog->accept();
    });
    QCOMPARE(ask(u"a.pdf"_s), existing.fileName());
    QCOMPARE(questions, 1);
}

void tst_VXRequestDiskAccess::aDyingParentTakesTheDialogAlong()
{
    auto* const parent = new QWidget;
    const VXDialogVisitor visitor([parent](QDialog*) { delete parent; });
    QCOMPARE(ask(u"a.pdf"_s, parent), QString());
}

void tst_VXRequestDiskAccess::aHostReplacesIt()
{
    class Fixed : public VXRequestDiskAccess
    {
    public:
        QString getSaveFileName(int, QWidget*, const QString&, const QString&,
                                const QString&) override
        {
            return u"/fixed.pdf"_s;
        }
    };
    auto before = VXRequestDiskAccess::setInstance(std::make_unique<Fixed>());
    QCOMPARE(ask(u"a.pdf"_s), u"/fixed.pdf"_s);
    std::ignore = VXRequestDiskAccess::setInstance(std::move(before));
}

VX_TEST_MAIN(QApplication, tst_VXRequestDiskAccess)

#include "tst_VXRequestDiskAccess.moc"
