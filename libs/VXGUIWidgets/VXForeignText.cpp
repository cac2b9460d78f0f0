#include "VXForeignText.h"

#include <QtCore/QByteArray>
#include <QtCore/QUrl>
#include <QtCore/QVariant>
#include <QtGui/QImage>
#include <QtGui/QTextDocument>

namespace {

/// A text that notices when it names pictures or style sheets.
class ProbeDocument : public QTextDocument
{
    Q_DISABLE_COPY_MOVE(ProbeDocument)

public:
    explicit ProbeDocument(const QString& theText)
    {
        setHtml(theText);
        (void)size(); // pictures are asked for when the text is laid out
    }
    ~ProbeDocument() override = default;

    [[nodiscard]] bool namesFiles() const { return myNamesFiles; }

protected:
    QVariant loadResource(int theType, const QUrl& /*theName*/) override
    {
        myNamesFiles = true;
        // Something usable: Qt opens a picture by itself when the document has none to give.
        return theType == ImageResource ? QVariant(QImage(1, 1, QImage::Format_RGB32))
                                        : QVariant(QByteArray(""));
    }

private:
    bool myNamesFiles = false;
};

} // namespace

VXForeignText::VXForeignText(const QString& theText)
    : myText(theText)
{
    if (!Qt::mightBeRichText(theText))
        return;
    const ProbeDocument probe(theText);
    if (!probe.namesFiles())
        return;
    myText = probe.toPlainText();
    myFormat = Qt::PlainText;
}
