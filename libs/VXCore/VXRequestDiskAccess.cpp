#include "VXRequestDiskAccess.h"

#include "VXSettings.h"

#include <QtCore/QFileInfo>
#include <QtCore/QPointer>
#include <QtCore/QRegularExpression>
#include <QtCore/QStandardPaths>
#include <QtWidgets/QFileDialog>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr auto groupName = "DiskAccess"_L1;
constexpr qsizetype longestName = 255; // bytes, of every usual file system
constexpr qsizetype longestEnding = 16;

QString lastFolderKey(int theMode)
{
    return u"lastSaveFolder%1"_s.arg(theMode);
}

QString lastFolder(int theMode)
{
    VXSettings settings;
    settings.beginGroup(groupName);
    QString folder = settings.value(lastFolderKey(theMode)).toString();
    if (QFileInfo(folder).isDir())
        return folder;
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

void rememberFolder(int theMode, const QString& theFile)
{
    VXSettings settings;
    settings.beginGroup(groupName);
    settings.writeEntry(lastFolderKey(theMode), QFileInfo(theFile).absolutePath());
}

/// "pdf" of "PDF-Files (*.pdf)"; empty for a filter that names none.
QString firstEnding(const QString& theFilter)
{
    static const QRegularExpression pattern(u"\\(\\*\\.([\\w.]+)"_s);
    return pattern.match(theFilter).captured(1);
}

/// Shortens the name before its ending; the ending of a name is short, else it is none.
QString shortened(const QString& theName)
{
    if (theName.toUtf8().size() <= longestName)
        return theName;
    const qsizetype dot = theName.lastIndexOf(u'.');
    const bool hasEnding = dot > 0 && theName.size() - dot <= longestEnding;
    const QString ending = hasEnding ? theName.sliced(dot) : QString();
    QString stem = hasEnding ? theName.first(dot) : theName;
    while (stem.toUtf8().size() + ending.toUtf8().size() > longestName)
        stem.chop(stem.back().isLowSurrogate() ? 2 : 1);
    return stem + ending;
}

std::unique_ptr<QFileDialog> createDialog(QWidget* theParent, const QString& theCaption,
                                          const QString& theFilter)
{
    auto dialog = std::make_unique<QFileDialog>(theParent, theCaption, QString(), theFilter);
    dialog->setObjectName(u"saveFileDialog"_s);
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    dialog->setDefaultSuffix(firstEnding(theFilter));
    return dialog;
}

} // namespace

VXRequestDiskAccess::VXRequestDiskAccess() = default;
VXRequestDiskAccess::~VXRequestDiskAccess() = default;

QString VXRequestDiskAccess::getSaveFileName(int theMode, QWidget* theParent,
                                             const QString& theCaption, const QString& theFilter,
                                             const QString& theDefaultName)
{
    // The parent may take the dialog along while it is open; then nobody may delete it twice.
    const QPointer<QFileDialog> dialog = createDialog(theParent, theCaption, theFilter).release();
    dialog->setDirectory(lastFolder(theMode));
    dialog->selectFile(fileName(theDefaultName));
    const bool isAccepted = dialog->exec() == QDialog::Accepted;
    if (!dialog)
        return {};
    QString file = isAccepted ? dialog->selectedFiles().value(0) : QString();
    delete dialog;
    if (!file.isEmpty())
        rememberFolder(theMode, file);
    return file;
}

QString VXRequestDiskAccess::fileName(const QString& theText)
{
    static const QRegularExpression misread(u"[/\\\\\"\\p{Cc}]|^[.~]"_s);
    return shortened(QString(theText).replace(misread, u"_"_s));
}
