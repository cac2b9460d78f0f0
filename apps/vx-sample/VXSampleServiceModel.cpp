#include "VXSampleServiceModel.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QNetworkReply>

using namespace Qt::StringLiterals;

namespace {

enum Column
{
    Number,
    Listener,
    Method,
    Target,
    Status,
    Size,
    ColumnCount,
};

constexpr int answerMilliseconds = 10'000;

QVariant cell(const VXRecordedRequest& theRequest, int theColumn)
{
    switch (theColumn) {
    case Number:
        return theRequest.number();
    case Listener:
        return theRequest.listener();
    case Method:
        return theRequest.method();
    case Target:
        return theRequest.target();
    case Status:
        return theRequest.status();
    case Size:
        return theRequest.bodySize();
    default:
        return {};
    }
}

} // namespace

VXSampleServiceModel::VXSampleServiceModel(QObject* theParent)
    : QAbstractTableModel(theParent)
{
    myManager.setProxy(QNetworkProxy::NoProxy);
    myManager.setTransferTimeout(answerMilliseconds);
}

VXSampleServiceModel::~VXSampleServiceModel() = default;

void VXSampleServiceModel::refresh(quint16 thePort)
{
    if (thePort == 0 || myReply)
        return;
    myReply = myManager.get(QNetworkRequest(QUrl(u"http://127.0.0.1:%1/requests?since=%2"_s.arg(
        QString::number(thePort), QString::number(myLastNumber)))));
    connect(myReply, &QNetworkReply::finished, this, [this, reply = myReply] {
        take(*reply);
        reply->deleteLater();
        myReply = nullptr;
    });
}

void VXSampleServiceModel::take(QNetworkReply& theReply)
{
    const QJsonDocument answer = QJsonDocument::fromJson(theReply.readAll());
    const QJsonArray list =
        answer.isArray() ? answer.array() : answer.object().value(u"requests"_s).toArray();
    if (list.isEmpty())
        return;
    const int first = static_cast<int>(myRequests.size());
    beginInsertRows({}, first, first + static_cast<int>(list.size()) - 1);
    for (const auto entry : list)
        myRequests << VXRecordedRequest(entry.toObject());
    myLastNumber = myRequests.constLast().number();
    endInsertRows();
}

int VXSampleServiceModel::rowCount(const QModelIndex& theParent) const
{
    return theParent.isValid() ? 0 : static_cast<int>(myRequests.size());
}

int VXSampleServiceModel::columnCount(const QModelIndex& theParent) const
{
    return theParent.isValid() ? 0 : ColumnCount;
}

QVariant VXSampleServiceModel::data(const QModelIndex& theIndex, int theRole) const
{
    if (!theIndex.isValid() || theRole != Qt::DisplayRole)
        return {};
    return cell(myRequests.at(theIndex.row()), theIndex.column());
}

QVariant VXSampleServiceModel::headerData(int theSection, Qt::Orientation theOrientation,
                                          int theRole) const
{
    if (theOrientation != Qt::Horizontal || theRole != Qt::DisplayRole)
        return {};
    const QStringList titles{tr("Nr."),     tr("Eingang"), tr("Methode"),
                             tr("Adresse"), tr("Status"),  tr("Bytes")};
    return titles.value(theSection);
}
