#include "VXFuzzTarget.h"

#include "VXUploadAdmission.h"
#include "VXUploadFileName.h"

#include <QtCore/QDir>
#include <QtCore/QUrl>
#include <QtCore/QUrlQuery>

using namespace Qt::StringLiterals;

/// A request of a phone: its query, then a name and a value line for each header.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* theData, size_t theSize)
{
    VXFuzzTarget::prepare();
    const QByteArrayList lines = VXFuzzTarget::lines(VXFuzzTarget::input(theData, theSize), 1);
    const QUrl url(u"http://10.77.0.1/upload?"_s + QString::fromUtf8(lines.constFirst()));
    VXUploadAdmission::Headers headers;
    for (qsizetype line = 1; line + 1 < lines.size(); line += 2)
        headers.append({lines.at(line), lines.at(line + 1)});

    const QStringList tokens{u"A+B-7"_s, u"....."_s};
    const QString query = url.query(QUrl::FullyEncoded);
    const QString token = VXUploadAdmission::token(tokens, query, headers);
    VXFuzzTarget::check(token.isEmpty() || tokens.contains(token),
                        "a token is one of the client's");
    VXFuzzTarget::check(VXUploadAdmission::token({}, query, headers).isEmpty(),
                        "who has no token is not admitted");

    const QString name = QUrlQuery(url).queryItemValue(u"file"_s, QUrl::FullyDecoded);
    const QString stored = VXUploadFileName::stored(name);
    VXFuzzTarget::check(!stored.contains(u'/') && !stored.contains(QChar::Null),
                        "a stored name is one name");
    VXFuzzTarget::check(stored.contains(u".qrul."), "a stored name is marked");
    const QString folder = u"/photos"_s;
    const QString path = QDir::cleanPath(folder + u'/' + stored);
    VXFuzzTarget::check(path == folder + u'/' + stored, "a photo lies in its folder");
    VXFuzzTarget::saw("headers", headers.size());
    VXFuzzTarget::saw("name", name.size());
    VXFuzzTarget::saw("stored", stored.size());
    VXFuzzTarget::planted(!token.isEmpty() && query != token && stored.size() > 20);
    return 0;
}
