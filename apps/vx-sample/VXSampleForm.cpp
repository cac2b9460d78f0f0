#include "VXSampleForm.h"

#include <QtCore/QUrl>

QByteArray VXSampleForm::encode(const QList<QPair<QByteArray, QString>>& theItems)
{
    QByteArray form;
    for (const auto& [name, value] : theItems) {
        if (value.isEmpty())
            continue;
        form += (form.isEmpty() ? "" : "&") + name + '=' + QUrl::toPercentEncoding(value);
    }
    return form;
}
